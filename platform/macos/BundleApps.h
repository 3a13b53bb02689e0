#pragma once

#include "platform/InstalledApps.h"

#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace vorle {

/// The application a bundle is, from its information dictionary; nothing for one that a person
/// does not work in: a menu-bar agent (LSUIElement), a background service (LSBackgroundOnly), or
/// one of ours, whose identifiers begin with `ownPrefix`. The system's own applications count like
/// any other. Pure.
std::optional<InstalledApp> appOfBundle(const QString &path, const QVariantMap &information,
                                        const QString &ownPrefix);

/// The applications of a Mac: the bundles lying in its applications folders. A bundle's name is
/// its file name without ".app".
///
/// Plain C++, so that it is tried on any system; how a dictionary is read is handed in.
class BundleApps final : public InstalledApps {
public:
    /// Gives the dictionary of an Info.plist, empty when it cannot be read.
    using ReadInformation = std::function<QVariantMap(const QString &path)>;

    BundleApps(QStringList folders, QString ownPrefix, ReadInformation read)
        : m_folders(std::move(folders))
        , m_ownPrefix(std::move(ownPrefix))
        , m_read(std::move(read)) {}

    QList<InstalledApp> list() const override;
    /// Of a bundle the icon is the path of its ICNS file.
    QString iconFile(const QString &icon, const QString &theme, int side) const override;

private:
    QStringList m_folders;
    QString m_ownPrefix;
    ReadInformation m_read;
};

} // namespace vorle
