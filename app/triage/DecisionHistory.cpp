#include "app/triage/DecisionHistory.h"

#include <QSet>

#include <utility>

namespace vorle {

/// Carries a decision out and keeps what it changed; one that changes nothing leaves no step.
template <class Act>
bool DecisionHistory::carryOut(const QUuid &id, const Decided &decision, Act act) {
    const auto before = m_store.triageState(id);
    if (!before || !act()) {
        return false;
    }
    if (const auto after = m_store.triageState(id)) {
        keepStep(id, *before, *after);
    }
    Q_EMIT stepsChanged();
    Q_EMIT decided(id, decision.outcome, decision.verdict);
    return true;
}

void DecisionHistory::keepStep(const QUuid &id, Side before, Side after) {
    if (before != after) {
        m_done.append({id, std::move(before), std::move(after), m_number++});
        m_undone.clear();
    }
}

bool DecisionHistory::decide(const QUuid &id, Outcome outcome) {
    return carryOut(id, {outcome}, [&] {
        switch (outcome) {
        case Outcome::Kept:
            return m_store.keep(id);
        case Outcome::Later:
        case Outcome::Postponed:
            return m_store.postpone(id);
        case Outcome::Dismissed:
            return m_store.dismiss(id);
        case Outcome::Removed:
        case Outcome::PutBack:
            return m_store.backToInbox(id);
        case Outcome::Done:
            return m_store.markDone(id);
        }
        return false;
    });
}

bool DecisionHistory::finish(const QUuid &id, std::optional<Worth> worth) {
    return carryOut(id, {Outcome::Done}, [&] { return m_store.markDone(id, worth); });
}

bool DecisionHistory::judge(const QUuid &id, Worth worth) {
    return carryOut(id, {Outcome::Done, worth}, [&] { return m_store.judgeWorth(id, worth); });
}

bool DecisionHistory::setNote(const QUuid &id, const QString &note) {
    const TopicPtr before = m_store.topic(id);
    if (!before || !m_store.setNote(id, note)) {
        return false;
    }
    keepStep(id, before->note, m_store.topic(id)->note);
    Q_EMIT stepsChanged();
    return true;
}

bool DecisionHistory::setCorrection(const QUuid &id, const std::optional<Correction> &correction) {
    const TopicPtr before = m_store.topic(id);
    if (!before || !m_store.setCorrection(id, correction)) {
        return false;
    }
    keepStep(id, before->correction, correction);
    Q_EMIT stepsChanged();
    return true;
}

bool DecisionHistory::isAt(const QUuid &id, const Side &side) const {
    const TopicPtr topic = m_store.topic(id);
    if (!topic) {
        return false;
    }
    if (const auto *state = std::get_if<TopicStore::TriageState>(&side)) {
        return m_store.triageState(id) == *state;
    }
    if (const auto *own = std::get_if<Own>(&side)) {
        return topic->correction == *own;
    }
    return topic->note == std::get<Note>(side);
}

bool DecisionHistory::put(const QUuid &id, const Side &side) {
    if (const auto *state = std::get_if<TopicStore::TriageState>(&side)) {
        return m_store.restore(id, *state);
    }
    if (const auto *own = std::get_if<Own>(&side)) {
        return m_store.setCorrection(id, *own);
    }
    return m_store.setNote(id, std::get<Note>(side).value_or(QString()));
}

namespace {

/// Stands in "À trier", a link that is still read included.
bool isToSort(TopicStatus status) {
    return status == TopicStatus::Inbox || status == TopicStatus::Pending;
}

} // namespace

QList<SortedTopic> DecisionHistory::sorted() const {
    QList<SortedTopic> latestFirst;
    QSet<QUuid> told;
    QSet<QUuid> met;
    for (auto step = m_done.crbegin(); step != m_done.crend(); ++step) {
        const auto *before = std::get_if<TopicStore::TriageState>(&step->before);
        const auto *after = std::get_if<TopicStore::TriageState>(&step->after);
        if (before == nullptr || after == nullptr || told.contains(step->id)) {
            continue;
        }
        if (!met.contains(step->id)) {
            met.insert(step->id);
            if (!isAt(step->id, step->after)) { // another hand has moved it since
                told.insert(step->id);
                continue;
            }
        }
        const bool out = isToSort(before->status) && (after->status == TopicStatus::Program ||
                                                      after->status == TopicStatus::Reserve ||
                                                      after->status == TopicStatus::Dismissed);
        if (out) {
            latestFirst.append(
                {step->id, after->status, after->triagedAt.value_or(QDateTime()), step->number});
        }
        if (out || isToSort(after->status)) {
            told.insert(step->id);
        }
    }
    return {latestFirst.crbegin(), latestFirst.crend()};
}

std::optional<StepResult> DecisionHistory::undo() {
    const auto result = step(m_done, m_undone, true);
    if (result) {
        Q_EMIT stepsChanged();
        Q_EMIT undone(*result);
    }
    return result;
}

std::optional<StepResult> DecisionHistory::redo() {
    const auto result = step(m_undone, m_done, false);
    if (result) {
        Q_EMIT stepsChanged();
        Q_EMIT redone(*result);
    }
    return result;
}

std::optional<StepResult> DecisionHistory::step(QList<Step> &from, QList<Step> &to, bool back) {
    using What = StepResult::What;
    if (from.isEmpty()) {
        return std::nullopt;
    }
    const Step step = from.takeLast();
    const Side &left = back ? step.after : step.before;
    const Side &wanted = back ? step.before : step.after;
    StepResult result{.id = step.id, .back = back};
    const auto *wantedState = std::get_if<TopicStore::TriageState>(&wanted);
    if (!isAt(step.id, left) || !put(step.id, wanted)) {
        result.what = wantedState != nullptr ? What::MovedSince : What::ChangedSince;
        return result;
    }
    to.append(step);
    if (wantedState != nullptr) {
        const auto &former = std::get<TopicStore::TriageState>(left);
        result.what = former.status != wantedState->status ? What::Moved
                      : former.worth != wantedState->worth ? What::Judged
                                                           : What::PutInPlace;
        result.status = wantedState->status;
        result.worth = wantedState->worth;
    } else if (const auto *own = std::get_if<Own>(&wanted)) {
        result.what = What::Scored;
        result.score = *own ? std::optional((*own)->score) : std::nullopt;
    } else {
        result.what = What::Noted;
        result.hasNote = std::get<Note>(wanted).has_value();
    }
    return result;
}

} // namespace vorle
