#pragma once

#include <QString>

#include <optional>

namespace vorle {

/// Whether the system opens the program when its user's session begins, hidden in the menu bar.
/// Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    enum class State {
        Off,
        On,
        Held,  ///< asked for, and the system waits for the person's leave
        Absent ///< this copy of the program cannot be opened so
    };

    /// The system's own answer, asked for at each call.
    virtual State state() const = 0;
    /// What the person can do where the state is Held, or Absent; "" elsewhere.
    virtual QString remedy() const = 0;
    /// Whether it opened this process, where the system says that and no argument does; known once
    /// the event loop turns.
    virtual bool openedThis() const = 0;
    /// Has it opened so, or no longer; done twice it is as done once. Gives the system's words when
    /// it refused.
    virtual std::optional<QString> set(bool on) = 0;
};

} // namespace vorle
