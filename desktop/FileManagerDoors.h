#pragma once

#include "base/Resources.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace vorle {

/// How a Linux desktop reaches vorle from outside: the handler of its addresses, and "Ajouter à
/// vorle" in two file managers. Files of the user's own, to be written and taken away again.
class FileManagerDoors {
public:
    struct File {
        QString path;
        QByteArray bytes;
        bool runs = false; ///< may be executed
    };

    /// @param dataFolder  XDG_DATA_HOME
    /// @param program  the path of vorle's program
    /// @throws std::runtime_error for a path that no such file can name: one with a line break
    FileManagerDoors(const Resources &resources, const QString &dataFolder, const QString &program);

    const QList<File> &files() const { return m_files; }
    /// Writes all of them, over what was there. @throws std::system_error
    void install() const;
    /// Takes them away. Those that are not there are passed over. @throws std::system_error
    void remove() const;

private:
    QList<File> m_files;
};

} // namespace vorle
