#pragma once

#include <QString>

namespace vorle {

/// A first step taken apart around the command that it quotes, if it quotes one.
struct StepParts {
    QString before;  ///< the whole step when there is no command
    QString command; ///< as it is typed: plain ASCII, on one line; empty for none
    QString after;

    bool operator==(const StepParts &) const = default;
};

/// Finds the first command in a step as it is shown. A command stands between « », “ ”, plain
/// quotes or backquotes, or is the whole step; it begins with a program that developers start by
/// hand (or "./"), has a word after it, and at most 200 characters. In `before` and `after` the
/// quotes around it are left out: whoever shows it sets it in another face.
///
/// It may come from a page, and one press copies it: nothing is taken for a command that holds a
/// sign that cannot be seen or typed, or that hands something on to another program or file (a
/// pipe, a redirection, a substitution, ";" or a single "&", and options that have curl write a
/// file or an interpreter run what stands in the command). Programs that erase or ask for the
/// administrator's rights are not known here. Linear; pure, any thread.
StepParts stepParts(const QString &step);

} // namespace vorle
