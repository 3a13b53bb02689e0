#pragma once

#include <QString>

/// Strangers' words inside Markdown (CommonMark, and what note-taking programs add to it). Pure
/// functions, any thread.
namespace vorle::markdown {

/// Lines that read as the words they are: what would make markup of them is escaped (emphasis,
/// links and pictures, HTML, headings, lists, tables, formulas, tags, comments), so that a page's
/// words load no picture and hide nothing when the note is opened. Signs nobody sees are left out;
/// each line break stays one.
QString plainText(const QString &words);

/// The same on one line.
QString plainLine(const QString &words);

/// A block of code between fences longer than any in it.
QString codeBlock(const QString &code);

/// A link to that address when it is a web link, with `words` as its text; else the words alone.
QString link(const QString &words, const QString &address);

/// A text between quotes, as YAML 1.2 and JSON both read it, on one line.
QString quoted(const QString &words);

/// A name for a file made of a title: ASCII letters in lower case, digits and "-", at most 60
/// characters; "sujet" for a title without any.
QString fileStem(const QString &title);

} // namespace vorle::markdown
