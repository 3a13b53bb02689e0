#include "platform/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace vorle {

QString QtPasteboard::text() const { return QGuiApplication::clipboard()->text(); }

void QtPasteboard::replace(const QString &text) {
    QGuiApplication::clipboard()->clear();
    QGuiApplication::clipboard()->setText(text);
}

} // namespace vorle
