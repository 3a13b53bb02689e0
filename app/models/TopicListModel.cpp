#include "app/models/TopicListModel.h"

#include "app/labels/SectionLabels.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vorle {

TopicListModel::TopicListModel(TopicStore &store, sections::Section section, const Clock &clock,
                               QObject *parent)
    : QAbstractListModel(parent)
    , m_store(store)
    , m_section(section)
    , m_clock(clock)
    , m_day(today()) {
    load();
    connect(&store, &TopicStore::topicChanged, this, &TopicListModel::follow);
    connect(&store, &TopicStore::topicsAdded, this, [this](const QList<QUuid> &ids) {
        for (const QUuid &id : ids) {
            follow(id);
        }
    });
    connect(&store, &TopicStore::topicsReset, this, [this] {
        beginResetModel();
        load();
        endResetModel();
        turn();
        Q_EMIT countChanged();
        Q_EMIT minutesChanged();
        Q_EMIT movedCountChanged();
    });
}

bool TopicListModel::belongs(const Topic &topic) const {
    return sectionOf(topic) == topicSection();
}

TopicListModel::Row TopicListModel::rowFor(const TopicPtr &topic, qsizetype position) const {
    const PlacedTopic placed{.topic = topic,
                             .tier = tierOf(*topic),
                             .moved = m_section == sections::Section::Reserve &&
                                      m_reserveActivity.hasMoved(*topic, m_store),
                             .waits = m_waiting.contains(topic->id)};
    return {placed, rankIn(topicSection(), placed, position)};
}

void TopicListModel::load() {
    m_rows.clear();
    m_ranks.clear();
    m_minutes = 0;
    m_movedCount = 0;
    m_ofRun = 0;
    if (m_section == sections::Section::Reserve) {
        m_reserveActivity.load(m_store);
    }
    const QList<TopicPtr> all = m_store.topics();
    std::vector<Row> rows;
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (belongs(*all.at(i))) {
            const Row &row = rows.emplace_back(rowFor(all.at(i), m_store.positionAt(i)));
            stand(row.rank);
            tally(row, 1);
        }
    }
    m_rows = inOrder(std::move(rows));
}

void TopicListModel::stand(const SectionRank &rank) {
    const auto position = static_cast<std::size_t>(rank.position);
    if (m_ranks.size() <= position) {
        m_ranks.resize(position + 1);
    }
    m_ranks[position] = rank;
}

/// Takes a row into the sums, or out of them.
void TopicListModel::tally(const Row &row, int times) {
    m_minutes += times * static_cast<qint64>(row.topic->minutes);
    m_movedCount += row.moved ? times : 0;
    m_ofRun += isOfRun(*row.topic) ? times : 0;
}

bool TopicListModel::isOfRun(const Topic &topic) const {
    const qint64 found = topic.foundAt.toMSecsSinceEpoch();
    return !topic.capturedURL && m_runBegin <= found && found <= m_runEnd;
}

/// What changed in the store may move the topic itself and, in the reserve, those it is news of.
void TopicListModel::follow(const QUuid &id) {
    const int count = this->count();
    const int minutes = this->minutes();
    const int moved = m_movedCount;
    const TopicPtr topic = m_store.topic(id);
    const bool mayBeNews = m_section == sections::Section::Reserve && topic;
    if (mayBeNews) {
        m_reserveActivity.note(*topic, m_store);
    }
    reposition(id);
    if (mayBeNews) {
        for (const QUuid &related : m_reserveActivity.relatedTopics(*topic)) {
            reposition(related);
        }
    }
    tellChanges(count, minutes, moved);
}

void TopicListModel::reposition(const QUuid &id) {
    const TopicPtr topic = m_store.topic(id);
    const qsizetype at = indexOf(id);
    if (topic && belongs(*topic)) {
        if (at < 0) {
            insert(rowFor(topic, m_store.position(id)));
        } else {
            replace(at, rowFor(topic, m_store.position(id)));
        }
    } else if (at >= 0) {
        remove(at);
    }
}

void TopicListModel::insert(Row row) {
    const qsizetype at = lowerBound(row.rank);
    beginInsertRows({}, static_cast<int>(at), static_cast<int>(at));
    stand(row.rank);
    tally(row, 1);
    m_rows.insert(at, std::move(row));
    endInsertRows();
    turn();
}

void TopicListModel::remove(qsizetype at) {
    beginRemoveRows({}, static_cast<int>(at), static_cast<int>(at));
    const Row row = m_rows.takeAt(at);
    m_ranks[static_cast<std::size_t>(row.rank.position)] = {};
    tally(row, -1);
    endRemoveRows();
    turn();
}

void TopicListModel::replace(qsizetype at, Row row) {
    const Row old = m_rows.at(at);
    if (old == row) {
        return;
    }
    // The old row is among those searched: standing just before or just after it is staying.
    const qsizetype to = lowerBound(row.rank);
    const bool moves = to != at && to != at + 1;
    if (moves) {
        beginMoveRows({}, static_cast<int>(at), static_cast<int>(at), {}, static_cast<int>(to));
    }
    stand(row.rank);
    tally(old, -1);
    tally(row, 1);
    m_rows[at] = std::move(row);
    qsizetype now = at;
    if (moves) {
        now = to > at ? to - 1 : to;
        m_rows.move(at, now);
        endMoveRows();
    }
    const QModelIndex cell = index(static_cast<int>(now));
    Q_EMIT dataChanged(cell, cell);
    turn();
}

