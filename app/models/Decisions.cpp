#include "app/models/Decisions.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"

#include <QUuid>

namespace vorle {

Decisions::Decisions(TopicStore &store, QObject *parent)
    : QObject(parent), m_store(store), m_history(store) {
    connect(&m_history, &DecisionHistory::stepsChanged, this, &Decisions::stepsChanged);
    connect(&m_history, &DecisionHistory::decided, this,
            [this](const QUuid &id, Outcome outcome, std::optional<Worth> verdict) {
                Q_EMIT decided(identityText(id),
                               verdict ? outcomeText(*verdict) : outcomeText(outcome));
            });
    connect(&m_history, &DecisionHistory::undone, this, [this](const StepResult &result) {
        Q_EMIT undone(identityText(result.id), sentence(result));
    });
    connect(&m_history, &DecisionHistory::redone, this, [this](const StepResult &result) {
        Q_EMIT redone(identityText(result.id), sentence(result));
    });
}

Decisions::Taken Decisions::decide(const QString &topicId, Outcome outcome) {
    const bool taken = m_history.decide(QUuid::fromString(topicId), outcome);
    return taken ? Taken(outcomeText(outcome)) : std::nullopt;
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
    const bool taken = m_history.finish(QUuid::fromString(topicId), worth);
    return taken ? Taken(outcomeText(Outcome::Done)) : std::nullopt;
}

Decisions::Taken Decisions::verdict(const QString &topicId, Worth worth) {
    const bool taken = m_history.judge(QUuid::fromString(topicId), worth);
    return taken ? Taken(outcomeText(worth)) : std::nullopt;
}

bool Decisions::setNote(const QString &topicId, const QString &note) {
    return m_history.setNote(QUuid::fromString(topicId), note);
}

bool Decisions::setCorrection(const QString &topicId, const std::optional<Correction> &correction) {
    return m_history.setCorrection(QUuid::fromString(topicId), correction);
}

QString Decisions::undo() {
    const auto result = m_history.undo();
    return result ? sentence(*result) : QString();
}

QString Decisions::redo() {
    const auto result = m_history.redo();
    return result ? sentence(*result) : QString();
}

QString Decisions::sentence(const StepResult &result) const {
    return stepText(result, m_store.topic(result.id).get());
}

} // namespace vorle
