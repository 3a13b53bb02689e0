#pragma once

#include "app/models/BadgeLook.h"
#include "app/models/palette/Commands.h"
#include "app/models/palette/TopicSearch.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A row of the palette: a heading over others, a command, a topic. A value.
struct PaletteEntry {
    Q_GADGET
    QML_VALUE_TYPE(paletteEntry)
    Q_PROPERTY(bool heading MEMBER heading FINAL)
    Q_PROPERTY(bool topic READ isTopic FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString plain MEMBER plain FINAL)
    Q_PROPERTY(QString snippet MEMBER snippet FINAL)
    Q_PROPERTY(QString keys MEMBER keys FINAL)
    Q_PROPERTY(QString place MEMBER place FINAL)
    Q_PROPERTY(QString topicId MEMBER topicId FINAL)
    Q_PROPERTY(int section MEMBER section FINAL)
    Q_PROPERTY(vorle::KeyboardMap::Action action MEMBER action FINAL)
    Q_PROPERTY(vorle::BadgeLook badge MEMBER badge FINAL)

public:
    bool heading = false;
    QString title;    ///< for Text.StyledText: escaped, what was found in bold
    QString plain;    ///< the same without marks, for who listens
    QString snippet;  ///< for Text.StyledText; "" in a row of one line
    QString keys;     ///< of a command: that do the same
    QString place;    ///< of a topic, its section; of a command, the topic it would fall on
    QString topicId;  ///< "" of a command
    int section = -1; ///< of a topic: its Section's number, -1 for a dismissed one
    KeyboardMap::Action action = KeyboardMap::NoAction;
    BadgeLook badge;

    bool isTopic() const { return !topicId.isEmpty(); }
    bool operator==(const PaletteEntry &) const = default;
};

/// ⌘K: what can be done now and the topics, by a few letters of either. Without a query, the
/// commands that are wanted most, then the topics something was last done with; those stay the same
/// as long as it is open. One row is chosen, never a heading; it stays the one it is while rows
/// come and go around it, and a new query chooses the first. Where the chosen one goes, none is
/// chosen until a step is taken from its place: ↩ was not meant for what moved there. Main thread;
/// what it is given outlives it.
class CommandPalette final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged FINAL)
    /// The chosen row, -1 without one. Told anew whenever rows came or went.
    Q_PROPERTY(int current READ current NOTIFY currentChanged FINAL)
    /// The rows are of an earlier query still.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged FINAL)
    /// How many topics there are, or were found; where commands alone were, how many.
    Q_PROPERTY(QString countText READ countText NOTIFY rowsChanged FINAL)
    /// How many rows there are of each height.
    Q_PROPERTY(int headings READ headings NOTIFY rowsChanged FINAL)
    Q_PROPERTY(int lines READ lines NOTIFY rowsChanged FINAL)
    Q_PROPERTY(int recents READ recents NOTIFY rowsChanged FINAL)
    Q_PROPERTY(int hits READ hits NOTIFY rowsChanged FINAL)

public:
    enum Role { Entry = Qt::UserRole }; ///< "entry": PaletteEntry

    CommandPalette(const TopicStore &store, Commands &commands, TopicSearch &search,
                   QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return m_search.query(); }
    void setQuery(const QString &query);
    int current() const { return m_current; }
    bool busy() const { return m_search.busy() && !query().trimmed().isEmpty(); }
    QString countText() const;
    int headings() const { return m_headings; }
    int lines() const { return m_lines; }
    int recents() const { return m_recents; }
    int hits() const { return static_cast<int>(m_rows.size()) - m_headings - m_lines - m_recents; }

    /// Looks at everything again: it is about to be seen. And it is seen no more.
    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    /// The row `steps` further down among those that can be chosen, held to the first and last.
    Q_INVOKABLE void step(int steps);
    /// Chooses that row; nothing for a heading.
    Q_INVOKABLE void choose(int row);
    /// The row; an empty one where there is none.
    Q_INVOKABLE vorle::PaletteEntry at(int row) const { return m_rows.value(row); }

Q_SIGNALS:
    void queryChanged();
    void currentChanged();
    void busyChanged();
    void rowsChanged();

private:
    void follow();
    void followSoon();
    void build();
    void show(QList<PaletteEntry> rows);
    void appendTopics(QList<PaletteEntry> &rows) const;
    QList<PaletteEntry> recentTopics();
    PaletteEntry command(const Commands::Offer &offer) const;

    const TopicStore &m_store;
    Commands &m_commands;
    TopicSearch &m_search;
    QList<PaletteEntry> m_rows;
    QList<QUuid> m_recent; // that stay, the first one first
    int m_current = -1;
    int m_from = -1; // without a chosen row: where the one that went stood
    int m_headings = 0;
    int m_lines = 0;
    int m_recents = 0;
    qsizetype m_topics = 0; // in the sections
    bool m_open = false;
    bool m_due = false;
    bool m_first = true; // the next rows are of another query: their first one is chosen
};

} // namespace vorle
