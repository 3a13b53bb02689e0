#pragma once

#include <QByteArray>
#include <QString>

#include <sys/resource.h>

#include <functional>

namespace vorle::test {

/// Writes a file, with the folders above it. Throws when it cannot.
void writeFile(const QString &path, const QByteArray &content);
/// Writes a program for /bin/sh that its owner can run. Throws when it cannot.
void writeProgram(const QString &path, const QByteArray &shell);
/// What the file holds; nothing of one that cannot be read.
QByteArray readFile(const QString &path);

/// Runs `work` while no file may grow past that many bytes, which fails a write in the middle as a
/// full disk does.
void withFileSizeLimit(rlim_t bytes, const std::function<void()> &work);

} // namespace vorle::test
