#pragma once

#include "platform/KeyCombination.h"

#include <functional>
#include <optional>

namespace vorle {

/// One key combination that reaches the program from whatever application is in front. Main thread.
class GlobalHotKey {
public:
    enum class State {
        None,       ///< none is asked for
        Asked,      ///< the system has not answered yet, or asks the person
        Registered, ///< it works
        Taken,      ///< another program has it
        Unavailable ///< this system gives none to this program
    };

    virtual ~GlobalHotKey() = default;

    /// Asks the system for that combination, in place of the one before, which is given back first;
    /// nothing: for none.
    virtual void replace(const std::optional<KeyCombination> &combination) = 0;
    virtual State state() const = 0;
    /// What the system calls the combination where it, or the person, chose another than was asked
    /// for; "" where it is that one.
    virtual QString boundTo() const { return {}; }

    /// `pressed` is called once each time the combination is pressed, however long it is held;
    /// `changed` when the state has changed, also from within `replace`. Until the next call; empty
    /// ones stop it.
    virtual void follow(std::function<void()> pressed, std::function<void()> changed) = 0;
};

} // namespace vorle
