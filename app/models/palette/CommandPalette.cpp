#include "app/models/palette/CommandPalette.h"

#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/triage/SearchFold.h"
#include "core/ScoreScale.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace vorle {

namespace {

constexpr std::size_t recentTopicCount = 5;
constexpr qsizetype soughtCommands = 6; // more would hide the topics

bool isSame(const PaletteEntry &a, const PaletteEntry &b) {
    return a.heading == b.heading && a.topicId == b.topicId && a.action == b.action &&
           (!a.heading || a.plain == b.plain);
}

PaletteEntry heading(const QString &text) {
    PaletteEntry entry;
    entry.heading = true;
    entry.title = text.toHtmlEscaped();
    entry.plain = text;
    return entry;
}

PaletteEntry topicEntry(const Topic &topic) {
    PaletteEntry entry;
    entry.plain = shownWords(topic.title);
    entry.title = entry.plain.toHtmlEscaped();
    entry.place =
        statusLabel(topic.status == TopicStatus::Pending ? TopicStatus::Inbox : topic.status);
    entry.topicId = identityText(topic.id);
    const auto section = sectionOf(topic);
    entry.section = section ? static_cast<int>(*section) : -1;
    entry.badge = BadgeLook::of(isBeingRead(topic) ? std::nullopt : shownScore(topic));
    return entry;
}

/// When something was last done with it, in milliseconds of the epoch.
qint64 lastTouched(const Topic &topic) {
    qint64 latest = topic.foundAt.toMSecsSinceEpoch();
    for (const auto &moment : {topic.triagedAt, topic.doneAt}) {
        latest = std::max(latest, moment ? moment->toMSecsSinceEpoch() : 0);
    }
    return latest;
}

} // namespace

CommandPalette::CommandPalette(const TopicStore &store, Commands &commands, TopicSearch &search,
                               QObject *parent)
    : QAbstractListModel(parent), m_store(store), m_commands(commands), m_search(search) {
    // What is not looked at is made when it is opened.
    connect(&search, &TopicSearch::foundChanged, this, [this] {
        if (m_open) {
            build();
        }
    });
    connect(&search, &TopicSearch::busyChanged, this, &CommandPalette::busyChanged);
    connect(&commands, &Commands::changed, this, &CommandPalette::follow);
    connect(&store, &TopicStore::topicsReset, this, &CommandPalette::followSoon);
    connect(&store, &TopicStore::topicsAdded, this, &CommandPalette::followSoon);
    connect(&store, &TopicStore::topicChanged, this, &CommandPalette::followSoon);
}

int CommandPalette::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant CommandPalette::data(const QModelIndex &index, int role) const {
    return checkIndex(index, CheckIndexOption::IndexIsValid) && role == Entry
               ? QVariant::fromValue(m_rows.at(index.row()))
               : QVariant();
}

QHash<int, QByteArray> CommandPalette::roleNames() const { return {{Entry, "entry"}}; }

void CommandPalette::open() {
    m_open = true;
    m_first = true;
    m_recent.clear();
    m_search.prepare();
    m_search.refresh();
    build();
}

void CommandPalette::close() {
    m_open = false;
    m_search.rest();
}

void CommandPalette::setQuery(const QString &query) {
    if (query == m_search.query()) {
        return;
    }
    m_first = true;
    m_recent.clear();
    m_search.setQuery(query); // without words, it is answered by now
    Q_EMIT queryChanged();
}

/// The answer that is on its way brings all of it.
void CommandPalette::follow() {
    if (m_open && !busy()) {
        build();
    }
}

/// Of what is shown before a word is typed; answers tell of the rest. Once for many changes.
void CommandPalette::followSoon() {
    if (m_open && query().trimmed().isEmpty() && !std::exchange(m_due, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_due = false;
                follow();
            },
            Qt::QueuedConnection);
    }
}

void CommandPalette::build() {
    const QString words = query().trimmed();
    const bool topicsHave =
        std::ranges::any_of(m_search.found(), [](const auto &found) { return !found.near; });
    QList<PaletteEntry> rows;
    QList<PaletteEntry> behind;
    qsizetype offered = 0;
    for (const Commands::Offer &offer : m_commands.offers(words)) {
        if (words.isEmpty() || ++offered <= soughtCommands) {
            // What only looks alike never stands before a topic.
            const bool waits = offer.near || (topicsHave && !offer.named);
            (waits ? behind : rows).append(command(offer));
        }
    }
    if (!rows.isEmpty()) {
        rows.prepend(heading(tr("Commandes")));
    }
    words.isEmpty() ? void(rows += recentTopics()) : appendTopics(rows);
    if (!behind.isEmpty()) {
        if (rows.isEmpty() || m_search.count() > 0) {
            rows.append(heading(tr("Commandes")));
        }
        rows += behind;
    }
    show(std::move(rows));
}

PaletteEntry CommandPalette::command(const Commands::Offer &offer) const {
    PaletteEntry entry;
    entry.action = offer.action;
    entry.plain = m_commands.keyboard().label(offer.action);
    QList<QByteArray> words = foldedForSearch(query()).split(' ');
    words.removeAll(QByteArray());
    entry.title = markedForSearch(entry.plain, words, offer.near);
    entry.keys = m_commands.keyboard().keys(offer.action);
    entry.place = m_commands.about(offer.action);
    return entry;
}

