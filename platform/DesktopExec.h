#pragma once

#include <QString>
#include <QStringList>

namespace vorle {

/// How texts stand in a desktop entry (Desktop Entry Specification 1.5). Pure.

/// A text as the value of a key: its line breaks, tabs and backslashes as escapes.
QString desktopValue(const QString &text);

/// What the value of a key says: the other way round.
QString desktopText(const QString &value);

/// `text` as one word of the key "Exec", quoted as the standard asks: nothing in it is read as a
/// field code, a shell's sign or an escape. Not for what holds a line break or the like, which few
/// desktops take there: the word is empty then.
QString desktopExecWord(const QString &text);

/// A command, its program first, as the key "Exec": every argument as it is, whatever it holds but
/// a zero. A program whose path an entry cannot hold is started by a shell that has it as an
/// argument.
QString desktopExec(const QStringList &command);

/// The words of a key "Exec", its program first, as a desktop reads them: the other way round.
/// Field codes, which stand for files, are left out.
QStringList desktopExecWords(const QString &value);

} // namespace vorle
