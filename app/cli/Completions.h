#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vorle::cli {

/// The shells that a script can be made for: "bash", "fish", "zsh".
const QStringList &completedShells();

/// A script that has a shell complete vorle's commands, their options and the words these take, as
/// the command table has them; nothing for any other shell. UTF-8 text, ending in a line break:
/// for bash and fish to be sourced or put where they look for completions of "vorle"; for zsh a
/// file "_vorle" on `fpath`.
std::optional<QString> completionScript(const QString &shell);

} // namespace vorle::cli
