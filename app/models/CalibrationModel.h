#pragma once

#include "app/models/TopicCard.h"
#include "app/triage/Calibration.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The guided first triage for QML (see Calibration): one topic at a time, first what becomes of
/// it, then the score that the person would have given; the app's own is not told before that. Each
/// answer is a decision as any other, kept at once and taken back like one.
///
/// The topic that is asked about stays while lists change around it; one that is decided elsewhere
/// meanwhile makes room for the next. Main thread; what it is given outlives it.
class CalibrationModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Whether "À trier" offers it, and in which words.
    Q_PROPERTY(bool proposed READ isProposed NOTIFY changed FINAL)
    Q_PROPERTY(QString invitationTitle READ invitationTitle CONSTANT FINAL)
    Q_PROPERTY(QString invitationText READ invitationText NOTIFY changed FINAL)
    /// "Commencer", or "Continuer" where it was left.
    Q_PROPERTY(QString invitationAction READ invitationAction NOTIFY changed FINAL)

    Q_PROPERTY(Stage stage READ stage NOTIFY changed FINAL)
    Q_PROPERTY(vorle::TopicCard topic READ topic NOTIFY changed FINAL)
    Q_PROPERTY(QString position READ position NOTIFY changed FINAL) ///< "3 sur 10"
    Q_PROPERTY(QString question READ question NOTIFY changed FINAL)
    /// What was chosen of the topic, while its score is asked for; "" before.
    Q_PROPERTY(QString chosenText READ chosenText NOTIFY changed FINAL)
    /// What became of the one before, and the app's score of it: "Gardé · Programme. J’avais mis
    /// 6."; "" for none.
    Q_PROPERTY(QString lastText READ lastText NOTIFY changed FINAL)
    Q_PROPERTY(bool canTakeBack READ canTakeBack NOTIFY changed FINAL)
    Q_PROPERTY(QString endTitle READ endTitle NOTIFY changed FINAL)
    Q_PROPERTY(QString endText READ endText NOTIFY changed FINAL)

public:
    enum Stage {
        Closed,   ///< not shown
        Choosing, ///< what becomes of the topic is asked
        Scoring,  ///< that is decided; the person's score is asked
        Over      ///< nothing is left to ask
    };
    Q_ENUM(Stage)
    enum Choice { Keep, Later, NotForMe };
    Q_ENUM(Choice)

    CalibrationModel(Preferences &preferences, TopicStore &store, DecisionHistory &history,
                     const Clock &clock, QObject *parent = nullptr);

    bool isProposed() const { return m_proposed; }
    QString invitationTitle() const;
    QString invitationText() const;
    QString invitationAction() const;
    Stage stage() const { return m_stage; }
    TopicCard topic() const;
    QString position() const;
    QString question() const;
    QString chosenText() const { return m_chosen; }
    QString lastText() const { return m_lastText; }
    bool canTakeBack() const { return m_calibration.canTakeBack(); }
    QString endTitle() const;
    QString endText() const;

    /// "Garder", "Plus tard", "Pas pour moi".
    Q_INVOKABLE static QString label(vorle::CalibrationModel::Choice choice);

    /// Begins, or goes on where it was left.
    Q_INVOKABLE void begin();
    /// Begins anew, whatever was answered.
    Q_INVOKABLE void beginAgain();
    /// Decides; nothing at another stage than Choosing.
    Q_INVOKABLE void choose(vorle::CalibrationModel::Choice choice);
    /// The person's own score of the topic, 0 to 10, any other number for none; then the next.
    /// Nothing at another stage than Scoring.
    Q_INVOKABLE void give(int score);
    /// Takes the last answer back and asks again.
    Q_INVOKABLE void takeBack();
    /// Leaves it where it is; what was decided stands.
    Q_INVOKABLE void leave();
    /// Never proposed again, unless it is taken again.
    Q_INVOKABLE void skip();

Q_SIGNALS:
    void changed();
    /// A word on what just happened.
    void said(const QString &sentence);

private:
    void refreshSoon();
    void refresh();
    void askNext();
    void askAbout(const QUuid &topic);

    Preferences &m_preferences;
    TopicStore &m_store;
    const Clock &m_clock;
    Calibration m_calibration;
    bool m_proposed = false;
    bool m_due = false; // it is going to look again
    Stage m_stage = Closed;
    QUuid m_topic;
    Calibration::Progress m_progress; // when the topic was first asked about
    QString m_chosen;
    QString m_lastText;
};

} // namespace vorle
