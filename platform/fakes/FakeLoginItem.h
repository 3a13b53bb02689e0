#pragma once

#include "platform/LoginItem.h"

namespace vorle::test {

/// A session that says what it is told to say.
class FakeLoginItem final : public LoginItem {
public:
    State now = State::Off;
    std::optional<QString> refusal{}; ///< what it answers when it is set

    Task<State> state() override { co_return now; }
    QString remedy(State state) const override {
        return state == State::Held || state == State::Astray ? QStringLiteral("Allow it there.")
                                                              : QString();
    }
    bool openedThis() const override { return false; }
    Task<std::optional<QString>> set(bool on) override {
        if (!refusal) {
            now = on ? State::On : State::Off;
        }
        co_return refusal;
    }
};

} // namespace vorle::test
