#pragma once

#include "app/models/TopicsSeen.h"
#include "base/Json.h"

#include <QMap>
#include <QRect>
#include <QString>

#include <optional>

namespace vorle {

/// Where the main window was, what it showed and what was being written in it, kept in
/// "window.json" beside the topics. Losing it loses nothing the user has finished: a file that
/// cannot be read or written is passed over. One that was read and holds no place is kept aside
/// before it is replaced; one that the system did not let be read is not replaced.
struct WindowState {
    int x = 0;
    int y = 0;
    int width = 0; ///< 0: never shown yet
    int height = 0;
    std::optional<bool> maximised; ///< then the place is where it was before
    int section = 0;
    bool toldOfMenuBar = false; ///< the user knows that closing leaves the app in the menu bar
    std::optional<QMap<QString, QString>> drafts = {}; ///< see Drafts
    std::optional<TopicsSeen> seen = {};               ///< see Visits: when they left
    std::optional<TopicsSeen> newAfter = {};           ///< likewise: since when things are new
    json::Rest unknown = {};                           ///< keys of a later version
    bool refused = false; ///< by the system, which did not let the file be read

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("x", &WindowState::x), json::field("y", &WindowState::y),
            json::field("width", &WindowState::width), json::field("height", &WindowState::height),
            json::field("maximised", &WindowState::maximised),
            json::field("section", &WindowState::section),
            json::field("toldOfMenuBar", &WindowState::toldOfMenuBar),
            json::field("drafts", &WindowState::drafts), json::field("seen", &WindowState::seen),
            json::field("newAfter", &WindowState::newAfter));
    }
    static constexpr auto jsonRest() { return &WindowState::unknown; }
    bool operator==(const WindowState &) const = default;

    QRect geometry() const { return {x, y, width, height}; }
    void setGeometry(const QRect &geometry);

    /// What lies beside that topics file; the default where nothing readable does.
    static WindowState load(const QString &topicsFile);
    void save(const QString &topicsFile) const;
};

/// `wanted`, moved and shrunk so that it lies on one of the screens; where it lies on none, or was
/// never set, the middle of the first at `fallback`. `screens` are the places free for windows.
QRect onScreen(const QRect &wanted, const QSize &fallback, const QList<QRect> &screens);

/// Where a panel of that size hangs from the menu-bar item `item`: under it, or over it where the
/// bar is at the bottom; whole on `screen`, the place free for windows.
QPoint besideItem(const QRect &item, const QSize &panel, const QRect &screen);

} // namespace vorle
