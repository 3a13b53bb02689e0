#include "app/models/CalibrationModel.h"

#include "app/labels/Wording.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"

#include <utility>

namespace vorle {

CalibrationModel::CalibrationModel(Preferences &preferences, TopicStore &store,
                                   Decisions &decisions, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_store(store)
    , m_decisions(decisions)
    , m_clock(clock)
    , m_calibration(preferences, store, clock) {
    connect(&preferences, &Preferences::changed, this, &CalibrationModel::refreshSoon);
    connect(&store, &TopicStore::topicChanged, this, &CalibrationModel::refreshSoon);
    connect(&store, &TopicStore::topicsAdded, this, &CalibrationModel::refreshSoon);
    connect(&store, &TopicStore::topicsReset, this, &CalibrationModel::refreshSoon);
    m_proposed = m_calibration.isProposed();
}

QString CalibrationModel::invitationTitle() const { return calibrationInvitation(0).title; }

QString CalibrationModel::invitationText() const {
    if (!m_proposed) {
        return {};
    }
    const Calibration::Progress progress = m_calibration.progress();
    return shownWords(calibrationInvitation(progress.total - progress.answered).text);
}

QString CalibrationModel::invitationAction() const {
    return m_calibration.isUnderWay() ? tr("Continuer") : tr("Commencer");
}

TopicCard CalibrationModel::topic() const {
    const TopicPtr topic = m_store.topic(m_topic);
    return topic ? TopicCard(topic, {.today = m_clock.now().toLocalTime().date()}) : TopicCard();
}

QString CalibrationModel::position() const {
    return m_stage == Choosing || m_stage == Scoring ? calibrationPosition(m_progress) : QString();
}

QString CalibrationModel::question() const {
    return m_stage == Choosing  ? shownWords(calibrationQuestion())
           : m_stage == Scoring ? shownWords(calibrationScoreQuestion())
                                : QString();
}

QString CalibrationModel::endTitle() const {
    const qsizetype answered = m_calibration.progress().answered;
    return answered > 0 ? calibrationEnd(answered).title : tr("Rien à trier");
}

QString CalibrationModel::endText() const {
    const qsizetype answered = m_calibration.progress().answered;
    return shownWords(answered > 0 ? calibrationEnd(answered).text : calibrationNothingText());
}

QString CalibrationModel::label(Choice choice) {
    return calibrationLabel(choice == Keep    ? Calibration::Choice::Keep
                            : choice == Later ? Calibration::Choice::Later
                                              : Calibration::Choice::NotForMe);
}

void CalibrationModel::begin() {
    if (m_stage == Closed) {
        m_steps.clear();
        m_lastText.clear();
        if (!m_store.topics(TopicStatus::Inbox).isEmpty()) { // else a later run brings some
            m_calibration.begin();
        }
        askNext();
    }
}

void CalibrationModel::beginAgain() {
    leave();
    m_calibration.beginAgain();
    begin();
}

void CalibrationModel::choose(Choice choice) {
    if (m_stage != Choosing) {
        return;
    }
    const QString id = m_topic.toString(QUuid::WithoutBraces);
    const Decisions::Taken taken = choice == Keep    ? m_decisions.keep(id)
                                   : choice == Later ? m_decisions.later(id)
                                                     : m_decisions.dismiss(id);
    if (taken) {
        m_steps.append(1);
        m_chosen = *taken;
        m_lastText.clear();
        m_stage = Scoring;
    }
    Q_EMIT changed();
}

void CalibrationModel::give(int score) {
    const TopicPtr topic = m_store.topic(m_topic);
    if (m_stage != Scoring) {
        return;
    }
    m_lastText = m_chosen + u'.';
    if (topic && score >= 0 && score <= maxScore) {
        // Reasons given earlier stay.
        const Correction former = topic->correction.value_or(Correction());
        if (m_decisions.setCorrection(
                m_topic.toString(QUuid::WithoutBraces),
                correctionOf(score, former.tags, former.text, m_clock.now()))) {
            ++m_steps.last();
        }
        if (const auto judged = judgedScore(*topic)) {
            m_lastText +=
                u' ' + (score == *judged ? tr("Comme moi.") : tr("J’avais mis %1.").arg(*judged));
        }
    }
    Q_EMIT said(m_lastText);
    askNext();
}

void CalibrationModel::takeBack() {
    if (m_steps.isEmpty() || m_stage == Closed) {
        return;
    }
    // The topic of the last answer is the one that its undoing names.
    QUuid back;
    const auto heard = connect(&m_decisions, &Decisions::undone, this,
                               [&back](const QString &id) { back = QUuid::fromString(id); });
    for (int step = m_steps.takeLast(); step > 0; --step) {
        m_decisions.undo();
    }
    disconnect(heard);
    m_calibration.reopen();
    m_lastText.clear();
    const TopicPtr topic = m_store.topic(back);
    topic && topic->status == TopicStatus::Inbox ? askAbout(back) : askNext();
}

void CalibrationModel::leave() {
    if (m_stage != Closed) {
        endIfOver();
        m_stage = Closed;
        m_steps.clear();
        m_lastText.clear();
        m_topic = {};
        refresh();
    }
}

void CalibrationModel::skip() {
    leave();
    m_calibration.skip();
    refresh();
    Q_EMIT said(shownWords(calibrationSkippedText()));
}

/// One that nothing was answered to is not over: there was nothing to ask yet.
void CalibrationModel::endIfOver() {
    if (m_calibration.progress().answered > 0) {
        m_calibration.endIfOver();
    }
}

void CalibrationModel::askNext() {
    endIfOver();
    const TopicPtr next = m_calibration.next();
    if (next) {
        askAbout(next->id);
    } else {
        m_topic = {};
        m_chosen.clear();
        m_stage = Over;
        refresh();
    }
}

void CalibrationModel::askAbout(const QUuid &topic) {
    m_topic = topic;
    m_chosen.clear();
    m_progress = m_calibration.progress();
    m_stage = Choosing;
    refresh();
}

/// Once for all that changes in one turn.
void CalibrationModel::refreshSoon() {
    if (!std::exchange(m_due, true)) {
        QMetaObject::invokeMethod(this, &CalibrationModel::refresh, Qt::QueuedConnection);
    }
}

void CalibrationModel::refresh() {
    m_due = false;
    const bool proposed = m_calibration.isProposed();
    const TopicPtr topic = m_store.topic(m_topic);
    if (m_stage == Choosing && (!topic || topic->status != TopicStatus::Inbox)) {
        m_proposed = proposed;
        askNext(); // it was decided elsewhere
        return;
    }
    if (proposed || m_proposed || m_stage != Closed) {
        m_proposed = proposed;
        Q_EMIT changed();
    }
}

} // namespace vorle
