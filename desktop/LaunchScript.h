#pragma once

#include "platform/Terminals.h"

#include <QString>

namespace vorle {

/// An agent's session in a terminal, by absolute paths.
struct LaunchPlan {
    QString agent;      ///< the executable
    QString folder;     ///< where it works
    QString promptFile; ///< its first message, as UTF-8
    QString scriptFile; ///< where the script will lie
};

/// The session in both forms a terminal may take. The script removes itself and clears the window.
/// Then, in both: the prompt is read and its file removed, the folder entered, and the agent run
/// with its own folder in front of the search path and the prompt as its one argument. If a step
/// fails its message stays in the window and the agent does not run. Whatever happens, an
/// interrupt included, the window stays a login shell of the user's. Nothing a path may hold is
/// read by the shell. Pure; gives the text of the script, and the line.
struct LaunchTexts {
    QString script;
    QString line;
};
LaunchTexts launchTexts(const LaunchPlan &plan, const LoginShells &shells);

} // namespace vorle
