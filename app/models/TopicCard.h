#pragma once

#include "core/TopicStore.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

namespace vorle {

/// What a topic's card and reading page show, worded, role by role. Pure, main thread.
struct TopicCard {
    const Topic &topic;
    QDateTime now;
    bool moved = false;
    bool waits = false;
    QString briefState;
    QString captureProblem;

    /// The value of a TopicListModel::Role; an invalid one for any other number.
    QVariant value(int role) const;
    /// The score shown: the user's own, rounded, else the judge's; nothing without either.
    std::optional<int> score() const;
};

} // namespace vorle
