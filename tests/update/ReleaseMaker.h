#pragma once

#include "tests/support/Files.h"
#include "update/Appcast.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace vorle::test {

/// An entry of an archive; what it is besides a plain file is for archives that are refused.
struct ArchiveEntry {
    QByteArray path;
    QByteArray content;
    bool runs = false;
    char type = '0';        ///< '0' file, '5' folder, '2' symbolic link, '1' hard link, '3' device
    QByteArray target = {}; ///< of a link
};

/// Who signs releases, for one test.
class ReleaseMaker {
public:
    /// A key of its own, or the one that the programs of tests/update know.
    enum class Key { Fresh, OfTestPrograms };
    explicit ReleaseMaker(Key key = Key::Fresh);

    QByteArray publicKey() const { return m_public; }
    QByteArray sign(const QByteArray &bytes) const;

    /// A tar archive packed by gzip, signed by nobody yet.
    static QByteArray packed(const QList<ArchiveEntry> &entries);
    /// What a release holds: its number, and a program of that shell text that says it.
    static QList<ArchiveEntry> entries(const QByteArray &version,
                                       const QByteArray &shell = "echo vorle $VERSION");

    /// One item of a feed, for this machine.
    static QByteArray item(const QByteArray &version, const QByteArray &address, qint64 length,
                           const QByteArray &signature, const QByteArray &more = {},
                           const QByteArray &system = "linux");
    static QByteArray feed(const QByteArray &items);

private:
    QByteArray m_public;
    QByteArray m_secret;
};

/// An installation of that version in a folder: program, links and launcher. The program is a shell
/// text, with $VERSION for its number.
void layInstallation(const QString &folder, const QByteArray &version, const QByteArray &shell);

} // namespace vorle::test
