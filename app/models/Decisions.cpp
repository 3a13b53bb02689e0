#include "app/models/Decisions.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"
#include "base/FrenchSpacing.h"
#include "base/Text.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"

#include <QUuid>

namespace vorle {

namespace {

QUuid identity(const QString &topicId) { return QUuid::fromString(topicId); }

/// What fits on the line that tells a decision, and leaves room for where it went.
QString shortTitle(const QString &title) {
    constexpr qsizetype most = 42;
    const QString seen = frenchSpacing(withoutHidden(title));
    const QStringView kept = firstCharacters(seen, most);
    return kept.size() == seen.size() ? seen : kept.trimmed().toString() + u'…';
}

} // namespace

Decisions::Decisions(TopicStore &store, QObject *parent) : QObject(parent), m_store(store) {}

/// Carries a decision out and keeps what it changed; one that changes nothing leaves no step.
template <class Act>
Decisions::Taken Decisions::decide(const QString &topicId, const QString &ghostText, Act act) {
    const QUuid id = identity(topicId);
    const auto before = m_store.placement(id);
    if (!before || !act(id)) {
        return std::nullopt;
    }
    const auto after = m_store.placement(id);
    if (after) {
        keepStep({id, *before, *after});
    }
    Q_EMIT decided(identityText(id), ghostText);
    return ghostText;
}

void Decisions::keepStep(Step step) {
    if (step.before != step.after) {
        m_done.append(std::move(step));
        m_undone.clear();
        Q_EMIT stepsChanged();
    }
}

Decisions::Taken Decisions::keep(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::Kept),
                  [this](const QUuid &id) { return m_store.keep(id); });
}

Decisions::Taken Decisions::later(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::Later),
                  [this](const QUuid &id) { return m_store.postpone(id); });
}

Decisions::Taken Decisions::dismiss(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::Dismissed),
                  [this](const QUuid &id) { return m_store.dismiss(id); });
}

Decisions::Taken Decisions::postpone(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::Postponed),
                  [this](const QUuid &id) { return m_store.postpone(id); });
}

Decisions::Taken Decisions::removeFromProgram(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::Removed),
                  [this](const QUuid &id) { return m_store.backToInbox(id); });
}

Decisions::Taken Decisions::backToTriage(const QString &topicId) {
    return decide(topicId, outcomeText(Outcome::PutBack),
                  [this](const QUuid &id) { return m_store.backToInbox(id); });
}

Decisions::Taken Decisions::done(const QString &topicId, std::optional<Worth> worth) {
    return decide(topicId, outcomeText(Outcome::Done),
                  [this, worth](const QUuid &id) { return m_store.markDone(id, worth); });
}

Decisions::Taken Decisions::verdict(const QString &topicId, Worth worth) {
    return decide(topicId, outcomeText(worth),
                  [this, worth](const QUuid &id) { return m_store.judgeWorth(id, worth); });
}

bool Decisions::setNote(const QString &topicId, const QString &note) {
    const QUuid id = identity(topicId);
    const TopicPtr before = m_store.topic(id);
    if (!before || !m_store.setNote(id, note)) {
        return false;
    }
    keepStep({id, before->note, m_store.topic(id)->note});
    return true;
}

bool Decisions::setCorrection(const QString &topicId, const std::optional<Correction> &correction) {
    const QUuid id = identity(topicId);
    const TopicPtr before = m_store.topic(id);
    if (!before || !m_store.setCorrection(id, correction)) {
        return false;
    }
    keepStep({id, before->correction, correction});
    return true;
}

bool Decisions::isAt(const QUuid &id, const Side &side) const {
    const TopicPtr topic = m_store.topic(id);
    if (!topic) {
        return false;
    }
    if (const auto *placement = std::get_if<TopicStore::Placement>(&side)) {
        return m_store.placement(id) == *placement;
    }
    if (const auto *own = std::get_if<Own>(&side)) {
        return topic->correction == *own;
    }
    return topic->note == std::get<Note>(side);
}

