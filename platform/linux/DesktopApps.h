#pragma once

#include "platform/InstalledApps.h"
#include "platform/linux/IconTheme.h"

#include <QStringList>

namespace vorle {

/// The applications of a freedesktop system, from the desktop entries in its data directories
/// (Desktop Entry Specification 1.5). Of entries with one desktop-file id the one in the directory
/// named first counts, even to hide it. Left out: entries of another type than Application,
/// hidden, of another desktop, for a terminal, whose program is not there, panel applets and
/// screen savers, and our own.
///
/// Main categories are told in Apple's words: games; music players; players of video and
/// television, as entertainment. A tool that makes games or cuts films is none of these.
class DesktopApps final : public InstalledApps {
public:
    struct Setting {
        QStringList dataDirectories; ///< each may hold "applications/"; the first wins
        QStringList desktops;        ///< the names of the desktop that runs: "GNOME"
        QStringList programFolders;  ///< where a program without a path is looked for
        QStringList ownPrefixes;     ///< what our own desktop-file ids begin with

        /// From the XDG environment variables and their defaults, with the directories of Flatpak
        /// and Snap, which a session may not list.
        static Setting ofThisProcess();
    };

    explicit DesktopApps(Setting setting)
        : m_icons(setting.dataDirectories), m_setting(std::move(setting)) {}

    QList<InstalledApp> list() const override;
    /// By the rules of the Icon Theme Specification: see IconTheme.
    QString iconFile(const QString &icon, const QString &theme, int side) const override;

private:
    IconTheme m_icons;
    Setting m_setting;
};

} // namespace vorle
