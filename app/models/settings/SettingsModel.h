#pragma once

#include "core/Preferences.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The user's settings for QML: a property a setting that a screen shows, of the setting's own
/// type; enumerations as the words they are kept as. What is written here acts at once and goes to
/// the disk in the background; what a command or another process writes shows at once. A value
/// that does not fit changes nothing and is told by `problem`. Main thread; the preferences outlive
/// it.
class SettingsModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// 0 to 10,080.
    Q_PROPERTY(int weeklyMinutes READ weeklyMinutes WRITE setWeeklyMinutes NOTIFY
                   weeklyMinutesChanged FINAL)
    Q_PROPERTY(
        QString appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged FINAL)
    Q_PROPERTY(QString accent READ accent WRITE setAccent NOTIFY accentChanged FINAL)
    Q_PROPERTY(QString terminal READ terminal WRITE setTerminal NOTIFY terminalChanged FINAL)
    Q_PROPERTY(
        QString notifyMode READ notifyMode WRITE setNotifyMode NOTIFY notifyModeChanged FINAL)
    Q_PROPERTY(bool notifyReminder READ notifyReminder WRITE setNotifyReminder NOTIFY
                   notifyReminderChanged FINAL)
    /// "17:00"; written as `runTime` is.
    Q_PROPERTY(QString reminder READ reminder WRITE setReminder NOTIFY reminderChanged FINAL)
    Q_PROPERTY(bool proposeTab READ proposeTab WRITE setProposeTab NOTIFY proposeTabChanged FINAL)
    /// "" while it is not known.
    Q_PROPERTY(QString job READ job WRITE setJob NOTIFY jobChanged FINAL)
    /// "claude" or "codex"; "" while the user has not chosen.
    Q_PROPERTY(QString agent READ agent WRITE setAgent NOTIFY agentChanged FINAL)
    /// The model asked of it; "" for its own choice. Goes when another agent is chosen.
    Q_PROPERTY(
        QString agentModel READ agentModel WRITE setAgentModel NOTIFY agentModelChanged FINAL)
    /// 80 to 150, in percent.
    Q_PROPERTY(int textScale READ textScale WRITE setTextScale NOTIFY textScaleChanged FINAL)
    /// The days of the scheduled run, Sunday 1 to Saturday 7, in that order; none: no run by
    /// itself.
    Q_PROPERTY(QList<int> weekdays READ weekdays WRITE setWeekdays NOTIFY scheduleChanged FINAL)
    /// Its time of day, "8:30". What cannot be read as one changes nothing, and is told.
    Q_PROPERTY(QString runTime READ runTime WRITE setRunTime NOTIFY scheduleChanged FINAL)
    /// What the schedule means: "Ensuite, je fouille seul chaque lundi à 8:00."
    Q_PROPERTY(QString scheduleText READ scheduleText NOTIFY scheduleChanged FINAL)

    /// The words that an enumeration may be set to, in their order.
    Q_PROPERTY(QList<QString> appearances READ appearances CONSTANT FINAL)
    Q_PROPERTY(QList<QString> accents READ accents CONSTANT FINAL)
    Q_PROPERTY(QList<QString> notifyModes READ notifyModes CONSTANT FINAL)

    /// What is wrong, in French: a value that did not fit, until the next one that does; a write
    /// that failed, until one succeeds. "" when nothing is.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)

public:
    explicit SettingsModel(Preferences &preferences, QObject *parent = nullptr);

    int weeklyMinutes() const { return now().weeklyMinutes; }
    void setWeeklyMinutes(int value) { set(&Settings::weeklyMinutes, value); }
    QString appearance() const { return json::rawText(now().appearance); }
    void setAppearance(const QString &word) { setWord(&Settings::appearance, word); }
    QString accent() const { return json::rawText(now().accent); }
    void setAccent(const QString &word) { setWord(&Settings::accent, word); }
    QString terminal() const { return json::rawText(now().terminal); }
    void setTerminal(const QString &word) { setWord(&Settings::terminal, word); }
    QString notifyMode() const { return json::rawText(now().notifyMode); }
    void setNotifyMode(const QString &word) { setWord(&Settings::notifyMode, word); }
    bool notifyReminder() const { return now().notifyReminder; }
    void setNotifyReminder(bool value) { set(&Settings::notifyReminder, value); }
    bool proposeTab() const { return now().proposeTab; }
    void setProposeTab(bool value) { set(&Settings::proposeTab, value); }
    QString job() const { return now().job.value_or(QString()); }
    void setJob(const QString &text) { setText(&Settings::job, text); }
    QString agent() const { return now().agent.value_or(QString()); }
    void setAgent(const QString &word) { setText(&Settings::agent, word); }
    QString agentModel() const { return now().agentModel.value_or(QString()); }
    void setAgentModel(const QString &name) { setText(&Settings::agentModel, name); }
    int textScale() const { return now().textScale; }
    void setTextScale(int percent) { set(&Settings::textScale, percent); }
    QList<int> weekdays() const;
    void setWeekdays(const QList<int> &days);
    QString runTime() const;
    void setRunTime(const QString &text);
    QString scheduleText() const;
    QString reminder() const;
    void setReminder(const QString &text);

    /// Whether a text can be read as a time of day, as setting `runTime` reads it.
    Q_INVOKABLE static bool isTime(const QString &text);
    /// That many minutes later (less: earlier) than the time of day, round the clock: "8:05".
    Q_INVOKABLE static QString laterTime(const QString &time, int minutes);

    QStringList appearances() const;
    QStringList accents() const;
    QStringList notifyModes() const;
    QString problem() const;

Q_SIGNALS:
    void weeklyMinutesChanged();
    void appearanceChanged();
    void accentChanged();
    void terminalChanged();
    void notifyModeChanged();
    void notifyReminderChanged();
    void reminderChanged();
    void proposeTabChanged();
    void jobChanged();
    void agentChanged();
    void agentModelChanged();
    void textScaleChanged();
    void scheduleChanged();
    void problemChanged();

private:
    const Settings &now() const { return m_preferences.settings(); }
    template <class T>
    void set(T Settings::*setting, const std::type_identity_t<T> &value) {
        tellRefusal(m_preferences.change(setting, value));
    }
    template <class E>
    void setWord(E Settings::*setting, const QString &word) {
        const auto value = json::fromRaw<E>(word);
        tellRefusal(value ? m_preferences.change(setting, *value)
                          : Preferences::expectation(setting));
    }
    void setText(std::optional<QString> Settings::*setting, const QString &text) {
        set(setting, text.isEmpty() ? std::nullopt : std::optional(text));
    }
    std::optional<TimeOfDay> timeOf(const QString &text);
    void announce(const QString &key);
    void tellRefusal(const std::optional<QString> &refusal);
    void tellDisk(const QString &failure);

    Preferences &m_preferences;
    QString m_refusal;     // of the value that was set last
    QString m_diskFailure; // of the last write
};

} // namespace vorle
