#pragma once

#include "app/triage/SearchIndex.h"
#include "base/Async.h"
#include "core/TopicStore.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

namespace vorle {

/// The search over all topics: what `query` finds, best first, at most 50, as it is shown. Set the
/// query as the user types: only the newest one is answered. What is searched is made on the thread
/// pool by `prepare` or the first query, brought up to date by the next ones and by what runs bring
/// meanwhile, and let go a while after `rest`. Main thread; the store outlives it.
class TopicSearch final : public QObject {
    Q_OBJECT
public:
    /// A topic that was found. Texts are for Text.StyledText: escaped, what was found in bold.
    struct Found {
        TopicPtr topic;
        QString title;
        QString snippet;      ///< around what was found, on one line
        bool outside = false; ///< of another section than the one that was named
        bool near = false;    ///< by words that only look like those that were typed
    };

    explicit TopicSearch(TopicStore &store, QObject *parent = nullptr);

    const QString &query() const { return m_query; }
    void setQuery(const QString &query);
    const QList<Found> &found() const { return m_found; }
    int count() const { return static_cast<int>(m_found.size()); }
    /// An answer is on its way; what was found is of an earlier query.
    bool busy() const { return m_busy; }
    /// What was found is of the present query, though topics may have changed since.
    bool isAnswered() const { return m_shownQuery == m_query.trimmed(); }
    /// "3 sujets", "2 sujets dans Bibliothèque, 1 ailleurs", "Rien trouvé pour « xyz »."; "" before
    /// the first answer.
    QString countText() const;
    /// The section that the answered query names.
    std::optional<TopicSection> section() const { return m_section; }

    /// Somebody looks, and a query will come soon: makes what it is answered from. Until `rest`,
    /// the query is answered again as topics come.
    void prepare();
    /// Answers the present query once more, from the topics as they are now.
    void refresh();
    /// Nobody looks any more: what is searched is let go after a while.
    void rest();
    /// Asks no more, and waits for the answer on its way.
    Task<> stopped();

    /// What a query asks for: a first or last word that begins the name of a section, with three
    /// letters or more, names that section ("bib photo", "photo réserve"). On its own it is a word
    /// like any other, unless a blank follows: then all that stands there is asked for. Pure.
    static SearchAsk askOf(const QString &query);

Q_SIGNALS:
    /// Something was found, or is found no longer.
    void foundChanged();
    void busyChanged();

private:
    /// What the thread pool gives back.
    struct Answer;

    void ask();
    void askAgain();
    static Task<> answer(QPointer<TopicSearch> self);
    static Answer searchIn(const SearchIndex &old, const QList<TopicPtr> &topics,
                           const SearchAsk &ask);
    void show(Answer answer);
    void setBusy(bool busy);
    void follow(const QUuid &id);

    TopicStore &m_store;
    QString m_query;
    QString m_shownQuery;
    SearchIndex m_index;
    QList<Found> m_found;
    qsizetype m_total = 0;
    qsizetype m_outside = 0;
    std::optional<TopicSection> m_section;
    bool m_busy = false;
    bool m_asked = false;  // the present query waits for an answer
    bool m_looked = false; // at what is found
    QTimer m_letGo;
    QTimer m_again; // topics came since
    TaskGroup m_work;
};

} // namespace vorle
