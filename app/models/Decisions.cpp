#include "app/models/Decisions.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"

#include <QUuid>

namespace vorle {

Decisions::Decisions(TopicStore &store, QObject *parent)
    : QObject(parent), m_store(store), m_history(store) {}

bool Decisions::stepped(bool changed) {
    if (changed) {
        Q_EMIT stepsChanged();
    }
    return changed;
}

Decisions::Taken Decisions::told(bool taken, const QString &topicId, const QString &ghostText) {
    if (!stepped(taken)) {
        return std::nullopt;
    }
    Q_EMIT decided(identityText(QUuid::fromString(topicId)), ghostText);
    return ghostText;
}

Decisions::Taken Decisions::decide(const QString &topicId, Outcome outcome) {
    return told(m_history.decide(QUuid::fromString(topicId), outcome), topicId,
                outcomeText(outcome));
}

Decisions::Taken Decisions::keep(const QString &topicId) { return decide(topicId, Outcome::Kept); }

Decisions::Taken Decisions::later(const QString &topicId) {
    return decide(topicId, Outcome::Later);
}

Decisions::Taken Decisions::dismiss(const QString &topicId) {
    return decide(topicId, Outcome::Dismissed);
}

Decisions::Taken Decisions::postpone(const QString &topicId) {
    return decide(topicId, Outcome::Postponed);
}

Decisions::Taken Decisions::removeFromProgram(const QString &topicId) {
    return decide(topicId, Outcome::Removed);
}

Decisions::Taken Decisions::backToTriage(const QString &topicId) {
    return decide(topicId, Outcome::PutBack);
}

Decisions::Taken Decisions::done(const QString &topicId, std::optional<Worth> worth) {
    return told(m_history.finish(QUuid::fromString(topicId), worth), topicId,
                outcomeText(Outcome::Done));
}

Decisions::Taken Decisions::verdict(const QString &topicId, Worth worth) {
    return told(m_history.judge(QUuid::fromString(topicId), worth), topicId, outcomeText(worth));
}

bool Decisions::setNote(const QString &topicId, const QString &note) {
    return stepped(m_history.setNote(QUuid::fromString(topicId), note));
}

bool Decisions::setCorrection(const QString &topicId, const std::optional<Correction> &correction) {
    return stepped(m_history.setCorrection(QUuid::fromString(topicId), correction));
}

QString Decisions::undo() {
    const auto result = m_history.undo();
    const QString said = result ? sentence(*result) : QString();
    if (stepped(result.has_value())) {
        Q_EMIT undone(identityText(result->id), said);
    }
    return said;
}

QString Decisions::redo() {
    const auto result = m_history.redo();
    const QString said = result ? sentence(*result) : QString();
    if (stepped(result.has_value())) {
        Q_EMIT redone(identityText(result->id), said);
    }
    return said;
}

QString Decisions::sentence(const StepResult &result) const {
    return stepText(result, m_store.topic(result.id).get());
}

} // namespace vorle
