#pragma once

#include "agents/TemporaryFiles.h"
#include "app/wiring/Application.h"
#include "tests/support/Program.h"
#include "tests/support/Settle.h"
#include "tests/support/Variables.h"
#include "tests/support/Wait.h"

namespace vorle::test {

/// The app's objects in this process, on the files of a Program: what runs there reaches this app.
/// At its end whatever writes, reads or runs is stopped and waited for: a coroutine that nothing
/// resumes would be lost with all that it holds.
class AppInProcess {
public:
    AppInProcess() {
        for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR",
                                 "VORLE_HOME", "VORLE_STORE", "VORLE_SETTINGS"}) {
            variables.set(name, program.environment.value(QString::fromLatin1(name)));
        }
        variables.keep("TMPDIR");
        preparePrivateTemporaryDirectory(); // as the program does: the app's socket lies there
        m_app = std::make_unique<Application>(Application::Setup{});
    }
    ~AppInProcess() {
        m_app->engine().stop();
        m_app->briefs().stop();
        m_app->capture().stop();
        settle([this] {
            return m_app->engine().phase() == SearchEngine::Phase::Idle &&
                   !m_app->briefs().running() && !m_app->capture().running();
        });
        waitFor(m_app->published());
    }
    AppInProcess(const AppInProcess &) = delete;
    AppInProcess &operator=(const AppInProcess &) = delete;

    Application &operator*() const { return *m_app; }
    Application *operator->() const { return m_app.get(); }

    Program program;
    Variables variables;

private:
    std::unique_ptr<Application> m_app;
};

} // namespace vorle::test
