#include "core/TopicStore.h"

#include "base/MainThread.h"
#include "core/Decision.h"
#include "core/TopicWriter.h"

#include <QSet>

#include <algorithm>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/TopicStore";

/// What the writer takes: it keeps a topic's bytes beside it.
TopicPtr stored(Topic topic) { return std::make_shared<const StoredTopic>(std::move(topic)); }

/// What came to a topic before it was judged once more is its user's.
void keepWhatCame(Topic &judged, const Topic &present) {
    judged.note = present.note;
    judged.correction = present.correction;
    judged.brief = present.brief;
    judged.unknown = present.unknown;
    if (!judged.project) {
        judged.project = present.project;
    }
    if (present.seenText.value_or(QByteArray()).size() >
        judged.seenText.value_or(QByteArray()).size()) {
        judged.seenText = present.seenText;
    }
}

/// An entry copied by hand has its original's identity, one written by hand may have none: each
/// gets one of its own, the same at every load, so that what is kept beside the topics finds it.
void giveIdentities(QList<Topic> &topics) {
    QSet<QUuid> given;
    given.reserve(topics.size());
    QList<Topic *> without;
    for (Topic &topic : topics) {
        if (topic.id.isNull() || given.contains(topic.id)) {
            without.append(&topic);
        } else {
            given.insert(topic.id);
        }
    }
    for (Topic *topic : std::as_const(without)) {
        const QUuid original = topic->id;
        for (int number = 2; topic->id.isNull() || given.contains(topic->id); ++number) {
            topic->id = QUuid::createUuidV5(original, QByteArray::number(number));
        }
        given.insert(topic->id);
    }
}

} // namespace

