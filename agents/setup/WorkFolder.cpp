#include "agents/setup/WorkFolder.h"

#include "agents/TemporaryFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

namespace vorle {

namespace {

bool isThere(const QString &path) { return QFileInfo(path).isDir(); }

} // namespace

WorkFolder::WorkFolder() {
    std::filesystem::create_directories(QDir::tempPath().toStdString());
    constexpr int tries = 5; // another process that starts may sweep it before it is in use
    for (int attempt = 0; attempt < tries && !(m_use && m_use->isOpen() && isThere(m_path));
         ++attempt) {
        m_path = QDir::tempPath() + QStringLiteral("/vorle-install-") +
                 QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        if (::mkdir(QFile::encodeName(m_path).constData(), S_IRWXU) != 0) {
            throw std::system_error(errno, std::generic_category(), m_path.toStdString());
        }
        m_use.emplace(inUse(m_path));
    }
}

WorkFolder::~WorkFolder() { removeWhole(m_path); }

} // namespace vorle
