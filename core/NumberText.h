#pragma once

#include <QString>

namespace vorle {

/// A whole number as French writes it: "12", "1 430", its groups held together by narrow no-break
/// spaces. Pure.
QString numberText(qint64 number);

} // namespace vorle
