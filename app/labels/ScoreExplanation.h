#pragma once

#include "core/ScoreProvenanceLog.h"
#include "core/Topic.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QTimeZone>

#include <optional>

namespace vorle {

/// A score laid open: what it is made of and what stood behind it, in French, for whoever shows it.
struct ScoreExplanation {
    struct Grade {
        QString label;
        int grade = 0; ///< 0 to 10
        bool operator==(const Grade &) const = default;
    };
    struct Fact {
        QString label;
        QString text;
        bool operator==(const Fact &) const = default;
    };

    QString title;       ///< "Note 8 sur 10"; the user's own with the former one
    QList<Grade> grades; ///< the four criteria; none when the topic was not judged by them
    /// Effort, urgency, reading, exact grade, judge, reflexes, examples, correction: those that
    /// are known, in this order.
    QList<Fact> facts;
};

/// @param provenance   what was kept when the topic was judged; nothing for one judged before it
/// was,
///               or imported: the facts that rest on it are then left out
/// @param today  the day the texts are read on; `zone` turns its moment into a day
/// Pure, any thread.
ScoreExplanation openScore(const Topic &topic, const std::optional<ScoreProvenance> &provenance,
                           const QDate &today, const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
