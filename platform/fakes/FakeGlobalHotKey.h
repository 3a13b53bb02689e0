#pragma once

#include "platform/GlobalHotKey.h"

#include <QList>

namespace vorle::test {

/// A system with one combination to give, or none.
class FakeGlobalHotKey final : public GlobalHotKey {
public:
    State answer = State::Registered; ///< to what is asked for
    QString bound;
    QList<std::optional<KeyCombination>> asked;

    void replace(const std::optional<KeyCombination> &combination) override {
        asked += combination;
        m_state = combination ? answer : State::None;
        tell();
    }
    State state() const override { return m_state; }
    QString boundTo() const override { return bound; }
    void follow(std::function<void()> pressed, std::function<void()> changed) override {
        m_pressed = std::move(pressed);
        m_changed = std::move(changed);
    }

    /// The combination is pressed.
    void press() const {
        if (m_state == State::Registered && m_pressed) {
            m_pressed();
        }
    }
    /// The system says it now.
    void turn(State state) {
        m_state = state;
        tell();
    }

private:
    void tell() const {
        if (m_changed) {
            m_changed();
        }
    }

    State m_state = State::None;
    std::function<void()> m_pressed;
    std::function<void()> m_changed;
};

} // namespace vorle::test
