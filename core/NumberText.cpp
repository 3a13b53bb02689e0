#include "core/NumberText.h"

#include "base/FrenchLocale.h"

namespace vorle {

QString numberText(qint64 number) { return frenchLocale().toString(number); }

QString tenthsText(double number) {
    const QString text = frenchLocale().toString(number, 'f', 1).replace(u'-', u'−');
    return text.endsWith(u",0") ? text.chopped(2) : text;
}

} // namespace vorle
