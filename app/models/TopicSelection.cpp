#include "app/models/TopicSelection.h"

#include <algorithm>
#include <utility>

namespace vorle {

TopicSelection::TopicSelection(TopicListModel &list, QObject *parent)
    : QObject(parent), m_list(list) {
    connect(&list, &TopicListModel::rowsInserted, this, [this](const QModelIndex &, int row) {
        m_came.insert(m_list.topicIdAt(row));
        follow();
    });
    connect(&list, &TopicListModel::rowsRemoved, this, &TopicSelection::follow);
    connect(&list, &TopicListModel::rowsMoved, this, &TopicSelection::follow);
    connect(&list, &TopicListModel::modelReset, this, &TopicSelection::follow);
    follow();
    settle(); // nobody draws it yet, and who does draws it once
}

void TopicSelection::setEnlarged(bool enlarged) {
    if (enlarged != m_enlarged && (!enlarged || !m_currentId.isEmpty())) {
        m_enlarged = enlarged;
        Q_EMIT enlargedChanged();
    }
}

void TopicSelection::goTo(int row) {
    m_asked = true;
    choose(std::min(std::max(0, row), m_list.count() - 1));
    Q_EMIT wentTo();
}

void TopicSelection::step(int rows) { goTo(m_currentRow + rows); }

bool TopicSelection::show(const QString &topicId) {
    const int row = m_list.rowOf(topicId);
    if (row >= 0) {
        goTo(row);
    }
    return row >= 0;
}

bool TopicSelection::showReturned(const QString &topicId) {
    m_returned = m_came.contains(topicId); // else only something about it was taken back
    return show(topicId);
}

/// After the list changed.
void TopicSelection::follow() {
    const int row = m_list.rowOf(m_currentId);
    if (row < 0) {
        setGone(m_currentId);
    } else if (m_list.rowOf(m_goneId) >= 0) { // it is back before anybody saw it go
        setGone({});
    }
    choose(row >= 0 ? row : std::min(std::max(0, m_currentRow), m_list.count() - 1));
}

void TopicSelection::choose(int row) {
    const QString id = m_list.topicIdAt(row);
    if (id != m_currentId || row != m_currentRow) {
        m_currentId = id;
        m_currentRow = row;
        Q_EMIT currentChanged();
    }
    settleSoon();
    if (m_currentId.isEmpty()) {
        setEnlarged(false);
    }
}

void TopicSelection::settleSoon() {
    if (!std::exchange(m_due, true)) {
        Q_EMIT changing();
        QMetaObject::invokeMethod(this, &TopicSelection::settle, Qt::QueuedConnection);
    }
}

void TopicSelection::settle() {
    if (!std::exchange(m_due, false)) {
        return;
    }
    const bool asked = std::exchange(m_asked, false);
    const bool returned = std::exchange(m_returned, false);
    m_came.clear();
    const QString gone = m_goneId;
    const Arrival arrival = !gone.isEmpty() ? Replaces : returned ? Returns : asked ? Asked : Stays;
    Q_EMIT settling(arrival);
    m_shownId = m_currentId;
    m_shownGhost = m_ghost;
    Q_EMIT shownChanged();
    Q_EMIT settled(arrival);
    if (m_goneId == gone) { // not one that went meanwhile: its turn comes
        setGone({});
    }
}

void TopicSelection::setGone(const QString &topicId) {
    if (topicId != m_goneId) {
        m_goneId = topicId;
        Q_EMIT goneChanged();
    }
}

Ghost TopicSelection::ghostToLeave() const {
    const int row = m_currentRow;
    const QString next = m_list.topicIdAt(row + 1);
    const bool apart = row > 0 && !next.isEmpty() && m_list.heading(row) != m_list.heading(row + 1);
    const TopicCard card = m_list.card(row);
    return {.topicId = m_currentId,
            .went = {},
            .title = card.title(),
            .card = card,
            .overId = apart ? QString() : next,
            .underId = apart ? m_list.topicIdAt(row - 1) : QString()};
}

void TopicSelection::setGhost(const Ghost &ghost) {
    if (ghost != m_ghost) {
        m_ghost = ghost;
        settleSoon();
    }
}

} // namespace vorle
