#include "agents/setup/WorkFolder.h"

#include "agents/TemporaryFiles.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/stat.h>

namespace vorle {

WorkFolder::WorkFolder()
    : m_path(QDir::tempPath() + QStringLiteral("/vorle-install-") +
             QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()) {
    std::filesystem::create_directories(QDir::tempPath().toStdString());
    if (::mkdir(QFile::encodeName(m_path).constData(), 0700) != 0) {
        throw std::system_error(errno, std::generic_category(), m_path.toStdString());
    }
    m_use = inUse(m_path);
}

WorkFolder::~WorkFolder() {
    // An archive may have brought folders that nobody may enter.
    namespace fs = std::filesystem;
    std::error_code end;
    std::error_code ignored;
    const fs::path root(m_path.toStdString());
    for (fs::recursive_directory_iterator it(root, end); !end && it != fs::end(it);
         it.increment(end)) {
        if (fs::is_directory(it->symlink_status(ignored))) {
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(root, ignored);
}

} // namespace vorle
