#pragma once

#include "app/models/Section.h"
#include "app/models/TopicCard.h"
#include "app/models/TopicsSeen.h"
#include "app/triage/ReserveActivity.h"
#include "app/triage/SectionOrder.h"
#include "base/Clock.h"
#include "core/TopicStore.h"

#include <QAbstractListModel>
#include <QHash>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace vorle {

/// The topics of one section in the order they are shown, each with everything its card and its
/// reading page need, worded. Follows the store by inserting, removing and moving rows, so that
/// cards move rather than appear anew; it is reset only when the store is loaded again. Main
/// thread; the store and the clock outlive it.
///
/// The order and the headings are SectionOrder's.
class TopicListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(vorle::sections::Section section READ section CONSTANT FINAL)
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
    /// The minutes of all rows together.
    Q_PROPERTY(int minutes READ minutes NOTIFY minutesChanged FINAL)
    /// Another number once rows came, went or changed, all that did meanwhile: what `countUnder`
    /// gives may be another.
    Q_PROPERTY(int turns READ turns NOTIFY turned FINAL)

public:
    enum Role {
        Section = Qt::UserRole, ///< "section": the heading over the row: its tier, "Ils ont bougé",
                                ///< "Novembre 2026"
        Card                    ///< "topic": TopicCard
    };

    /// @param section one of the first four
    TopicListModel(TopicStore &store, sections::Section section, const Clock &clock,
                   QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    sections::Section section() const { return m_section; }
    int count() const { return static_cast<int>(m_rows.size()); }
    int minutes() const;
    /// Of the reserve: how many rows have moved. Always 0 elsewhere.
    int movedCount() const { return m_movedCount; }
    int turns() const { return m_turns; }
    /// How many rows stand under that heading.
    Q_INVOKABLE int countUnder(const QString &heading) const;

    /// The row of the topic, or -1.
    int rowOf(const QString &topicId) const;
    /// The topic at that row, its card, and the heading it stands under; empty outside the list.
    QString topicIdAt(int row) const;
    TopicCard card(int row) const;
    QString heading(int row) const;

    /// Of the program: the topics that do not fit in the week stand below the others.
    void setWaiting(QSet<QUuid> ids);

    /// Of "À trier": what came since then is told to be new; nothing while there is no such moment,
    /// and never what the person captured.
    void setNewSince(const std::optional<TopicsSeen> &seen);
    /// What there is to be seen now, in all sections.
    TopicsSeen seen() const { return TopicsSeen::of(m_store, m_clock.now()); }

    /// Words its cards anew where another day began since they were last worded.
    void followDay();

    /// Of the reserve: what runs come upon again counts too. `finds` outlives this.
    void observe(RediscoveryLog &finds);

    /// How far the writing of a topic's brief is: "", "queued", "writing" or "failed". A topic that
    /// has a brief and no such word shows "written".
    void setBriefState(const QUuid &id, const QString &state);

    /// Why a captured link could not be judged; "" takes it back.
    void setCaptureProblem(const QUuid &id, const QString &problem);

    /// How many of the topics shown a run brought between these moments; captured links are none of
    /// them. Walks the rows when the moments are not those of the last call.
    int countFoundBetween(const QDateTime &begin, const QDateTime &end);

    /// The topics shown, in their order.
    QList<TopicPtr> topics() const;

Q_SIGNALS:
    void countChanged();
    void minutesChanged();
    void movedCountChanged();
    void turned();

private:
    using Row = RankedTopic;

    bool belongs(const Topic &topic) const;
    TopicSection topicSection() const { return static_cast<TopicSection>(m_section); }
    Row rowFor(const TopicPtr &topic, qsizetype position) const;
    void load();
    void follow(const QUuid &id);
    void reposition(const QUuid &id);
    void insert(Row row);
    void remove(qsizetype at);
    void replace(qsizetype at, Row row);
    qsizetype indexOf(const QUuid &id) const;
    qsizetype lowerBound(const SectionRank &rank) const;
    void stand(const SectionRank &rank);
    void tellChanges(int count, int minutes, int moved);
    void setWord(QHash<QUuid, QString> &words, const QUuid &id, const QString &word);
    void tally(const Row &row, int times);
    bool isOfRun(const Topic &topic) const;
    bool isNew(const Topic &topic) const;
    QDate today() const { return m_clock.now().toLocalTime().date(); }
    void turn();
    void rewordAll();

    TopicStore &m_store;
    sections::Section m_section;
    const Clock &m_clock;
    QList<Row> m_rows;
    std::vector<SectionRank> m_ranks;  // of each row, by its position in the store
    ReserveActivity m_reserveActivity; // filled for the reserve alone
    QHash<QUuid, QString> m_briefStates;
    QHash<QUuid, QString> m_captureProblems;
    QSet<QUuid> m_waiting;
    qint64 m_minutes = 0;
    int m_movedCount = 0;
    qint64 m_runBegin = 0; // of the run whose topics are counted, in ms of the epoch
    qint64 m_runEnd = -1;
    int m_ofRun = 0;
    int m_turns = 0;
    bool m_turning = false; // that is still to be told
    std::optional<TopicsSeen> m_newSince;
    QDate m_day; // that the cards were worded for
};

} // namespace vorle
