#pragma once

#include <QString>

namespace vorle {

/// A span of time as French writes it: "45 min", "1 h", "1 h 20", its parts kept together by
/// no-break spaces. Less than nothing reads as "0 min". Pure.
QString durationText(int minutes);

} // namespace vorle