void CommandPalette::appendTopics(QList<PaletteEntry> &rows) const {
    std::optional<bool> outside;
    for (const TopicSearch::Found &found : m_search.found()) {
        if (outside != found.outside) {
            outside = found.outside;
            const auto section = m_search.section();
            rows.append(heading(found.outside ? tr("Ailleurs")
                                : section     ? Sections::title(static_cast<Section>(*section))
                                              : tr("Sujets")));
        }
        PaletteEntry entry = topicEntry(*found.topic);
        entry.title = found.title;
        entry.snippet = found.snippet;
        rows.append(entry);
    }
}

QList<PaletteEntry> CommandPalette::recentTopics() {
    const QList<TopicPtr> topics = m_store.topics();
    std::vector<std::pair<qint64, qsizetype>> touched; // the latest first, of equals the last added
    for (qsizetype i = 0; i < topics.size(); ++i) {
        if (sectionOf(*topics[i])) {
            touched.emplace_back(-lastTouched(*topics[i]), -i);
        }
    }
    m_topics = static_cast<qsizetype>(touched.size());
    // A list under somebody's eyes: those that stand there stay, and others only follow them.
    m_recent.removeIf([this](const QUuid &id) {
        const TopicPtr topic = m_store.topic(id);
        return !topic || !sectionOf(*topic);
    });
    const std::size_t looked =
        std::min(touched.size(), recentTopicCount + static_cast<std::size_t>(m_recent.size()));
    std::ranges::partial_sort(touched, touched.begin() + std::ptrdiff_t(looked));
    for (const auto &[moment, place] : std::span(touched).first(looked)) {
        const QUuid id = topics[-place]->id;
        if (std::size_t(m_recent.size()) < recentTopicCount && !m_recent.contains(id)) {
            m_recent.append(id);
        }
    }
    QList<PaletteEntry> rows;
    for (const QUuid &id : std::as_const(m_recent)) {
        if (rows.isEmpty()) {
            rows.append(heading(tr("Récents")));
        }
        rows.append(topicEntry(*m_store.topic(id)));
    }
    return rows;
}

/// Rows keep their places and change in them: what shows them is not made anew at each letter.
void CommandPalette::show(QList<PaletteEntry> rows) {
    const PaletteEntry chosen = at(m_current);
    const auto kept = static_cast<int>(std::min(m_rows.size(), rows.size()));
    const auto before = static_cast<int>(m_rows.size());
    const auto after = static_cast<int>(rows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_rows.resize(after);
        endRemoveRows();
    }
    for (int row = 0; row < kept; ++row) {
        if (m_rows[row] != rows[row]) {
            m_rows[row] = rows[row];
            Q_EMIT dataChanged(index(row), index(row));
        }
    }
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_rows = std::move(rows);
        endInsertRows();
    }
    m_headings = m_lines = m_recents = 0;
    for (const PaletteEntry &row : std::as_const(m_rows)) {
        m_headings += row.heading ? 1 : 0;
        m_lines += !row.heading && !row.isTopic() ? 1 : 0;
        m_recents += row.isTopic() && row.snippet.isEmpty() ? 1 : 0;
    }
    const auto stays =
        std::ranges::find_if(m_rows, [&](const PaletteEntry &row) { return isSame(row, chosen); });
    const int stood = m_current >= 0 ? m_current : m_from;
    m_current = !m_first && m_current >= 0 && stays != m_rows.end()
                    ? static_cast<int>(stays - m_rows.begin())
                    : -1;
    m_from = m_first ? -1 : stood;
    const bool first = std::exchange(m_first, m_first && !m_search.isAnswered());
    Q_EMIT rowsChanged();
    if (first || stood < 0) {
        step(1);
    }
    Q_EMIT currentChanged();
}

void CommandPalette::step(int steps) {
    const int way = steps < 0 ? -1 : 1;
    // From where the chosen one stood: what is there now is the first that follows.
    int at = m_current >= 0 ? m_current : std::min(m_from, rowCount()) - (way > 0 && m_from > 0);
    for (int left = std::abs(steps); left > 0; --left) {
        int next = at + way;
        while (next >= 0 && next < rowCount() && m_rows[next].heading) {
            next += way;
        }
        if (next < 0 || next >= rowCount()) {
            break;
        }
        at = next;
    }
    choose(at);
}

void CommandPalette::choose(int row) {
    if (row >= 0 && row < rowCount() && !m_rows[row].heading && row != m_current) {
        m_current = row;
        Q_EMIT currentChanged();
    }
}

QString CommandPalette::countText() const {
    if (query().trimmed().isEmpty()) {
        return countedTopics(m_topics);
    }
    if (m_search.count() > 0 || m_lines == 0 || !m_search.isAnswered()) {
        return m_search.countText();
    }
    return tr("%1, aucun sujet")
        .arg(m_lines == 1 ? tr("1 commande") : tr("%1 commandes").arg(m_lines));
}

} // namespace vorle