qsizetype TopicListModel::indexOf(const QUuid &id) const {
    const qsizetype position = m_store.position(id);
    if (position < 0 || position >= std::ssize(m_ranks)) {
        return -1;
    }
    const SectionRank &rank = m_ranks[static_cast<std::size_t>(position)];
    const qsizetype at = rank.position < 0 ? count() : lowerBound(rank);
    // The store may have been loaded again, and this list not yet.
    return at < count() && m_rows.at(at).topic->id == id ? at : -1;
}

qsizetype TopicListModel::lowerBound(const SectionRank &rank) const {
    return std::ranges::lower_bound(m_rows, rank, {}, &Row::rank) - m_rows.begin();
}

void TopicListModel::tellChanges(int count, int minutes, int moved) {
    if (count != this->count()) {
        Q_EMIT countChanged();
    }
    if (minutes != this->minutes()) {
        Q_EMIT minutesChanged();
    }
    if (moved != m_movedCount) {
        Q_EMIT movedCountChanged();
    }
}

int TopicListModel::minutes() const {
    constexpr qint64 most = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<qint64>(m_minutes, 0, most));
}

int TopicListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant TopicListModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    switch (role) {
    case Section:
        return heading(index.row());
    case Card:
        return QVariant::fromValue(card(index.row()));
    default:
        return {};
    }
}

QHash<int, QByteArray> TopicListModel::roleNames() const {
    return {{Section, "section"}, {Card, "topic"}};
}

TopicCard TopicListModel::card(int row) const {
    if (row < 0 || row >= count()) {
        return {};
    }
    const Row &at = m_rows.at(row);
    return {at.topic,
            {.today = today(),
             .moved = at.moved,
             .waits = at.waits,
             .briefState = m_briefStates.value(at.topic->id),
             .captureProblem = m_captureProblems.value(at.topic->id),
             .isNew = isNew(*at.topic)}};
}

QString TopicListModel::heading(int row) const {
    return row < 0 || row >= count() ? QString() : headingOf(topicSection(), m_rows.at(row));
}

/// Rows of one heading stand together: its end is looked for by halves.
int TopicListModel::countUnder(const QString &heading) const {
    for (int first = 0; first < count();) {
        const QString name = this->heading(first);
        int last = first; // of that name
        int after = count();
        while (after - last > 1) {
            const int middle = last + (after - last) / 2;
            (this->heading(middle) == name ? last : after) = middle;
        }
        if (name == heading) {
            return after - first;
        }
        first = after;
    }
    return 0;
}

bool TopicListModel::isNew(const Topic &topic) const {
    return m_section == sections::Section::Inbox && m_newSince && !topic.capturedURL &&
           m_newSince->isBefore(topic, m_store);
}

void TopicListModel::setNewSince(const std::optional<TopicsSeen> &seen) {
    if (seen != m_newSince) {
        m_newSince = seen;
        rewordAll();
    }
}

void TopicListModel::followDay() {
    if (std::exchange(m_day, today()) != m_day) {
        rewordAll();
    }
}

void TopicListModel::rewordAll() {
    if (!m_rows.isEmpty()) {
        Q_EMIT dataChanged(index(0), index(count() - 1), {Card});
    }
}

/// What is counted anew is counted once a change.
void TopicListModel::turn() {
    if (!std::exchange(m_turning, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_turning = false;
                ++m_turns;
                Q_EMIT turned();
            },
            Qt::QueuedConnection);
    }
}

int TopicListModel::rowOf(const QString &topicId) const {
    return static_cast<int>(indexOf(QUuid::fromString(topicId)));
}

QString TopicListModel::topicIdAt(int row) const { return card(row).topicId(); }

void TopicListModel::setWaiting(QSet<QUuid> ids) {
    const QSet<QUuid> before = std::exchange(m_waiting, std::move(ids));
    const auto follow = [this](const QSet<QUuid> &ids, const QSet<QUuid> &others) {
        for (const QUuid &id : ids) {
            if (!others.contains(id) && indexOf(id) >= 0) {
                reposition(id);
            }
        }
    };
    follow(before, m_waiting);
    follow(m_waiting, before);
}

void TopicListModel::observe(RediscoveryLog &finds) {
    m_reserveActivity.observe(finds);
    connect(&finds, &RediscoveryLog::found, this, &TopicListModel::follow);
    for (const QUuid &id : finds.topics()) {
        follow(id);
    }
}

void TopicListModel::setBriefState(const QUuid &id, const QString &state) {
    setWord(m_briefStates, id, state);
}

void TopicListModel::setCaptureProblem(const QUuid &id, const QString &problem) {
    setWord(m_captureProblems, id, problem);
}

/// Keeps what roles say of a topic beyond the topic itself, and tells its row.
void TopicListModel::setWord(QHash<QUuid, QString> &words, const QUuid &id, const QString &word) {
    if (word.isEmpty()) {
        words.remove(id);
    } else {
        words.insert(id, word);
    }
    if (const qsizetype at = indexOf(id); at >= 0) {
        const QModelIndex cell = index(static_cast<int>(at));
        Q_EMIT dataChanged(cell, cell, {Card});
    }
}

int TopicListModel::countFoundBetween(const QDateTime &begin, const QDateTime &end) {
    const qint64 first = begin.toMSecsSinceEpoch();
    const qint64 last = end.toMSecsSinceEpoch();
    if (first != m_runBegin || last != m_runEnd) {
        m_runBegin = first;
        m_runEnd = last;
        m_ofRun = static_cast<int>(
            std::ranges::count_if(m_rows, [this](const Row &row) { return isOfRun(*row.topic); }));
    }
    return m_ofRun;
}

QList<TopicPtr> TopicListModel::topics() const {
    QList<TopicPtr> list;
    list.reserve(m_rows.size());
    for (const Row &row : m_rows) {
        list.append(row.topic);
    }
    return list;
}

} // namespace vorle
