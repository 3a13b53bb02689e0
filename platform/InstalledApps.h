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
    QString icon = {}; ///< what its icon is called, for iconFile(); may be empty

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

    /// The file that holds an icon, as drawn for a square of `side` pixels or as near to it as
    /// there is; "" where there is none. `theme` is what the desktop's icon theme is called, where
    /// it has one. What the file holds is not looked at. Never throws. Any thread; asks for some
    /// hundred files.
    virtual QString iconFile(const QString &icon, const QString &theme, int side) const = 0;
};

} // namespace vorle
