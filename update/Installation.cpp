#include "update/Installation.h"

#include "base/Descriptor.h"
#include "base/InstallationLayout.h"
#include "base/InstalledProgram.h"
#include "search/discovery/Version.h"
#include "update/UpdateError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vorle {

namespace {

QString named(const char *text) { return QString::fromLatin1(text); }

bool mayWrite(const QString &path) {
    return ::access(QFile::encodeName(path).constData(), W_OK) == 0;
}

/// Root may write everywhere, and would leave files that their owner may not touch.
bool isOwn(const QString &path) { return QFileInfo(path).ownerId() == ::geteuid(); }

/// What a link leads to stays.
void removeAny(const QString &path) {
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink()) {
        QDir(path).removeRecursively();
    } else {
        QFile::remove(path);
    }
}

bool mayRun(const QString &path) {
    return QFileInfo(path).isFile() && ::access(QFile::encodeName(path).constData(), X_OK) == 0;
}

/// The folder and the version of a program in an installation; empty for any other.
std::pair<QString, QString> placeOf(const QString &program) {
    const QString folder = installationFolder(program);
    const QString version =
        QFileInfo(QFileInfo(QFileInfo(program).canonicalFilePath()).path()).dir().dirName();
    return !folder.isEmpty() && isReleaseVersion(version) ? std::pair(folder, version)
                                                          : std::pair<QString, QString>();
}

/// The file by which a version is held.
Descriptor versionFileOf(const QString &place) {
    const QByteArray name = QFile::encodeName(place + u'/' + named(layout::versionFile));
    return Descriptor(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

/// Whether a process runs from that version. Where the file system knows no locks, none does.
bool isHeld(const Descriptor &versionFile) {
    return versionFile.isOpen() && ::flock(versionFile.number(), LOCK_EX | LOCK_NB) != 0 &&
           errno == EWOULDBLOCK;
}

/// Folders that belong to the system's packages, or to what stands in for them.
bool isOfPackages(const QString &path) {
    for (const char *folder : {"/usr/", "/bin/", "/opt/", "/snap/", "/app/", "/nix/", "/gnu/"}) {
        if (path.startsWith(named(folder)) && !path.startsWith(u"/usr/local/")) {
            return true;
        }
    }
    return false;
}

} // namespace

bool isReleaseVersion(const QString &text) {
    constexpr qsizetype longest = 40;
    static const QRegularExpression form(
        QStringLiteral("^[0-9]{1,9}(\\.[0-9]{1,9}){0,3}(-[0-9A-Za-z]+(\\.[0-9A-Za-z]+)*)?$"),
        QRegularExpression::DontCaptureOption);
    return text.size() <= longest && !text.endsWith(u'\n') && form.match(text).hasMatch();
}

UpdateKeeper Installation::keeperOf(const QString &program) {
    const QString path = QFileInfo(program).canonicalFilePath();
    if (path.isEmpty()) {
        return UpdateKeeper::Nobody;
    }
    if (isOfPackages(path)) {
        return UpdateKeeper::Packages;
    }
    const auto [folder, version] = placeOf(program);
    if (folder.isEmpty()) {
        return mayWrite(QFileInfo(path).path()) ? UpdateKeeper::Nobody : UpdateKeeper::Another;
    }
    const QString versions = folder + u'/' + named(layout::versions);
    return isOwn(folder) && isOwn(versions) && mayWrite(folder) && mayWrite(versions)
               ? UpdateKeeper::Itself
               : UpdateKeeper::Another;
}

std::optional<Installation> Installation::of(const QString &program) {
    if (keeperOf(program) != UpdateKeeper::Itself) {
        return std::nullopt;
    }
    const auto [folder, version] = placeOf(program);
    return Installation(folder, version);
}

Descriptor Installation::hold(const QString &program) {
    const auto [folder, version] = placeOf(program);
    Descriptor file = folder.isEmpty()
                          ? Descriptor(-1)
                          : versionFileOf(folder + u'/' + named(layout::versions) + u'/' + version);
    if (file.isOpen()) {
        ::flock(file.number(), LOCK_SH | LOCK_NB); // taken by who removes it just now, it is late
    }
    return file;
}

QString Installation::at(const char *name) const { return m_folder + u'/' + named(name); }

QString Installation::launcher() const { return at(layout::launcher); }

QString Installation::lockFile() const { return m_folder + QStringLiteral("/update"); }

QString Installation::stagingFolder() const { return at(layout::staging); }

/// The version that a link of the folder leads to; empty where there is none that can be run.
QString Installation::versionAt(const char *link) const {
    const QFileInfo info(at(link));
    const QString version =
        info.isSymLink() ? QFileInfo(info.symLinkTarget()).fileName() : QString();
    const QString program =
        m_folder + u'/' + named(layout::versions) + u'/' + version + u'/' + named(layout::program);
    return isReleaseVersion(version) && mayRun(program) ? version : QString();
}

std::optional<QString> Installation::ready() const {
    const QString version = versionAt(layout::next);
    return isNewer(version, m_version) ? std::optional(version) : std::nullopt;
}

std::optional<QString> Installation::placed() const {
    const QString version = versionAt(layout::current);
    return isNewer(version, m_version) ? std::optional(version) : std::nullopt;
}

std::optional<QString> Installation::coming() const {
    const auto next = ready();
    const auto here = placed();
    return next && (!here || isNewer(*next, *here)) ? next : here;
}

/// The version that a file of the folder tells.
std::optional<QString> Installation::versionIn(const char *name) const {
    QFile file(at(name));
    constexpr qint64 most = 100;
    const QString version =
        file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(most)).trimmed() : QString();
    return isReleaseVersion(version) ? std::optional(version) : std::nullopt;
}

