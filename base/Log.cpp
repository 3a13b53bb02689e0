#include "base/Log.h"
#include "base/MainThread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

namespace vorle {

void logLine(const QString &text) { qInfo().noquote() << QStringLiteral("vorle: ") + text; }

void requireMainThread(std::string_view subject, std::source_location where) {
    const QCoreApplication *app = QCoreApplication::instance();
    if (app == nullptr || app->thread() == QThread::currentThread()) {
        return;
    }
    qFatal("%.*s:%u: %s called outside the main thread", static_cast<int>(subject.size()),
           subject.data(), static_cast<unsigned>(where.line()), where.function_name());
}

} // namespace vorle
