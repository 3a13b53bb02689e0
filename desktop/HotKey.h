#pragma once

#include "core/Preferences.h"
#include "platform/GlobalHotKey.h"

#include <QObject>

namespace vorle {

/// The key that opens the quick capture from any application: registers what the settings say, one
/// combination at a time, and follows them. Main thread; what it is given outlives it.
class HotKey final : public QObject {
    Q_OBJECT
public:
    HotKey(const Preferences &preferences, GlobalHotKey &system, QObject *parent = nullptr);
    ~HotKey() override;

    GlobalHotKey::State state() const { return m_system.state(); }
    /// See GlobalHotKey.
    QString boundTo() const { return m_system.boundTo(); }

    /// Gives the combination back, so that it can be typed like any other, and takes it again.
    void pause();
    void resume();
    /// Asks once more for one that another program had, or that the system did not give.
    void look();

Q_SIGNALS:
    void pressed();
    /// The state, or what it is bound to.
    void changed();

private:
    void apply();

    const Preferences &m_preferences;
    GlobalHotKey &m_system;
    bool m_paused = false;
};

} // namespace vorle
