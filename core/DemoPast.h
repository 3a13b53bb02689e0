#pragma once

#include "core/RunReport.h"
#include "core/ScoreProvenanceLog.h"
#include "core/Topic.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QLocale>
#include <QTimeZone>

namespace vorle {

/// Eight weeks of somebody's watch, for the demonstration to show: what was found, what became of
/// it, what the runs took. As the resource "demo-history" keeps it, its moments are hours on the
/// wall, whatever the zone, and belong to a present week that starts on the Monday `week`.
struct DemoPast {
    QDateTime week;
    QList<RunReport> runs; ///< oldest first; the last one brought what waits in "À trier"
    QList<Topic> topics;   ///< all decided, in the order they were found
    QList<ScoreProvenance> provenance;
    QList<Picture> pictures; ///< by the link of a source: that of each topic which has it

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("week", &DemoPast::week), json::field("runs", &DemoPast::runs),
            json::field("topics", &DemoPast::topics), json::field("notes", &DemoPast::provenance),
            json::field("pictures", &DemoPast::pictures));
    }
};

/// The file in the picture cache for one of the demonstration's drawings.
inline QString demoPictureFile(const QString &drawing) {
    return QStringLiteral("demo-") + drawing + QStringLiteral(".img");
}

/// That past as it would be now: its present week is the one around `now`, each day stays the day
/// of the week it is, and each hour the same on a clock in `zone`. What would lie ahead comes to
/// lie an hour back instead, or at the week's beginning where that is later, so that the present
/// week is told of from its first minute on. `waiting` joins the topics, as the last run's, which
/// was ten minutes ago. Pure, any thread.
/// @throws json::DecodeError when `data` is no such past
DemoPast demoPast(const QByteArray &data, const QList<Topic> &waiting, const QDateTime &now,
                  const QLocale &locale = QLocale::system(),
                  const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
