#include "base/Log.h"
#include "base/MainThread.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

#include <mutex>

namespace vorle {

namespace {

/// The lines that may be asked for again. Never destroyed: a thread may log until the very end.
struct RecentLines {
    static constexpr qsizetype maxLines = 50;
    static constexpr qsizetype maxLength = 500;

    std::mutex guard;
    QStringList lines;

    static RecentLines &ofThisProcess() {
        static auto *recent = new RecentLines;
        return *recent;
    }
};

} // namespace

void logLine(const QString &text) {
    qInfo().noquote() << QStringLiteral("vorle: ") + text;
    RecentLines &recent = RecentLines::ofThisProcess();
    const std::lock_guard lock(recent.guard);
    recent.lines += text.left(RecentLines::maxLength);
    if (recent.lines.size() > RecentLines::maxLines) {
        recent.lines.removeFirst();
    }
}

QStringList recentLogLines() {
    RecentLines &recent = RecentLines::ofThisProcess();
    const std::lock_guard lock(recent.guard);
    return recent.lines;
}

void requireMainThread(std::string_view subject, std::source_location where) {
    const QCoreApplication *app = QCoreApplication::instance();
    if (app == nullptr || app->thread() == QThread::currentThread()) {
        return;
    }
    qFatal("%.*s:%u: %s called outside the main thread", static_cast<int>(subject.size()),
           subject.data(), static_cast<unsigned>(where.line()), where.function_name());
}

} // namespace vorle
