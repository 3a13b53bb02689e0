#pragma once

#include "base/Descriptor.h"

#include <QString>

#include <optional>

namespace vorle {

/// Who puts a new version in the place of a program.
enum class UpdateKeeper {
    Itself,   ///< it lies in a folder made for that (see InstallationLayout.h), which its user may
              ///< change
    Packages, ///< the system's packages
    Another,  ///< whoever its files belong to: this user may not change them
    Nobody    ///< it lies anywhere, as one that was built here does
};

/// A program in a folder made for updates (InstallationLayout.h). Every step leaves links that lead
/// to whole versions, so that a process or a machine that stops anywhere leaves a program that
/// starts. Any thread, one at a time; processes keep apart by a FileLock on `lockFile()`. What the
/// system refuses is thrown as std::system_error.
class Installation {
public:
    static UpdateKeeper keeperOf(const QString &program);
    /// The installation that this program runs from; nothing where its keeper is another.
    static std::optional<Installation> of(const QString &program);
    /// Keeps the version that a program lies in from being removed while what it gives is open: for
    /// a process that runs from there, whatever becomes the version in use meanwhile. Nothing for a
    /// program that lies elsewhere.
    static Descriptor hold(const QString &program);

    const QString &folder() const { return m_folder; }
    /// The version that this program runs from.
    const QString &version() const { return m_version; }
    QString launcher() const;
    QString lockFile() const;
    /// Where an update is fetched and unpacked; not there unless it is under way.
    QString stagingFolder() const;
    /// The version that is ready to take the place of this one.
    std::optional<QString> ready() const;
    /// The version that another process put in the place of this one while this one ran.
    std::optional<QString> placed() const;
    /// The version that the next start after an end of this one brings: the newer of those two.
    std::optional<QString> coming() const;
    /// The version that did not start, and was taken back.
    std::optional<QString> refused() const;
    void forgetRefused() const;
    /// The version that was ready, and could not be put in the place of this one.
    std::optional<QString> unplaced() const;
    void noteUnplaced(const QString &version) const; ///< as far as the disk takes it
    void forgetUnplaced() const;

    /// Removes what an interrupted download left.
    void clearStaging() const;
    /// Removes what interrupted updates left, and the versions that no link leads to and no process
    /// runs from (`hold`).
    void sweep() const;
    /// Makes an unpacked tree, all of it on the disk, the version that is ready. The tree moves. It
    /// does not take the place of one that a process still runs from.
    void makeReady(const QString &tree, const QString &version) const;
    /// Puts the version that is ready in the place of the one in use, which is kept to go back to:
    /// or the one before it, where the one in use never said that it works.
    /// False, and nothing changes, where there is none or it is not newer.
    bool activate() const;
    /// The version in use works: nothing is gone back to any more.
    void confirm() const;
    /// Whether the version in use was started, or crashed, without ever having said that it works.
    bool isInDoubt() const;
    /// Tells the launcher, where this version is on trial, that it has not hung, whatever keeps it
    /// from saying that it works. As far as the disk takes it.
    void noteAnswer() const;

private:
    Installation(QString folder, QString version)
        : m_folder(std::move(folder)), m_version(std::move(version)) {}
    QString at(const char *name) const;
    QString versionAt(const char *link) const;
    std::optional<QString> versionIn(const char *file) const;
    bool isOnTrial() const;
    void putLink(const char *name, const QString &version) const;
    void removeLink(const char *name) const;
    void sync(const QString &folder) const;

    QString m_folder;
    QString m_version;
};

/// Whether a text can be a version of ours: numbers, a pre-release perhaps, nothing that a path
/// could be made of.
bool isReleaseVersion(const QString &text);

} // namespace vorle
