#include "core/NumberText.h"

#include "base/FrenchLocale.h"

namespace vorle {

QString numberText(qint64 number) { return frenchLocale().toString(number); }

} // namespace vorle
