#pragma once

#include "base/Async.h"
#include "base/Cancellation.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/run/SearchEngine.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The search run as the window shows it: the one under way, whoever asked for it; how the last one
/// went, when the next is due, whether one was missed. Main thread; what it is given outlives it.
///
/// A run goes on after `stop()` until it has kept what it holds: whoever quits awaits `stopped()`
/// before the engine goes. Deleting this object stops a run that was started here, which ends
/// without it.
class RunModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool running READ running NOTIFY runningChanged FINAL)
    /// Asked to stop, and not ended yet.
    Q_PROPERTY(bool stopping READ stopping NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString statusText READ statusText NOTIFY progressChanged FINAL)
    /// 0 to 1, never going back within a run.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged FINAL)
    /// "12 liens, 8 lus, 4 jugés"; "" before the first link.
    Q_PROPERTY(QString countsText READ countsText NOTIFY progressChanged FINAL)
    /// What the agent took so far: "6 appels · 2 min 10 s · 0,31 $"; "" before the first call.
    Q_PROPERTY(QString spentText READ spentText NOTIFY spentChanged FINAL)
    Q_PROPERTY(int read READ read NOTIFY progressChanged FINAL)
    Q_PROPERTY(int judged READ judged NOTIFY progressChanged FINAL)
    /// After a run of this session: "12 nouveaux sujets dans « À trier »."; "" before.
    Q_PROPERTY(QString lastResultText READ lastResultText NOTIFY outcomeChanged FINAL)
    /// Why the last run of this session failed or could not start; "" when it did not.
    Q_PROPERTY(QString lastError READ lastError NOTIFY outcomeChanged FINAL)
    /// The line over it: "Je n’ai pas pu fouiller."; "" without one.
    Q_PROPERTY(QString lastErrorTitle READ lastErrorTitle NOTIFY outcomeChanged FINAL)
    /// Whether that is because there is nothing to search; goes as soon as there is.
    Q_PROPERTY(bool nothingToSearch READ nothingToSearch NOTIFY outcomeChanged FINAL)
    /// "lundi à 8:00"; "" when no run is scheduled.
    Q_PROPERTY(QString nextRunText READ nextRunText NOTIFY scheduleChanged FINAL)
    /// "lundi 16 novembre à 8:04"; "" before the first run.
    Q_PROPERTY(QString lastRunText READ lastRunText NOTIFY scheduleChanged FINAL)
    /// The banner of a run that did not happen.
    Q_PROPERTY(bool missed READ missed NOTIFY scheduleChanged FINAL)
    Q_PROPERTY(QString missedTitle READ missedTitle NOTIFY scheduleChanged FINAL)
    Q_PROPERTY(QString missedText READ missedText NOTIFY scheduleChanged FINAL)
    /// A part of the last run is still to come, since the agent reached its limit.
    Q_PROPERTY(bool waiting READ waiting NOTIFY scheduleChanged FINAL)
    /// It goes on when the user says so; else by itself.
    Q_PROPERTY(bool waitingOffered READ waitingOffered NOTIFY scheduleChanged FINAL)
    Q_PROPERTY(QString waitingTitle READ waitingTitle NOTIFY scheduleChanged FINAL)
    Q_PROPERTY(QString waitingText READ waitingText NOTIFY scheduleChanged FINAL)
    /// In a few words: "La suite aujourd’hui à 13:00"; "" without one.
    Q_PROPERTY(QString waitingBriefly READ waitingBriefly NOTIFY scheduleChanged FINAL)
    /// "Fouiller maintenant"
    Q_PROPERTY(QString startLabel READ startLabel CONSTANT FINAL)

public:
    RunModel(SearchEngine &engine, Preferences &preferences, const TopicStore &store,
             const Clock &clock, const LocalZone &zone = {}, QObject *parent = nullptr);
    ~RunModel() override;

    /// Starts a run; does nothing while one is under way.
    Q_INVOKABLE void start();
    /// The scheduled run is due: as start(), but where a run would be refused nothing is told, as
    /// nobody asked.
    void startDue();
    /// Goes on with what the last run left; does nothing while one is under way.
    Q_INVOKABLE void goOn();
    /// Leaves it undone: the next run looks at its period again.
    Q_INVOKABLE void giveUpRest();
    /// Asks the run to stop; what was judged is kept.
    Q_INVOKABLE void stop();
    /// Looks at the clock again. For whoever shows the window or wakes up.
    Q_INVOKABLE void refresh();
    /// Stops a run under way, and waits for the end of one that was started here.
    Task<> stopped();

    bool running() const { return m_running; }
    bool stopping() const { return m_stopping; }
    QString statusText() const;
    double progress() const { return m_part; }
    QString countsText() const;
    QString spentText() const;
    int read() const { return m_progress.read; }
    int judged() const { return m_progress.judged; }
    QString lastResultText() const { return m_result; }
    QString lastError() const { return m_notice.text; }
    QString lastErrorTitle() const { return m_notice.title; }
    bool nothingToSearch() const { return m_nothingToSearch; }
    QString nextRunText() const;
    QString lastRunText() const;
    bool missed() const { return missedMoment().has_value(); }
    QString missedTitle() const;
    QString missedText() const;
    bool waiting() const;
    bool waitingOffered() const;
    QString waitingTitle() const;
    QString waitingText() const;
    QString waitingBriefly() const;
    QString startLabel() const;

Q_SIGNALS:
    /// A run began or ended: once each.
    void runningChanged();
    void progressChanged();
    void spentChanged();
    void outcomeChanged();
    void scheduleChanged();
    /// A run ended, one way or another.
    void ended();

private:
    void begin();
    enum class AskedBy { Person, Schedule };
    void ask(SearchRun::Part part, AskedBy by);
    static Task<> follow(QPointer<RunModel> self, SearchEngine &engine, SearchRun::Part part,
                         AskedBy by, CancelToken cancel);
    void refused(const RunRefused &refusal, AskedBy by);
    void take(const RunProgress &progress);
    void end(const QString &result, FailureNotice notice);
    void followTerritory();
    RunWaits toldWaits() const;
    QString resultText(const RunReport &report) const;
    std::optional<QDateTime> missedMoment() const;

    SearchEngine &m_engine;
    Preferences &m_preferences;
    const Clock &m_clock;
    const TopicStore &m_store;
    LocalZone m_zone;
    CancelSource m_cancel;
    TaskGroup m_following; // the run that was started here, until it has returned
    bool m_running = false;
    bool m_stopping = false;
    double m_part = 0;
    RunProgress m_progress;
    QElapsedTimer m_told; // since it was
    QTimer m_second;      // while a run is under way
    QString m_result;
    FailureNotice m_notice;
    bool m_nothingToSearch = false;
    std::optional<QDateTime> m_refusedAt; // a due run found nothing to search, with the app open
};

} // namespace vorle
