#include "app/models/TopicSearch.h"

#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/triage/SectionOrder.h"
#include "base/FrenchSpacing.h"
#include "base/Text.h"

namespace vorle {

namespace {

constexpr std::chrono::minutes keptAfterUse{2};

/// What the thread pool gives back.
struct Answer {
    SearchIndex index;
    QList<SearchHit> hits;
};

} // namespace

TopicSearch::TopicSearch(TopicStore &store, QObject *parent)
    : QAbstractListModel(parent), m_store(store) {
    m_letGo.setSingleShot(true);
    m_letGo.setInterval(keptAfterUse);
    connect(&m_letGo, &QTimer::timeout, this, [this] { m_index.clear(); });
    connect(&store, &TopicStore::topicChanged, this, &TopicSearch::follow);
}

void TopicSearch::setQuery(const QString &query) {
    if (query == m_query) {
        return;
    }
    m_query = query;
    Q_EMIT queryChanged();
    if (query.trimmed().isEmpty()) {
        show({});
        m_letGo.start();
        return;
    }
    ask();
}

void TopicSearch::refresh() {
    if (!m_query.trimmed().isEmpty()) {
        ask();
    }
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
    co_await m_work.join();
}

/// Answers the newest query, again as long as one was asked meanwhile.
Task<> TopicSearch::answer(QPointer<TopicSearch> self) {
    while (self && self->m_asked && !self->m_query.trimmed().isEmpty()) {
        self->m_asked = false;
        const QString query = self->m_query;
        Answer given = co_await onPool(
            [query, old = self->m_index, topics = self->m_store.topics()]() -> Answer {
                SearchIndex index = indexed(old, topics);
                QList<SearchHit> hits = searched(index, query);
                return {std::move(index), std::move(hits)};
            });
        if (self) {
            self->m_index = std::move(given.index);
            if (self->m_query == query) {
                self->show(std::move(given.hits));
            }
        }
    }
    if (self) {
        self->setBusy(false);
    }
}

void TopicSearch::show(QList<SearchHit> hits) {
    beginResetModel();
    m_hits = std::move(hits);
    m_shownQuery = m_query.trimmed();
    for (SearchHit &hit : m_hits) { // decided on while it was being searched
        hit.topic = m_store.topic(hit.topic->id);
    }
    endResetModel();
    Q_EMIT resultsChanged();
}

void TopicSearch::setBusy(bool busy) {
    if (busy != m_busy) {
        m_busy = busy;
        Q_EMIT busyChanged();
    }
}

void TopicSearch::follow(const QUuid &id) {
    for (qsizetype row = 0; row < m_hits.size(); ++row) {
        if (m_hits[row].topic->id == id) {
            m_hits[row].topic = m_store.topic(id);
            const QModelIndex cell = index(static_cast<int>(row));
            Q_EMIT dataChanged(cell, cell);
        }
    }
}

int TopicSearch::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant TopicSearch::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const SearchHit &hit = m_hits.at(index.row());
    const Topic &topic = *hit.topic;
    switch (role) {
    case TopicId:
        return identityText(topic.id);
    case Title:
        return shownWords(topic.title);
    case SectionNumber: {
        const auto section = sectionOf(topic);
        return section ? static_cast<int>(*section) : -1;
    }
    case SectionLabel:
        return statusLabel(topic.status);
    case SnippetStyled:
        return withoutHidden(hit.styled);
    default:
        return {};
    }
}

QHash<int, QByteArray> TopicSearch::roleNames() const {
    return {{TopicId, "topicId"},
            {Title, "title"},
            {SectionNumber, "section"},
            {SectionLabel, "sectionLabel"},
            {SnippetStyled, "snippetStyled"}};
}

QString TopicSearch::statusText() const {
    if (m_shownQuery.isEmpty()) {
        return {};
    }
    if (m_hits.isEmpty()) {
        return frenchSpacing(tr("Rien trouvé pour « %1 ».").arg(m_shownQuery));
    }
    return m_hits.size() == maxHits
               ? tr("Les %1 meilleurs résultats").arg(maxHits)
               : counted(m_hits.size(), tr("sujet trouvé"), tr("sujets trouvés"));
}

} // namespace vorle
