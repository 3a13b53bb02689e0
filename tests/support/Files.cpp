#include "tests/support/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <csignal>
#include <stdexcept>

namespace vorle::test {

void writeFile(const QString &path, const QByteArray &content) {
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

void writeProgram(const QString &path, const QByteArray &shell) {
    writeFile(path, "#!/bin/sh\n" + shell + '\n');
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QByteArray readFile(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void withFileSizeLimit(rlim_t bytes, const std::function<void()> &work) {
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{bytes, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    work();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, before);
}

} // namespace vorle::test
