#pragma once

#include "platform/Terminals.h"

#include <functional>

namespace vorle::test {

/// Terminals that a test scripts.
class FakeTerminals final : public Terminals {
public:
    /// What `command` answers.
    std::function<std::optional<TerminalCommand>(const QString &, const TerminalSession &)> answer;
    LoginShells loginShells{QStringLiteral("/bin/sh"), QStringLiteral("/bin/sh")};

    LoginShells shells() const override { return loginShells; }
    QStringList names() const override {
        return {QStringLiteral("Terminal"), QStringLiteral("Ghostty")};
    }
    std::optional<TerminalCommand> command(const QString &terminal,
                                           const TerminalSession &session) const override {
        return answer(terminal, session);
    }
};

} // namespace vorle::test