TopicStore::TopicStore(Kind kind, Resources resources, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_kind(kind)
    , m_file(location(kind))
    , m_resources(std::move(resources))
    , m_clock(clock) {
    load();
}

TopicStore::TopicStore(QString file, Resources resources, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_kind(file.isEmpty() ? Kind::Preview : Kind::Real)
    , m_file(std::move(file))
    , m_resources(std::move(resources))
    , m_clock(clock) {
    load();
}

TopicStore::~TopicStore() { flush(); }

void TopicStore::replaceAll(QList<Topic> topics) {
    m_topics.clear();
    m_topics.reserve(topics.size());
    m_positions.clear();
    m_positions.reserve(topics.size());
    m_withdrawn.clear();
    giveIdentities(topics);
    for (Topic &topic : topics) {
        append(std::move(topic));
    }
    Q_EMIT topicsReset();
}

void TopicStore::append(Topic topic) {
    const QUuid id = topic.id;
    m_topics.append(stored(std::move(topic)));
    m_positions.insert(id, m_topics.size() + m_withdrawn.size() - 1);
}

/// Where the topic stands in the list, or -1.
qsizetype TopicStore::indexOf(const QUuid &id) const {
    const qsizetype position = m_positions.value(id, -1);
    const auto later = std::ranges::lower_bound(m_withdrawn, position);
    return position - (later - m_withdrawn.begin());
}

QList<TopicPtr> TopicStore::topics() const {
    requireMainThread(subject);
    return m_topics;
}

QList<TopicPtr> TopicStore::topics(TopicStatus status) const {
    requireMainThread(subject);
    QList<TopicPtr> chosen;
    std::ranges::copy_if(m_topics, std::back_inserter(chosen),
                         [status](const TopicPtr &topic) { return topic->status == status; });
    return chosen;
}

TopicPtr TopicStore::topic(const QUuid &id) const {
    requireMainThread(subject);
    const qsizetype at = indexOf(id);
    return at < 0 ? nullptr : m_topics.at(at);
}

qsizetype TopicStore::position(const QUuid &id) const {
    requireMainThread(subject);
    return m_positions.value(id, -1);
}

qsizetype TopicStore::positionAt(qsizetype index) const {
    requireMainThread(subject);
    for (const qsizetype withdrawn : m_withdrawn) {
        if (withdrawn > index) {
            break;
        }
        ++index;
    }
    return index;
}

qsizetype TopicStore::count() const {
    requireMainThread(subject);
    return m_topics.size();
}

QList<QUuid> TopicStore::add(QList<Topic> topics) {
    requireMainThread(subject);
    QList<QUuid> added;
    for (Topic &topic : topics) {
        if (topic.id.isNull()) {
            topic.id = QUuid::createUuid();
        }
        if (!m_positions.contains(topic.id)) {
            added.append(topic.id);
            append(std::move(topic));
        }
    }
    if (!added.isEmpty()) {
        save();
        Q_EMIT topicsAdded(added);
    }
    return added;
}

bool TopicStore::completeCaptured(Topic judged) {
    requireMainThread(subject);
    const TopicPtr captured = topic(judged.id);
    if (!captured || captured->status == TopicStatus::Dismissed) {
        return false;
    }
    judged.capturedURL = captured->capturedURL;
    judged.note = captured->note;
    // What came to the topic while it waited is the user's too.
    judged.correction = captured->correction;
    judged.unknown = captured->unknown;
    judged.brief = captured->brief;
    judged.foundAt = captured->foundAt;
    judged.origin = judged.origin ? judged.origin : captured->origin;
    judged.gallery.clear();
    judged.status = TopicStatus::Inbox;
    const auto isCaptured = [&](const TopicSource &source) {
        return source.url == *captured->capturedURL;
    };
    if (captured->capturedURL && std::ranges::none_of(judged.sources, isCaptured)) {
        const auto own = std::ranges::find_if(captured->sources, isCaptured);
        const QString title = own == captured->sources.end() ? QString() : own->title;
        judged.sources.prepend({title, *captured->capturedURL});
    }
    return change(judged.id, [&](Topic &topic) { topic = std::move(judged); });
}

bool TopicStore::takeUpCapture(const QUuid &id, const Handover &handed) {
    requireMainThread(subject);
    const TopicPtr present = topic(id);
    if (!present) {
        return false;
    }
    Topic richer = *present;
    return takeUp(richer, handed) && change(id, [&](Topic &target) { target = std::move(richer); });
}

qsizetype TopicStore::releasePending(const QList<QUuid> &ids) {
    const QSet<QUuid> wanted(ids.begin(), ids.end());
    return release([&](const Topic &topic) { return wanted.contains(topic.id); });
}

qsizetype TopicStore::releaseAllPending() {
    return release([](const Topic &topic) { return !topic.capturedURL; });
}

qsizetype TopicStore::release(const std::function<bool(const Topic &)> &chosen) {
    requireMainThread(subject);
    QList<QUuid> released;
    for (qsizetype i = 0; i < m_topics.size(); ++i) {
        if (const TopicPtr &held = m_topics.at(i);
            held->status == TopicStatus::Pending && chosen(*held)) {
            Topic topic = *held;
            topic.status = TopicStatus::Inbox;
            released.append(topic.id);
            m_topics[i] = stored(std::move(topic));
        }
    }
    if (!released.isEmpty()) {
        save();
    }
    for (const QUuid &id : released) {
        Q_EMIT topicChanged(id);
    }
    return released.size();
}

bool TopicStore::replacePending(Topic topic) {
    const TopicPtr present = this->topic(topic.id);
    if (!present || present->status != TopicStatus::Pending) {
        return false;
    }
    topic.status = TopicStatus::Pending;
    keepWhatCame(topic, *present);
    return change(topic.id, [&](Topic &target) { target = std::move(topic); });
}

bool TopicStore::isUnreadStill(const QUuid &id) const {
    const TopicPtr present = topic(id);
    return present && !present->capturedURL && present->readLevel == ReadLevel::None &&
           (present->status == TopicStatus::Pending || present->status == TopicStatus::Inbox) &&
           !present->triagedAt && !present->correction && !present->note && !present->brief;
}

bool TopicStore::completeUnread(Topic judged) {
    if (!isUnreadStill(judged.id)) {
        return false;
    }
    const TopicPtr present = topic(judged.id);
    judged.status = present->status;
    judged.foundAt = present->foundAt;
    judged.gallery = present->gallery;
    keepWhatCame(judged, *present);
    return change(judged.id, [&](Topic &target) { target = std::move(judged); });
}

bool TopicStore::withdrawPending(const QUuid &id, const QUuid &heir) {
    const TopicPtr present = topic(id);
    if (!present || present->status != TopicStatus::Pending || present->capturedURL) {
        return false;
    }
    if (heir != id && topic(heir)) {
        takeUpCapture(heir, {.title = {},
                             .note = present->note.value_or(QString()),
                             .project = present->project.value_or(QString()),
                             .pageText = present->seenText.value_or(QByteArray())});
    } else if (present->note) {
        return false;
    }
    m_withdrawn.reserve(m_withdrawn.size() + 1); // what fails for want of memory changes nothing
    m_topics.removeAt(indexOf(id));
    const qsizetype position = m_positions.take(id);
    m_withdrawn.insert(std::ranges::lower_bound(m_withdrawn, position), position);
    save();
    return true;
}

bool TopicStore::addSources(const QUuid &id, const QList<TopicSource> &sources) {
    const TopicPtr present = topic(id);
    if (!present) {
        return false;
    }
    QList<TopicSource> all = present->sources;
    for (const TopicSource &source : sources) {
        const bool known = std::ranges::any_of(
            all, [&](const TopicSource &other) { return other.url == source.url; });
        if (!known) {
            all.append(source);
        }
    }
    return all.size() == present->sources.size() ||
           change(id, [&](Topic &topic) { topic.sources = std::move(all); });
}

bool TopicStore::keep(const QUuid &id) { return decide(id, TopicStatus::Program); }

bool TopicStore::postpone(const QUuid &id) { return decide(id, TopicStatus::Reserve); }

bool TopicStore::dismiss(const QUuid &id) { return decide(id, TopicStatus::Dismissed); }

bool TopicStore::backToInbox(const QUuid &id) { return decide(id, TopicStatus::Inbox); }

bool TopicStore::markDone(const QUuid &id, std::optional<Worth> worth) {
    return decide(id, TopicStatus::Done, worth);
}

bool TopicStore::judgeWorth(const QUuid &id, Worth worth) {
    const TopicPtr present = topic(id);
    if (present && present->status == TopicStatus::Done) {
        const QDateTime now = m_clock.now();
        return change(id, [&](Topic &topic) {
            topic.worth = worth;
            topic.triagedAt = now;
        });
    }
    return markDone(id, worth);
}

bool TopicStore::decide(const QUuid &id, TopicStatus status, std::optional<Worth> worth) {
    const TopicPtr present = topic(id);
    if (present && refusal(*present, status)) {
        return false;
    }
    const QDateTime now = m_clock.now();
    return change(id, [&](Topic &topic) {
        topic.status = status;
        topic.triagedAt = now;
        topic.worth = worth;
        if (status == TopicStatus::Done) {
            topic.doneAt = now;
        } else {
            topic.doneAt.reset();
        }
        if (status == TopicStatus::Reserve && topic.postponedCount < INT_MAX) {
            ++topic.postponedCount;
        }
    });
}

std::optional<TopicStore::TriageState> TopicStore::triageState(const QUuid &id) const {
    const TopicPtr present = topic(id);
    if (!present) {
        return std::nullopt;
    }
    return TriageState{present->status, present->postponedCount, present->triagedAt,
                       present->doneAt, present->worth};
}

bool TopicStore::restore(const QUuid &id, const TriageState &state) {
    return change(id, [&](Topic &topic) {
        topic.status = state.status;
        topic.postponedCount = state.postponedCount;
        topic.triagedAt = state.triagedAt;
        topic.doneAt = state.doneAt;
        topic.worth = state.worth;
    });
}

bool TopicStore::setNote(const QUuid &id, const QString &note) {
    return change(id, [&](Topic &topic) {
        topic.note = note.isEmpty() ? std::nullopt : std::optional(note);
    });
}

bool TopicStore::setCorrection(const QUuid &id, std::optional<Correction> correction) {
    return change(id, [&](Topic &topic) { topic.correction = std::move(correction); });
}

bool TopicStore::setBrief(const QUuid &id, std::optional<Brief> brief) {
    return change(id, [&](Topic &topic) { topic.brief = std::move(brief); });
}

bool TopicStore::setGallery(const QUuid &id, QList<Picture> gallery) {
    return change(id, [&](Topic &topic) { topic.gallery = std::move(gallery); });
}

bool TopicStore::change(const QUuid &id, const std::function<void(Topic &)> &edit) {
    requireMainThread(subject);
    const qsizetype at = indexOf(id);
    if (at < 0) {
        return false;
    }
    Topic topic = *m_topics.at(at);
    edit(topic);
    topic.id = id;
    m_topics[at] = stored(std::move(topic));
    save();
    Q_EMIT topicChanged(id);
    return true;
}

} // namespace vorle
