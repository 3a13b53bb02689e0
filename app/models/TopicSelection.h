#pragma once

#include "app/models/TopicListModel.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The line that a decided topic leaves in its list, and the card beside which it stands. Where no
/// card is named it stands alone, at the list's end. A value.
struct Ghost {
    Q_GADGET
    QML_VALUE_TYPE(ghost)
    Q_PROPERTY(bool shown READ isShown FINAL)
    Q_PROPERTY(bool alone READ isAlone FINAL)
    Q_PROPERTY(QString topicId MEMBER topicId FINAL)
    Q_PROPERTY(QString went MEMBER went FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(vorle::TopicCard card MEMBER card FINAL)
    Q_PROPERTY(QString overId MEMBER overId FINAL)
    Q_PROPERTY(QString underId MEMBER underId FINAL)

public:
    QString topicId; ///< the topic that went; "" where there is no line
    QString went;    ///< "Gardé · Programme"
    QString title;
    TopicCard card;  ///< as it stood in the list
    QString overId;  ///< it stands over this topic's card
    QString underId; ///< it stands under this topic's card

    bool isShown() const { return !topicId.isEmpty(); }
    bool isAlone() const { return isShown() && overId.isEmpty() && underId.isEmpty(); }
    bool operator==(const Ghost &) const = default;
};

/// Which topic of a list is chosen, whether its page stands open, and the line that the last one
/// left. The chosen topic is known by its identity: it stays chosen wherever the list moves it, and
/// where it goes away, the one that took its place is chosen.
///
/// What is chosen changes at once, so that keys may come faster than frames. What the cards show
/// follows once the whole change is through (`settle`): a card that opened inside of it would read
/// its neighbour's row. Whoever draws the cards lays them out anew on `settled`.
///
/// Main thread; the list outlives it.
class TopicSelection final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(vorle::TopicListModel *list READ list CONSTANT FINAL)
    /// The chosen topic, "" in an empty list; and its row, -1.
    Q_PROPERTY(QString currentId READ currentId NOTIFY currentChanged FINAL)
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentChanged FINAL)
    /// Whether the chosen topic is shown as a page. Never without one.
    Q_PROPERTY(bool enlarged READ isEnlarged WRITE setEnlarged NOTIFY enlargedChanged FINAL)
    /// What the cards show: the topic whose card stands open, and the line that stays.
    Q_PROPERTY(QString shownId READ shownId NOTIFY shownChanged FINAL)
    Q_PROPERTY(vorle::Ghost shownGhost READ shownGhost NOTIFY shownChanged FINAL)
    /// The chosen topic that went away, until the next one is shown: until then its place is kept.
    Q_PROPERTY(QString goneId READ goneId NOTIFY goneChanged FINAL)

public:
    /// How the view comes to the card that is shown now.
    enum Arrival {
        Stays,    ///< it stands where it stood, whatever moved around it
        Asked,    ///< the person went there
        Replaces, ///< it opens in the place of one that went away
        Returns   ///< it went away, and was taken back
    };
    Q_ENUM(Arrival)

    explicit TopicSelection(TopicListModel &list, QObject *parent = nullptr);

    TopicListModel *list() const { return &m_list; }
    QString currentId() const { return m_currentId; }
    int currentRow() const { return m_currentRow; }
    bool isEnlarged() const { return m_enlarged; }
    void setEnlarged(bool enlarged);
    QString shownId() const { return m_shownId; }
    Ghost shownGhost() const { return m_shownGhost; }
    QString goneId() const { return m_goneId; }

    /// Goes to that row, held to the list's; by the person's own wish.
    Q_INVOKABLE void goTo(int row);
    /// Goes on by so many rows.
    Q_INVOKABLE void step(int rows);
    /// Goes to that topic; false where it is not in this list.
    Q_INVOKABLE bool show(const QString &topicId);
    /// The same for a topic that is in the list again because its decision was taken back.
    bool showReturned(const QString &topicId);
    /// Shows what is chosen: by itself soon after each change, or now.
    Q_INVOKABLE void settle();
    /// Has it settle once more, after what the view told itself.
    Q_INVOKABLE void settleSoon();

    /// The line that the chosen topic will leave if it goes from the list now: over the next card,
    /// or under the one before where the next has another heading.
    Ghost ghostToLeave() const;
    const Ghost &ghost() const { return m_ghost; }
    void setGhost(const Ghost &ghost);

Q_SIGNALS:
    void currentChanged();
    void enlargedChanged();
    void shownChanged();
    void goneChanged();
    /// Something changed that the cards do not show yet: the last moment to see where they stand.
    void changing();
    /// What the cards show is about to change, and has.
    void settling(vorle::TopicSelection::Arrival arrival);
    void settled(vorle::TopicSelection::Arrival arrival);
    /// The person went to a topic.
    void wentTo();

private:
    void follow();
    void choose(int row);
    void setGone(const QString &topicId);

    TopicListModel &m_list;
    QString m_currentId;
    int m_currentRow = -1;
    QString m_shownId;
    QString m_goneId;
    Ghost m_ghost;
    Ghost m_shownGhost;
    QSet<QString> m_came; // into the list, since the cards last heard of it
    bool m_enlarged = false;
    bool m_due = false;      // the cards have not heard of the last change yet
    bool m_asked = false;    // the person went where it goes
    bool m_returned = false; // by taking a decision back
};

} // namespace vorle