std::optional<QString> Installation::refused() const { return versionIn(layout::refused); }

void Installation::forgetRefused() const { removeLink(layout::refused); }

std::optional<QString> Installation::unplaced() const { return versionIn(layout::unplaced); }

void Installation::noteUnplaced(const QString &version) const {
    QFile file(at(layout::unplaced));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(version.toUtf8());
    }
}

void Installation::forgetUnplaced() const { removeLink(layout::unplaced); }

void Installation::sync(const QString &folder) const {
    const Descriptor opened(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen() || (::fsync(opened.number()) != 0 && errno != EINVAL)) {
        throwRefusal(folder);
    }
}

void Installation::putLink(const char *name, const QString &version) const {
    const QByteArray target = QFile::encodeName(named(layout::versions) + u'/' + version);
    const QByteArray fresh = QFile::encodeName(at(name) + QStringLiteral(".new"));
    ::unlink(fresh.constData()); // of a process that died here
    if (::symlink(target.constData(), fresh.constData()) != 0 ||
        ::rename(fresh.constData(), QFile::encodeName(at(name)).constData()) != 0) {
        throwRefusal(at(name));
    }
    sync(m_folder);
}

void Installation::removeLink(const char *name) const {
    if (::unlink(QFile::encodeName(at(name)).constData()) != 0 && errno != ENOENT) {
        throwRefusal(at(name));
    }
}

void Installation::clearStaging() const { removeAny(stagingFolder()); }

void Installation::sweep() const {
    clearStaging();
    QDir versions(at(layout::versions));
    const QStringList kept{m_version, versionAt(layout::current), versionAt(layout::previous),
                           versionAt(layout::next)};
    for (const QString &name : versions.entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                                  QDir::NoDotAndDotDot)) {
        const QString place = versions.filePath(name);
        const Descriptor file = versionFileOf(place);
        if (!kept.contains(name) && !isHeld(file)) {
            removeAny(place);
        }
    }
}

void Installation::makeReady(const QString &tree, const QString &version) const {
    const QString versions = at(layout::versions);
    const QString place = versions + u'/' + version;
    if (version == versionAt(layout::current) || version == m_version) {
        errno = EEXIST;
        throwRefusal(place);
    }
    const Descriptor file = versionFileOf(place);
    if (isHeld(file)) {
        errno = EBUSY;
        throwRefusal(place);
    }
    if (QFileInfo(QFileInfo(at(layout::next)).symLinkTarget()).fileName() == version) {
        removeLink(layout::next); // or it would lead to half a version for a while
        sync(m_folder);
    }
    removeAny(place); // of one that was refused, or never became ready
    if (::rename(QFile::encodeName(tree).constData(), QFile::encodeName(place).constData()) != 0) {
        throwRefusal(place);
    }
    sync(versions);
    putLink(layout::next, version);
}

bool Installation::activate() const {
    const QString next = versionAt(layout::next);
    const QString current = versionAt(layout::current);
    if (!isNewer(next, current)) {
        removeLink(layout::next); // a version that is none, or that came in another way meanwhile
        return false;
    }
    removeLink(layout::starts);
    removeLink(layout::answers);
    const QString before = versionAt(layout::previous);
    if (before.isEmpty() || before == current) { // else `current` is on trial itself
        putLink(layout::previous, current);
    }
    if (::rename(QFile::encodeName(at(layout::next)).constData(),
                 QFile::encodeName(at(layout::current)).constData()) != 0) {
        throwRefusal(at(layout::current));
    }
    sync(m_folder);
    return true;
}

/// False where another version runs on, too.
bool Installation::isOnTrial() const {
    return versionAt(layout::current) == m_version && QFileInfo(at(layout::previous)).isSymLink();
}

void Installation::noteAnswer() const {
    if (isOnTrial()) {
        QFile(at(layout::answers)).open(QIODevice::WriteOnly);
    }
}

void Installation::confirm() const {
    if (!isOnTrial()) {
        return;
    }
    removeLink(layout::previous);
    removeLink(layout::starts);
    removeLink(layout::answers);
    removeLink(layout::refused);
    sync(m_folder);
}

bool Installation::isInDoubt() const { return QFileInfo(at(layout::starts)).size() > 0; }

} // namespace vorle
