#pragma once

#include "app/triage/SearchIndex.h"
#include "base/Async.h"
#include "core/TopicStore.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The search over all topics (⌘K): what `query` finds, best first, at most 50. Set the query as
/// the user types: only the newest one is answered. What is searched is made on the thread pool at
/// the first query, brought up to date by the next ones, and let go a while after the search was
/// closed (an empty query). Main thread; the store outlives it.
class TopicSearch final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged FINAL)
    Q_PROPERTY(int count READ count NOTIFY resultsChanged FINAL)
    /// An answer is on its way; the results shown are earlier ones.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged FINAL)
    /// "3 sujets trouvés", "Rien trouvé pour « xyz »."; "" without a query.
    Q_PROPERTY(QString statusText READ statusText NOTIFY resultsChanged FINAL)

public:
    enum Role {
        TopicId = Qt::UserRole, ///< string
        Title,
        SectionNumber, ///< "section": a Section's number; -1 for a dismissed topic
        SectionLabel,  ///< "À trier", "Pas pour moi"
        SnippetStyled, ///< around what was found, on one line, for Text.StyledText: escaped, and
                       ///< what was found in bold
    };
    Q_ENUM(Role)

    explicit TopicSearch(TopicStore &store, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return m_query; }
    void setQuery(const QString &query);
    int count() const { return static_cast<int>(m_hits.size()); }
    bool busy() const { return m_busy; }
    QString statusText() const;

    /// Answers the present query once more, from the topics as they are now: they may have changed
    /// since. For whoever shows the search again with its query in it.
    Q_INVOKABLE void refresh();
    /// Asks no more, and waits for the answer on its way.
    Task<> stopped();

Q_SIGNALS:
    void queryChanged();
    void resultsChanged();
    void busyChanged();

private:
    void ask();
    static Task<> answer(QPointer<TopicSearch> self);
    void show(QList<SearchHit> hits);
    void setBusy(bool busy);
    void follow(const QUuid &id);

    TopicStore &m_store;
    QString m_query;
    QString m_shownQuery;
    SearchIndex m_index;
    QList<SearchHit> m_hits;
    bool m_busy = false;
    bool m_asked = false; ///< the present query waits for an answer
    QTimer m_letGo;
    TaskGroup m_work;
};

} // namespace vorle
