#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// An application a person can open and work in.
struct InstalledApp {
    QString name;       ///< as the person sees it
    QString location;   ///< the path of its bundle or desktop entry
    QString identifier; ///< unique on the machine; may be empty
    /// One of Apple's names for kinds of apps ("public.app-category.games"), whatever the system.
    std::optional<QString> category;

    bool operator==(const InstalledApp &) const = default;
};

/// The applications installed on this machine.
class InstalledApps {
public:
    virtual ~InstalledApps() = default;

    /// Those a person works in, in no particular order: what runs in the background, hides from
    /// menus or is ours is left out, what cannot be read is passed over. Two may bear one name.
    /// Never throws. Any thread; reads some hundred files.
    virtual QList<InstalledApp> list() const = 0;
};

} // namespace vorle
