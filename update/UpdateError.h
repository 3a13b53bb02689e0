#pragma once

#include "base/Log.h"

#include <QString>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace vorle {

/// An update that cannot go on: the feed or the archive is not what it must be, or could not be
/// had. What it says is for the log, in English; people are told by the Updater.
class UpdateError : public std::runtime_error {
public:
    explicit UpdateError(const QString &text) : std::runtime_error(text.toStdString()) {}
    QString text() const { return QString::fromUtf8(what()); }
};

/// Another process fetches and installs a version already: it is left to that one.
class UpdateHeldElsewhere : public UpdateError {
public:
    UpdateHeldElsewhere() : UpdateError(QStringLiteral("another process installs an update")) {}
};

/// Throws what the system just said of a path, as std::system_error. Reads errno.
[[noreturn]] inline void throwRefusal(const QString &path) {
    throw std::system_error(errno, std::generic_category(), path.toStdString());
}

/// A line of the log on updates.
inline void noteUpdate(const QString &text) { logLine(QStringLiteral("updates: ") + text); }

} // namespace vorle
