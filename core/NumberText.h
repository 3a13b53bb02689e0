#pragma once

#include <QString>

namespace vorle {

/// A whole number as French writes it: "12", "1 430", its groups held together by narrow no-break
/// spaces. Pure.
QString numberText(qint64 number);

/// A number to one place at most: "7,5", "7", "−0,5". Pure.
QString tenthsText(double number);

} // namespace vorle
