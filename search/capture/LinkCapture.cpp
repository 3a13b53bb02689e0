#include "search/capture/LinkCapture.h"

#include "search/run/RunRecorder.h"

#include <QTimeZone>

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// A page that did not answer so often is judged by what is known of it.
constexpr int unreachableTries = 3;
constexpr std::chrono::seconds firstPause = std::chrono::minutes(10);
constexpr std::chrono::seconds longestPause = std::chrono::hours(6);

} // namespace

LinkCapture::LinkCapture(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(parts)
    , m_reading(parts)
    , m_allowance(parts.store.file(), parts.clock) {}
LinkCapture::~LinkCapture() = default;

std::variant<QUuid, LinkCapture::Refusal> LinkCapture::take(Link link) {
    const IntakeResult result =
        captureIntake(m_parts.store, {std::move(link)}, m_parts.clock.now(), SetAside::Stays)
            .first();
    if (result.kind == IntakeResult::Kind::NoLink) {
        return Refusal{tr("Ce n’est pas l’adresse d’une page web."), std::nullopt};
    }
    if (result.kind == IntakeResult::Kind::Held) {
        start({result.topic}, Cause::Given);
        return Refusal{result.tookUp
                           ? tr("Tu as déjà ce lien\u00A0: j’y ai ajouté ce que tu en dis.")
                           : tr("Tu as déjà ce lien."),
                       result.topic, result.tookUp};
    }
    start({result.topic}, Cause::Given);
    return result.topic;
}

QList<IntakeResult> LinkCapture::takeDropped(const QList<Link> &links) {
    const QList<IntakeResult> results =
        captureIntake(m_parts.store, links, m_parts.clock.now(), SetAside::Returns);
    QList<QUuid> waiting;
    for (const IntakeResult &result : results) {
        if (state(result.topic) == State::None) {
            waiting += result.topic; // one that was set aside may be back
        }
    }
    start(waiting, Cause::ByItself);
    return results;
}

void LinkCapture::resume() {
    QList<QUuid> waiting;
    for (const TopicPtr &topic : m_parts.store.topics(TopicStatus::Pending)) {
        waiting += topic->id;
    }
    m_nextTry.reset();
    start(waiting, Cause::ByItself);
}

void LinkCapture::look() {
    if (!m_turn.isEmpty()) {
        admit();
        run();
    }
    const bool due = !m_nextTry || m_parts.clock.now() >= *m_nextTry;
    if (!m_failures.isEmpty() && !m_running && due && m_reading.isAgentReady()) {
        m_former = m_failures;
        start(m_failures.keys(), Cause::ByItself);
    }
}

LinkCapture::State LinkCapture::state(const QUuid &id) const {
    const TopicPtr topic = m_parts.store.topic(id);
    if (!topic || !isBeingRead(*topic)) {
        return State::None;
    }
    if (m_underWay.contains(id)) {
        return State::Reading;
    }
    if (m_queued.contains(id)) {
        return State::Queued;
    }
    return m_failures.contains(id)    ? State::Failed
           : m_postponed.contains(id) ? State::Postponed
                                      : State::None;
}

QString LinkCapture::failureText(const QUuid &id) const {
    switch (state(id)) {
    case State::Failed:
        return m_failures.value(id);
    case State::Postponed:
        return tr("J’en lis %1 par jour\u00A0: celui-ci attend son tour.")
            .arg(DailyAllowance::linksADay);
    default:
        return {};
    }
}

void LinkCapture::retry(const QUuid &id) {
    const State now = state(id);
    if (now == State::Failed || now == State::Postponed) {
        start({id}, Cause::Asked);
    }
}

void LinkCapture::ask(const QUuid &id) { start({id}, Cause::Asked); }

void LinkCapture::askPostponed() { start(QList<QUuid>(m_turn), Cause::Asked); }

void LinkCapture::start(const QList<QUuid> &ids, Cause cause) {
    QList<QUuid> toTheirTurn;
    for (const QUuid &id : ids) {
        const TopicPtr topic = m_parts.store.topic(id);
        m_failures.remove(id);
        if (!topic || !isBeingRead(*topic)) {
            continue;
        }
        if (cause == Cause::Asked) {
            m_asked.insert(id);
        }
        const bool isToday = m_failedToday.remove(id);
        const bool hasItsDay = topic->sharedAt && cause == Cause::ByItself && !isToday;
        if (isToday && cause == Cause::ByItself) {
            m_spending.insert(id);
        }
        if (m_queued.contains(id)) {
            // as it is
        } else if (!hasItsDay) {
            if (m_postponed.remove(id)) {
                m_turn.removeOne(id);
            }
            enqueue(id);
        } else if (!m_postponed.contains(id)) {
            m_postponed.insert(id);
            m_turn += id;
            toTheirTurn += id; // told once it is known whether this is their day
            continue;
        }
        Q_EMIT stateChanged(id);
    }
    admit();
    for (const QUuid &id : std::as_const(toTheirTurn)) {
        if (m_postponed.contains(id)) {
            Q_EMIT stateChanged(id);
        }
    }
    Q_EMIT postponedChanged();
    run();
}

/// Those whose day it is join the queue.
void LinkCapture::admit() {
    m_failedToday.removeIf([this](const QUuid &id) { return state(id) != State::Failed; });
    const qsizetype waiting = m_turn.size();
    m_turn.removeIf([this](const QUuid &id) {
        const TopicPtr topic = m_parts.store.topic(id);
        return (!topic || !isBeingRead(*topic)) && m_postponed.remove(id); // set aside meanwhile
    });
    if (m_turn.size() != waiting) {
        Q_EMIT postponedChanged();
    }
    qsizetype room = m_allowance.left() - m_spending.size() - m_failedToday.size() - m_spent;
    qsizetype gone = 0;
    for (; gone < m_turn.size() && room > 0; ++gone) {
        const QUuid id = m_turn[gone];
        m_postponed.remove(id);
        enqueue(id);
        m_spending.insert(id);
        --room;
        Q_EMIT stateChanged(id);
    }
    if (gone > 0) {
        m_turn.remove(0, gone);
        Q_EMIT postponedChanged();
    }
}

void LinkCapture::enqueue(const QUuid &id) {
    m_queue += id;
    m_queued.insert(id);
}

void LinkCapture::run() {
    if (!m_running && !m_queue.isEmpty() && !m_cancel.token().isCancelled()) {
        m_work.add(logged(work(), QStringLiteral("captured links")));
    }
}

Task<> LinkCapture::work() {
    m_running = true;
    Q_EMIT runningChanged();
    while (!m_queue.isEmpty() && !m_cancel.token().isCancelled()) {
        const QList<QUuid> batch = m_queue.first(std::min(Judge::batchCandidates, m_queue.size()));
        QList<CaptureReading::Link> links;
        for (const QUuid &id : batch) {
            const bool waits =
                !m_asked.contains(id) && m_unreachable.value(id) + 1 < unreachableTries;
            links += CaptureReading::Link{id, waits ? CaptureReading::Patience::Waits
                                                    : CaptureReading::Patience::None};
            m_underWay.insert(id);
            Q_EMIT stateChanged(id);
        }
        std::optional<QString> failure;
        QList<QUuid> ended = batch;
        try {
            co_await m_reading.complete(links, told(), m_cancel.token());
        } catch (const Cancelled &) {
            break;
        } catch (const std::exception &error) {
            failure = vorle::failureText(error);
            const auto *agentError = dynamic_cast<const AgentError *>(&error);
            backOff(agentError);
            if (batch.size() > 1 || (agentError != nullptr && agentError->limit())) {
                ended = m_queue; // no other would fare better
            }
        }
        for (const QUuid &one : std::as_const(ended)) {
            end(one, failure);
        }
        if (std::exchange(m_troubled, false)) {
            backOff(nullptr); // once, however many of them failed
        }
        if (const int spent = std::exchange(m_spent, 0); spent > 0) {
            co_await m_allowance.spend(spent);
            admit();
        }
    }
    if (m_spent > 0) { // by a batch that was stopped
        co_await m_allowance.spend(std::exchange(m_spent, 0));
    }
    m_queue.clear();
    m_queued.clear();
    m_underWay.clear();
    m_asked.clear();
    m_spending.clear();
    m_running = false;
    Q_EMIT runningChanged();
}

CaptureReading::Told LinkCapture::told() {
    return {.judged =
                [this](const QUuid &id) {
                    m_spent += m_spending.remove(id) ? 1 : 0;
                    m_unreachable.remove(id);
                    m_pause = {};
                    m_nextTry.reset();
                    Q_EMIT completed(id);
                },
            .unreachable =
                [this](const QUuid &id) {
                    ++m_unreachable[id];
                    m_troubled = true;
                    end(id, tr("Cette page ne répond pas, ou tu es hors ligne. Je réessaierai."));
                },
            .failed =
                [this](const QUuid &id, const QString &why) {
                    m_troubled = true;
                    end(id, why);
                }};
}

void LinkCapture::end(const QUuid &id, const std::optional<QString> &failure) {
    if (!m_queued.remove(id)) {
        return; // its end was told
    }
    m_queue.removeOne(id);
    m_underWay.remove(id);
    const TopicPtr topic = m_parts.store.topic(id);
    const bool stillWaits = topic && isBeingRead(*topic);
    if (stillWaits && !failure) {
        // Set aside while the batch ran, which passed it over, and taken back since.
        enqueue(id);
        Q_EMIT stateChanged(id);
        return;
    }
    m_asked.remove(id);
    const bool ofTheDay = m_spending.remove(id);
    if (failure && stillWaits) {
        if (ofTheDay) {
            m_failedToday.insert(id);
        }
        m_failures.insert(id, *failure);
        if (m_former.value(id) != *failure) {
            Q_EMIT failed(id, *failure);
        }
    }
    m_former.remove(id);
    Q_EMIT stateChanged(id);
}

/// When those that failed are tried again by themselves.
void LinkCapture::backOff(const AgentError *error) {
    const QDateTime now = m_parts.clock.now();
    if (error != nullptr && (error->kind() == AgentError::Case::SignedOut ||
                             error->kind() == AgentError::Case::NotFound)) {
        m_nextTry.reset(); // to see whether it is back costs nothing
        return;
    }
    m_pause = std::clamp(m_pause * 2, firstPause, longestPause);
    const auto lifted = error != nullptr && error->limit()
                            ? error->limit()->until(now, QTimeZone::systemTimeZone())
                            : std::nullopt;
    m_nextTry = lifted ? lifted->addSecs(60) : now.addSecs(m_pause.count());
}

} // namespace vorle
