#pragma once

#include <QString>

namespace vorle::test {

/// A literal in UTF-8.
inline QString text(const char *utf8) { return QString::fromUtf8(utf8); }

} // namespace vorle::test