bool Decisions::put(const QUuid &id, const Side &side) {
    if (const auto *placement = std::get_if<TopicStore::Placement>(&side)) {
        return m_store.restore(id, *placement);
    }
    if (const auto *own = std::get_if<Own>(&side)) {
        return m_store.setCorrection(id, *own);
    }
    return m_store.setNote(id, std::get<Note>(side).value_or(QString()));
}

namespace {

/// "revient dans À trier": where a topic goes back to, or goes again.
QString whereTo(TopicStatus status, const QString &verb) {
    switch (status) {
    case TopicStatus::Inbox:
        return Decisions::tr("%1 dans À trier").arg(verb);
    case TopicStatus::Program:
        return Decisions::tr("%1 dans ton programme").arg(verb);
    case TopicStatus::Reserve:
        return Decisions::tr("%1 dans la réserve").arg(verb);
    case TopicStatus::Done:
        return Decisions::tr("%1 dans ta bibliothèque").arg(verb);
    case TopicStatus::Dismissed:
        return Decisions::tr("est de nouveau écarté");
    case TopicStatus::Pending:
        return Decisions::tr("attend de nouveau d’être lu");
    }
    return {};
}

QString placePredicate(const TopicStore::Placement &from, const TopicStore::Placement &to,
                       const QString &verb) {
    if (from.status != to.status) {
        return whereTo(to.status, verb);
    }
    if (from.worth != to.worth) {
        return to.worth ? Decisions::tr("a de nouveau l’avis %1").arg(worthLabel(*to.worth))
                        : Decisions::tr("n’a plus d’avis");
    }
    return Decisions::tr("retrouve sa place");
}

} // namespace

QString Decisions::predicate(const QUuid &id, const Side &from, const Side &to,
                             Direction direction) const {
    if (const auto *place = std::get_if<TopicStore::Placement>(&to)) {
        return placePredicate(std::get<TopicStore::Placement>(from), *place,
                              direction == Direction::Back ? tr("revient") : tr("repart"));
    }
    if (const auto *own = std::get_if<Own>(&to)) {
        const auto judged = judgedScore(*m_store.topic(id));
        return *own     ? tr("a de nouveau ta note, %1").arg(scoreFromRelevance((*own)->score))
               : judged ? tr("retrouve ma note, %1").arg(*judged)
                        : tr("n’a plus de note");
    }
    return std::get<Note>(to) ? tr("retrouve ce que tu y avais écrit")
                              : tr("n’a plus ce que tu y avais écrit");
}

QString Decisions::undo() { return step(m_done, m_undone, Direction::Back); }

QString Decisions::redo() { return step(m_undone, m_done, Direction::Forth); }

QString Decisions::step(QList<Step> &from, QList<Step> &to, Direction direction) {
    if (from.isEmpty()) {
        return {};
    }
    const Step step = from.takeLast();
    const bool back = direction == Direction::Back;
    const Side &left = back ? step.after : step.before;
    const Side &wanted = back ? step.before : step.after;
    const TopicPtr topic = m_store.topic(step.id);
    QString sentence = std::holds_alternative<TopicStore::Placement>(left)
                           ? tr("a changé de place entre-temps, il y reste")
                           : tr("a changé entre-temps, il reste comme il est");
    if (isAt(step.id, left) && put(step.id, wanted)) {
        to.append(step);
        sentence = predicate(step.id, left, wanted, direction);
    }
    sentence =
        frenchSpacing(tr("« %1 » %2").arg(topic ? shortTitle(topic->title) : QString(), sentence));
    Q_EMIT stepsChanged();
    if (back) {
        Q_EMIT undone(identityText(step.id), sentence);
    } else {
        Q_EMIT redone(identityText(step.id), sentence);
    }
    return sentence;
}

} // namespace vorle
