#include "platform/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

namespace vorle {

QString QtPasteboard::text() const {
    const QMimeData *data = QGuiApplication::clipboard()->mimeData();
    // Its own text for an address is one to read, with escapes undone.
    if (data != nullptr && data->hasUrls() && !data->urls().isEmpty()) {
        return data->urls().constFirst().toString(QUrl::FullyEncoded);
    }
    return data != nullptr ? data->text() : QString();
}

void QtPasteboard::replace(const QString &text) {
    QGuiApplication::clipboard()->clear();
    QGuiApplication::clipboard()->setText(text);
}

} // namespace vorle
