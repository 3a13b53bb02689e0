#pragma once

#include "app/models/settings/SettingsModel.h"
#include "app/window/Fonts.h"
#include "app/window/ScreenEngine.h"

#include <QObject>
#include <QQuickWindow>

#include <memory>

namespace vorle {

/// The small window that stands in the main one's place while the app waits for its topics: one
/// sentence, and a button that gives up. Main thread.
class WaitingWindow final : public QObject {
    Q_OBJECT
public:
    /// Shown at once, in the look that the settings ask for.
    /// @throws std::runtime_error when its screen cannot be loaded: a fault of the build
    WaitingWindow(Preferences &preferences, const Typefaces &faces, const QString &sentence);
    ~WaitingWindow() override;

    void setSentence(const QString &sentence);
    void raise();

Q_SIGNALS:
    /// The user does not want to wait.
    void givenUp();

private:
    SettingsModel m_settings;
    ScreenEngine m_engine;
    std::unique_ptr<QObject> m_look;
    std::unique_ptr<QObject> m_screen;
    QQuickWindow *m_window = nullptr;
};

} // namespace vorle
