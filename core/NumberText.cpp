#include "core/NumberText.h"

#include <QLocale>

namespace vorle {

QString numberText(qint64 number) {
    return QLocale(QLocale::French, QLocale::France).toString(number);
}

} // namespace vorle
