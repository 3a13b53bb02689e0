#include "app/models/palette/TopicSearch.h"

#include "app/labels/Wording.h"
#include "app/models/Section.h"
#include "app/models/Sections.h"
#include "app/triage/SearchFold.h"
#include "base/FrenchSpacing.h"
#include "base/Text.h"
#include "core/NumberText.h"

namespace vorle {

namespace {

constexpr std::chrono::minutes keptAfterUse{2};
/// A run lands its topics one after the other.
constexpr std::chrono::milliseconds landing{400};
/// Of a section's name, so that no short word of a title takes its place.
constexpr qsizetype leastLetters = 3;

QList<QByteArray> foldedWords(const QString &text) {
    QList<QByteArray> words = foldedForSearch(text).split(' ');
    words.removeAll(QByteArray());
    return words;
}

/// The section whose name these words begin: the last word of its name may be unfinished, or stand
/// alone ("trier").
std::optional<TopicSection> named(const QList<QByteArray> &words) {
    for (const Section section :
         {Section::Inbox, Section::Program, Section::Reserve, Section::Library}) {
        QList<QByteArray> name = foldedWords(Sections::title(section));
        if (words.size() > name.size()) {
            continue;
        }
        name = name.last(words.size());
        const bool begun = words.last().size() >= leastLetters &&
                           name.last().startsWith(words.last()) &&
                           words.first(words.size() - 1) == name.first(name.size() - 1);
        if (begun) {
            return static_cast<TopicSection>(section);
        }
    }
    return std::nullopt;
}

QString joined(const QList<QByteArray> &words) { return QString::fromUtf8(words.join(' ')); }

} // namespace

struct TopicSearch::Answer {
    SearchIndex index;
    QList<Found> found;
    qsizetype total = 0;
    qsizetype outside = 0;
    std::optional<TopicSection> section;
};

TopicSearch::TopicSearch(TopicStore &store, QObject *parent) : QObject(parent), m_store(store) {
    m_letGo.setSingleShot(true);
    m_letGo.setInterval(keptAfterUse);
    connect(&m_letGo, &QTimer::timeout, this, [this] { m_index.clear(); });
    m_again.setSingleShot(true);
    m_again.setInterval(landing);
    connect(&m_again, &QTimer::timeout, this, &TopicSearch::refresh);
    connect(&store, &TopicStore::topicChanged, this, &TopicSearch::follow);
    connect(&store, &TopicStore::topicsReset, this, &TopicSearch::askAgain);
    connect(&store, &TopicStore::topicsAdded, this, &TopicSearch::askAgain);
}

SearchAsk TopicSearch::askOf(const QString &query) {
    SearchAsk ask{.words = query, .section = {}, .rest = {}};
    const QList<QByteArray> words = foldedWords(query);
    const bool goesOn = !query.isEmpty() && query.back().isSpace();
    for (const qsizetype size : {2, 1}) {
        const qsizetype left = words.size() - size;
        if (left < 0 || (left == 0 && !goesOn)) {
            continue;
        }
        ask.section = named(words.first(size));
        ask.rest = joined(words.last(left));
        if (!ask.section) {
            ask.section = named(words.last(size));
            ask.rest = joined(words.first(left));
        }
        if (ask.section) {
            return ask;
        }
    }
    ask.rest.clear();
    return ask;
}

void TopicSearch::setQuery(const QString &query) {
    if (query == m_query) {
        return;
    }
    m_query = query;
    m_again.stop();
    if (query.trimmed().isEmpty()) {
        m_asked = false;
        show({std::move(m_index), {}, 0, 0, {}});
        return;
    }
    ask();
}

void TopicSearch::prepare() {
    m_looked = true;
    m_letGo.stop();
    if (m_index.isEmpty()) {
        ask();
    }
}

void TopicSearch::refresh() {
    if (!m_query.trimmed().isEmpty()) {
        ask();
    }
}

/// Soon, and not over and over as long as topics come.
void TopicSearch::askAgain() {
    if (m_looked && !m_query.isEmpty() && !m_again.isActive()) {
        m_again.start();
    }
}

void TopicSearch::rest() {
    m_looked = false;
    m_again.stop();
    m_letGo.start();
}

void TopicSearch::ask() {
    m_asked = true;
    m_letGo.stop();
    if (!m_busy) {
        setBusy(true);
        m_work.add(logged(answer(this), QStringLiteral("the search")));
    }
}

Task<> TopicSearch::stopped() {
    m_asked = false;
    m_again.stop();
    co_await m_work.join();
}

/// On the pool.
TopicSearch::Answer TopicSearch::searchIn(const SearchIndex &old, const QList<TopicPtr> &topics,
                                          const SearchAsk &ask) {
    Answer answer;
    answer.index = indexed(old, topics);
    answer.section = ask.section;
    const SearchAnswer given = searched(answer.index, ask);
    answer.total = given.total;
    answer.outside = given.outside;
    for (const SearchHit &hit : given.hits) {
        answer.found.append({hit.topic,
                             markedForSearch(shownWords(hit.topic->title), hit.words, hit.near),
                             withoutHidden(hit.styled), hit.outside, hit.near});
    }
    return answer;
}

/// Answers the newest query, again as long as one was asked meanwhile.
Task<> TopicSearch::answer(QPointer<TopicSearch> self) {
    while (self && self->m_asked) {
        self->m_asked = false;
        const QString query = self->m_query;
        Answer given = co_await onPool(
            [ask = askOf(query), old = self->m_index, topics = self->m_store.topics()] {
                return searchIn(old, topics, ask);
            });
        if (self && self->m_query == query) {
            self->show(std::move(given));
        } else if (self) {
            self->m_index = std::move(given.index);
        }
    }
    if (self) {
        self->setBusy(false);
    }
}

void TopicSearch::show(Answer answer) {
    m_index = std::move(answer.index);
    m_found = std::move(answer.found);
    m_total = answer.total;
    m_outside = answer.outside;
    m_section = answer.section;
    m_shownQuery = m_query.trimmed();
    for (Found &each : m_found) {
        if (const TopicPtr now = m_store.topic(each.topic->id)) {
            each.topic = now; // decided on while it was being searched
        }
    }
    Q_EMIT foundChanged();
}

void TopicSearch::setBusy(bool busy) {
    if (busy != m_busy) {
        m_busy = busy;
        Q_EMIT busyChanged();
    }
}

void TopicSearch::follow(const QUuid &id) {
    for (Found &each : m_found) {
        if (each.topic->id == id) {
            each.topic = m_store.topic(id);
            Q_EMIT foundChanged();
        }
    }
}

QString TopicSearch::countText() const {
    if (m_shownQuery.isEmpty()) {
        return {};
    }
    if (m_total == 0) {
        return frenchSpacing(tr("Rien trouvé pour « %1 ».").arg(m_shownQuery));
    }
    if (!m_section) {
        return countedTopics(m_total);
    }
    const QString where = Sections::title(static_cast<Section>(*m_section));
    if (m_outside == 0) {
        return tr("%1 dans %2").arg(countedTopics(m_total), where);
    }
    return m_outside == m_total
               ? tr("%1 ailleurs que dans %2").arg(countedTopics(m_total), where)
               : tr("%1 dans %2, %3 ailleurs")
                     .arg(countedTopics(m_total - m_outside), where, numberText(m_outside));
}

} // namespace vorle
