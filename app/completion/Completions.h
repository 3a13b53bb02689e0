#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// A command as a shell is told of it.
struct CompletedCommand {
    QString name;
    QString synopsis; ///< what follows the name in the help: "[ajouter DOSSIER | retirer NOM]"
    QString summary;
    QStringList flags;   ///< "json"
    QStringList options; ///< those that take a value
};

/// The shells that a script can be made for: "bash", "fish", "zsh".
const QStringList &completedShells();

/// A script that has a shell complete vorle's commands, their options and the words these take, as
/// they are given; nothing for any other shell. UTF-8 text, ending in a line break: for bash and
/// fish to be sourced or put where they look for completions of "vorle"; for zsh a file "_vorle" on
/// `fpath`.
std::optional<QString> completionScript(const QString &shell,
                                        const QList<CompletedCommand> &commands);

} // namespace vorle
