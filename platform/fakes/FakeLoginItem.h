#pragma once

#include "platform/LoginItem.h"

namespace vorle::test {

/// A session that says what it is told to say.
class FakeLoginItem final : public LoginItem {
public:
    State now = State::Off;
    std::optional<QString> refusal{}; ///< what it answers when it is set

    State state() const override { return now; }
    QString remedy() const override {
        return now == State::Held ? QStringLiteral("Allow it there.") : QString();
    }
    bool openedThis() const override { return false; }
    std::optional<QString> set(bool on) override {
        if (!refusal) {
            now = on ? State::On : State::Off;
        }
        return refusal;
    }
};

} // namespace vorle::test
