#include "app/triage/ReserveActivity.h"

#include "core/GitHubLink.h"

#include <QSet>

#include <algorithm>

namespace vorle {

namespace {

/// Whether a link may lead to GitHub: most do not, and are told so without being taken apart. By
/// hand, as searching without regard to case prepares a table for each of them.
bool mayNameGitHub(QStringView link) {
    const qsizetype begin = link.indexOf(u"//");
    const qsizetype end = link.indexOf(u'/', begin + 2);
    const QStringView host =
        begin < 0 ? link : link.sliced(begin + 2, (end < 0 ? link.size() : end) - begin - 2);
    static constexpr QStringView name = u"github";
    const auto same = [](QChar a, QChar b) { return (a.unicode() | 0x20) == b.unicode(); };
    return std::ranges::search(host, name, same).begin() != host.end();
}

/// A repository as the address of its page, or nothing. GitHub knows no case.
QString repositoryOf(const TopicSource &source) {
    if (!mayNameGitHub(source.url)) {
        return {};
    }
    const auto repository = gitHubRepository(source.url);
    return repository ? QStringLiteral("https://github.com/%1/%2")
                            .arg(repository->owner.toLower(), repository->name.toLower())
                      : QString();
}

/// What a topic is about, as keys. A dependency's name is no web address, and a repository's is its
/// own page's, so two of one key are about the same thing.
template <class Visit>
void eachKey(const Topic &topic, Visit visit) {
    if (topic.dependency && !topic.dependency->isEmpty()) {
        visit(*topic.dependency);
    }
    for (const TopicSource &source : topic.sources) {
        visit(source.url);
        const QString repository = repositoryOf(source);
        if (!repository.isEmpty() && repository != source.url) {
            visit(repository);
        }
    }
}

QDateTime setAsideAt(const Topic &reserved) {
    return reserved.triagedAt.value_or(reserved.foundAt);
}

bool aboutTheSame(const QSet<QString> &keys, const Topic &other) {
    bool same = false;
    eachKey(other, [&](const QString &key) { same = same || keys.contains(key); });
    return same;
}

} // namespace

void ReserveActivity::load(const TopicStore &store) {
    m_about.clear();
    m_since = std::numeric_limits<qint64>::max();
    qint64 since = m_since;
    const QList<TopicPtr> reserved = store.topics(TopicStatus::Reserve);
    for (const TopicPtr &topic : reserved) {
        add(*topic);
        since = std::min(since, setAsideAt(*topic).toMSecsSinceEpoch());
    }
    reachBack(since, store);
}

void ReserveActivity::note(const Topic &topic, const TopicStore &store) {
    add(topic);
    if (topic.status == TopicStatus::Reserve) {
        reachBack(setAsideAt(topic).toMSecsSinceEpoch(), store);
    }
}

void ReserveActivity::reachBack(qint64 since, const TopicStore &store) {
    if (since >= m_since) {
        return;
    }
    for (const QList<TopicPtr> all = store.topics(); const TopicPtr &topic : all) {
        const qint64 found = topic->foundAt.toMSecsSinceEpoch();
        if (since < found && found <= m_since) {
            add(*topic);
        }
    }
    m_since = since;
}

void ReserveActivity::add(const Topic &topic) {
    eachKey(topic, [&](const QString &key) {
        Topics &ids = m_about[key];
        if (!ids.contains(topic.id)) {
            ids.append(topic.id);
        }
    });
}

QList<QUuid> ReserveActivity::relatedTopics(const Topic &topic) const {
    QList<QUuid> found;
    eachKey(topic, [&](const QString &key) {
        for (const QUuid &id : m_about.value(key)) {
            if (id != topic.id && !found.contains(id)) {
                found.append(id);
            }
        }
    });
    return found;
}

bool ReserveActivity::hasMoved(const Topic &reserved, const TopicStore &store) const {
    const QDateTime since = setAsideAt(reserved);
    if (m_rediscoveries && m_rediscoveries->isSince(reserved.id, since)) {
        return true;
    }
    QSet<QString> keys; // a topic noted may have changed since
    eachKey(reserved, [&](const QString &key) { keys.insert(key); });
    const auto news = [&](const QUuid &id) {
        const TopicPtr other = store.topic(id);
        return other && other->foundAt > since && other->status != TopicStatus::Pending &&
               other->status != TopicStatus::Dismissed && aboutTheSame(keys, *other);
    };
    return std::ranges::any_of(relatedTopics(reserved), news);
}

} // namespace vorle
