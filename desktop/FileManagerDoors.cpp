#include "desktop/FileManagerDoors.h"

#include "base/French.h"
#include "platform/DesktopExec.h"
#include "platform/ShellWord.h"
#include "storage/DurableFile.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace vorle {

namespace {

struct Door {
    const char *name; ///< of the resource
    const char *extension;
    const char *folder; ///< in the data folder
    const char *file;   ///< empty: as the menu calls it
    bool runs;
};
constexpr Door doors[] = {
    {"vorle-capture", "desktop", "/applications/", "vorle-capture.desktop", false},
    // Plasma runs only those that may be executed.
    {"vorle-servicemenu", "desktop", "/kio/servicemenus/", "vorle-ajouter.desktop", true},
    {"vorle-nautilus", "sh", "/nautilus/scripts/", "", true},
};

[[noreturn]] void fail(const QString &path) {
    throw std::system_error(errno, std::generic_category(), path.toStdString());
}

} // namespace

FileManagerDoors::FileManagerDoors(const Resources &resources, const QString &dataFolder,
                                   const QString &program) {
    const QString exec = desktopExecWord(program);
    if (exec.isEmpty()) {
        throw std::runtime_error("no desktop entry can name the program's path");
    }
    for (const Door &door : doors) {
        QString text =
            resources.text(QString::fromLatin1(door.name), QString::fromLatin1(door.extension))
                .value_or(QString());
        // One of the two stands in each.
        text.replace(QStringLiteral("@EXEC@"), exec);
        if (text.contains(u"@SHELL@")) {
            text.replace(QStringLiteral("@SHELL@"), shellWord(program));
        }
        const QString name =
            *door.file == '\0' ? French::tr("Ajouter à vorle") : QString::fromLatin1(door.file);
        m_files += {dataFolder + QString::fromLatin1(door.folder) + name, text.toUtf8(), door.runs};
    }
}

void FileManagerDoors::install() const {
    for (const File &file : m_files) {
        makeFolder(QFileInfo(file.path).absolutePath());
        replaceWhole(file.path, file.bytes);
        const QByteArray name = QFile::encodeName(file.path);
        if (::chmod(name.constData(), file.runs ? 0755 : 0644) != 0) {
            fail(file.path);
        }
    }
}

void FileManagerDoors::remove() const {
    for (const File &file : m_files) {
        if (::unlink(QFile::encodeName(file.path).constData()) != 0 && errno != ENOENT) {
            fail(file.path);
        }
    }
}

} // namespace vorle
