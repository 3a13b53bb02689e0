#pragma once

#include <QQmlComponent>
#include <QQmlEngine>
#include <QVariantMap>

#include <memory>
#include <optional>
#include <thread>

namespace vorle {

/// The engine that the screens run in, which makes them of their files. Main thread; what it made
/// goes before it does.
class ScreenEngine {
public:
    ScreenEngine();
    /// Waits for the list of fonts.
    ~ScreenEngine();

    /// One that reads the main window's screens from now on, and has the system's fonts listed,
    /// each on a thread of its own: whatever the screens show can be made meanwhile. `made` waits
    /// for what is being read.
    static std::unique_ptr<ScreenEngine> reading();

    /// A screen, with these properties from the beginning.
    /// @param screen  below the module's root: "screens/Main.qml"
    /// @throws std::runtime_error when it cannot be loaded: a fault of the build
    std::unique_ptr<QObject> made(const QString &screen, const QVariantMap &properties);

    QQmlEngine &qml() { return *m_qml; }

private:
    std::unique_ptr<QQmlEngine> m_qml;
    std::optional<QQmlComponent> m_look; // which all screens lean on
    std::optional<QQmlComponent> m_main;
    std::thread m_fonts;
};

} // namespace vorle
