#pragma once

#include <QLocale>

namespace vorle {

/// How numbers, days and months are written and names are sorted, wherever people read them: as in
/// France, whatever the system is set to. Any thread.
inline QLocale frenchLocale() { return {QLocale::French, QLocale::France}; }

} // namespace vorle
