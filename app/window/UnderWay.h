#pragma once

#include <QString>

namespace vorle {

namespace cli {
struct Context;
}
class Application;
class CommandServer;
class DemoProcess;
class MainWindow;
class Shell;

/// All that goes on in the open app.
struct UnderWay {
    Application &app;
    const Shell &shell;
    const MainWindow &main;
    const CommandServer &commands;
    const DemoProcess &demo;

    /// What an end of the program would break off or lose just now, the beginning of a French
    /// sentence: "Une fouille est en cours"; "" for nothing. Main thread.
    /// @param asking  the command that asks, which is none of it; null where none does
    QString text(const cli::Context *asking = nullptr) const;
};

} // namespace vorle
