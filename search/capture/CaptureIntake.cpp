#include "search/capture/CaptureIntake.h"

#include "base/Text.h"
#include "core/Handover.h"
#include "search/run/LinkRegistry.h"
#include "search/web/PageText.h"

#include <QUrl>

#include <algorithm>

namespace vorle {

namespace {

constexpr qsizetype titleCharacters = 300;
constexpr qsizetype noteCharacters = 4'000;
constexpr qsizetype projectCharacters = 200;
/// A share that is dated further back was dated by a clock that was wrong.
constexpr qint64 oldestShareDays = 400;

std::optional<WebLink> addressOf(const CapturedLink &link) {
    return link.sharedAt ? WebLink::from(link.url) : WebLink::typed(link.url);
}

QDateTime foundAt(const CapturedLink &link, const QDateTime &now) {
    const bool believed = link.sharedAt && link.sharedAt->isValid() && *link.sharedAt <= now &&
                          *link.sharedAt >= now.addDays(-oldestShareDays);
    return believed ? *link.sharedAt : now;
}

Handover handoverOf(const CapturedLink &link) {
    return {.title = clampedLine(link.title, titleCharacters),
            .note = clampedLines(link.note, noteCharacters),
            .project = clampedLine(link.project.value_or(QString()), projectCharacters),
            .pageText = clampedLines(link.pageText, maxBodyCharacters).toUtf8()};
}

Topic topicOf(const CapturedLink &link, const QString &address, const QDateTime &now) {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = QUrl(address).host();
    topic.sources = {{QString(), address}};
    topic.status = TopicStatus::Pending;
    topic.readLevel = ReadLevel::None; // until it is read: no score, rather than 0
    topic.foundAt = foundAt(link, now);
    topic.capturedURL = address;
    topic.origin = Origin::Capture;
    topic.sharedAt = link.sharedAt ? std::optional(topic.foundAt) : std::nullopt;
    takeUp(topic, handoverOf(link));
    return topic;
}

/// Whether a topic was set aside by somebody who had this share behind them. Moments are kept to
/// the second: of the same one nobody can tell.
bool isOlderThanDecision(const CapturedLink &link, const Topic &topic) {
    return link.sharedAt && link.sharedAt->isValid() && topic.triagedAt &&
           link.sharedAt->addSecs(1) <= *topic.triagedAt;
}

/// A topic of the store has the link.
IntakeResult meet(TopicStore &store, const TopicPtr &topic, const CapturedLink &link,
                  SetAside setAside) {
    const bool isUnread = isUnjudgedCapture(*topic);
    const bool isBack = topic->status == TopicStatus::Dismissed &&
                        !isOlderThanDecision(link, *topic) &&
                        (isUnread || setAside == SetAside::Returns);
    if (isBack && isUnread) {
        TopicStore::TriageState waiting;
        waiting.status = TopicStatus::Pending;
        store.restore(topic->id, waiting);
    } else if (isBack) {
        store.backToInbox(topic->id);
    }
    const bool tookUp = store.takeUpCapture(topic->id, handoverOf(link));
    using Kind = IntakeResult::Kind;
    return {isBack && isUnread ? Kind::New : Kind::Held, topic->id, tookUp, isBack};
}

} // namespace

QList<IntakeResult> captureIntake(TopicStore &store, const QList<CapturedLink> &links,
                                  const QDateTime &now, SetAside setAside) {
    using Kind = IntakeResult::Kind;
    LinkRegistry registry(store.topics());
    QList<Topic> fresh;
    QHash<qsizetype, qsizetype> places; // of a link, among the fresh ones
    QList<IntakeResult> results;
    for (qsizetype i = 0; i < links.size(); ++i) {
        const CapturedLink &link = links[i];
        const auto address = addressOf(link);
        if (!address) {
            results += IntakeResult{};
            continue;
        }
        const LinkRegistry::Claim claim = registry.claim(address->text(), i);
        if (claim.standing == LinkRegistry::Standing::New) {
            places.insert(i, fresh.size());
            fresh += topicOf(link, address->text(), now);
            results += IntakeResult{Kind::New, fresh.last().id, false};
        } else if (claim.standing == LinkRegistry::Standing::Same) {
            Topic &topic = fresh[places.value(claim.item)];
            const bool tookUp = takeUp(topic, handoverOf(link));
            results += IntakeResult{Kind::Held, topic.id, tookUp};
        } else {
            results += meet(store, store.topic(claim.topic), link, setAside);
        }
    }
    if (!fresh.isEmpty()) {
        store.add(std::move(fresh));
    }
    return results;
}

} // namespace vorle
