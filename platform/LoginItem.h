#pragma once

#include "base/Async.h"

#include <QString>

#include <optional>

namespace vorle {

/// Whether the system opens the program when its user's session begins, hidden in the menu bar.
/// Main thread, which waits for no disk; outlives every question under way.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    enum class State {
        Off,
        On,
        Held,   ///< asked for, and the system waits for the person's leave
        Astray, ///< asked for, and what the system would open is not there: asked anew, it is
                ///< mended
        Absent  ///< this copy of the program cannot be opened so
    };

    /// The system's own answer, asked for at each call.
    virtual Task<State> state() = 0;
    /// What the person can do where the state is Held, Astray or Absent; "" elsewhere.
    virtual QString remedy(State state) const = 0;
    /// Whether it opened this process, where the system says that and no argument does; known once
    /// the event loop turns.
    virtual bool openedThis() const = 0;
    /// Has it opened so, or no longer; done twice it is as done once. Gives the system's words when
    /// it refused.
    virtual Task<std::optional<QString>> set(bool on) = 0;
};

} // namespace vorle
