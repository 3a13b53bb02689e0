#include "search/capture/CaptureIntake.h"

#include "base/Text.h"
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

Topic topicOf(const CapturedLink &link, const QString &address, const QDateTime &now) {
    Topic topic;
    topic.id = QUuid::createUuid();
    const QString title = clampedLine(link.title, titleCharacters);
    topic.title = title.isEmpty() ? QUrl(address).host() : title;
    if (const QString project = clampedLine(link.project.value_or(QString()), projectCharacters);
        !project.isEmpty()) {
        topic.project = project;
    }
    topic.sources = {{title, address}};
    topic.status = TopicStatus::Pending;
    topic.readLevel = ReadLevel::None; // until it is read: no score, rather than 0
    topic.foundAt = foundAt(link, now);
    topic.capturedURL = address;
    topic.origin = Origin::Capture;
    topic.sharedAt = link.sharedAt ? std::optional(topic.foundAt) : std::nullopt;
    if (const QString note = clampedLines(link.note, noteCharacters); !note.isEmpty()) {
        topic.note = note;
    }
    if (const QString text = clampedLines(link.pageText, maxBodyCharacters); !text.isEmpty()) {
        topic.seenText = text.toUtf8();
    }
    return topic;
}

/// The note with another under it; as it is where it says that already.
QString joinedNotes(const QString &own, const QString &other) {
    return other.isEmpty() || own.contains(other) ? own
           : own.isEmpty()                        ? other
                                                  : own + u'\n' + other;
}

void takeUp(TopicStore &store, const TopicPtr &topic, const CapturedLink &link) {
    const QString own = topic->note.value_or(QString());
    const QString note = joinedNotes(own, clampedLines(link.note, noteCharacters));
    if (note != own) {
        store.setNote(topic->id, note);
    }
    if (topic->status != TopicStatus::Dismissed) {
        return;
    }
    if (isUnjudgedCapture(*topic)) {
        TopicStore::TriageState waiting;
        waiting.status = TopicStatus::Pending;
        store.restore(topic->id, waiting);
    } else {
        store.backToInbox(topic->id);
    }
}

} // namespace

QList<IntakeResult> captureIntake(TopicStore &store, const QList<CapturedLink> &links,
                                  const QDateTime &now, HeldTopics held) {
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
            results += IntakeResult{Kind::New, fresh.last().id};
        } else if (claim.standing == LinkRegistry::Standing::Same) {
            Topic &topic = fresh[places.value(claim.item)];
            const QString note = joinedNotes(topic.note.value_or(QString()),
                                             clampedLines(link.note, noteCharacters));
            topic.note = note.isEmpty() ? std::nullopt : std::optional(note);
            results += IntakeResult{Kind::Held, topic.id};
        } else {
            const TopicPtr topic = store.topic(claim.topic);
            const bool wasTakenBack =
                topic && topic->status == TopicStatus::Dismissed && isUnjudgedCapture(*topic);
            results += IntakeResult{wasTakenBack ? Kind::New : Kind::Held, claim.topic};
            if (topic && (wasTakenBack || held == HeldTopics::TakeItUp)) {
                takeUp(store, topic, link);
            }
        }
    }
    if (!fresh.isEmpty()) {
        store.add(std::move(fresh));
    }
    return results;
}

} // namespace vorle
