#include "base/WallClock.h"

namespace vorle {

/// Reckoned from offsets: a date-time in a zone tells nothing certain of times that its clocks skip
/// or show twice, midnight among them.
QDateTime momentOn(const QDate &date, const QTime &time, const QTimeZone &zone) {
    const QDateTime shown(date, time, Qt::UTC); // what the clocks show, as if they showed UTC
    const auto at = [&](int offset) { return shown.addSecs(-offset); };
    const auto holds = [&](int offset) { return zone.offsetFromUtc(at(offset)) == offset; };
    const int before = zone.offsetFromUtc(shown.addDays(-2));
    if (holds(before)) {
        return at(before);
    }
    int offset = before;
    for (const QTimeZone::OffsetData &change :
         zone.transitions(shown.addDays(-2), shown.addDays(2))) {
        const bool skipped = at(offset) >= change.atUtc && at(change.offsetFromUtc) < change.atUtc;
        if (skipped) {
            return change.atUtc;
        }
        offset = change.offsetFromUtc;
        if (holds(offset)) {
            return at(offset);
        }
    }
    return at(offset);
}

} // namespace vorle
