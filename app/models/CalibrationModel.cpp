#include "app/models/CalibrationModel.h"

#include "app/labels/CalibrationText.h"
#include "app/labels/DecisionLabels.h"
#include "app/labels/Wording.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"

#include <utility>

namespace vorle {

namespace {

Outcome outcomeOf(CalibrationModel::Choice choice) {
    return choice == CalibrationModel::Keep    ? Outcome::Kept
           : choice == CalibrationModel::Later ? Outcome::Later
                                               : Outcome::Dismissed;
}

} // namespace

CalibrationModel::CalibrationModel(Preferences &preferences, TopicStore &store,
                                   DecisionHistory &history, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_store(store)
    , m_clock(clock)
    , m_calibration(preferences, store, history, clock) {
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

QString CalibrationModel::label(Choice choice) { return actionLabel(outcomeOf(choice)); }

void CalibrationModel::begin() {
    if (m_stage == Closed) {
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
    if (m_calibration.choose(m_topic, outcomeOf(choice))) {
        m_chosen = outcomeText(outcomeOf(choice));
        m_lastText.clear();
        m_stage = Scoring;
    }
    Q_EMIT changed();
}

void CalibrationModel::give(int score) {
    if (m_stage != Scoring) {
        return;
    }
    const bool isScore = score >= 0 && score <= maxScore;
    const auto judged = m_calibration.give(isScore ? std::optional(score) : std::nullopt);
    m_lastText = m_chosen + u'.' + (judged ? u' ' + besideMineText(score, *judged) : QString());
    Q_EMIT said(m_lastText);
    askNext();
}

void CalibrationModel::takeBack() {
    const auto back = m_stage == Closed ? std::nullopt : m_calibration.takeBack();
    if (!back) {
        return;
    }
    m_lastText.clear();
    const TopicPtr topic = m_store.topic(*back);
    topic && topic->status == TopicStatus::Inbox ? askAbout(*back) : askNext();
}

void CalibrationModel::leave() {
    if (m_stage != Closed) {
        m_calibration.leave();
        m_stage = Closed;
        m_lastText.clear();
        m_topic = {};
        refresh();
    }
}

void CalibrationModel::skip() {
    leave();
    Calibration::skip(m_preferences);
    refresh();
    Q_EMIT said(shownWords(calibrationSkippedText()));
}

void CalibrationModel::askNext() {
    m_calibration.endIfOver();
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
