#include "core/DurationText.h"

#include <algorithm>

namespace vorle {

QString durationText(int minutes) {
    const int whole = std::max(0, minutes);
    const int hours = whole / 60;
    const int rest = whole % 60;
    if (hours == 0) {
        return QStringLiteral("%1\u00A0min").arg(rest);
    }
    return rest == 0 ? QStringLiteral("%1\u00A0h").arg(hours)
                     : QStringLiteral("%1\u00A0h\u00A0%2").arg(hours).arg(rest, 2, 10, QChar(u'0'));
}

} // namespace vorle
