#include "platform/DesktopExec.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// An argument between double quotes.
QString quoted(const QString &argument) {
    constexpr QStringView special = u"\"`$\\";
    QString text(u'"');
    for (const QChar c : argument) {
        if (special.contains(c)) {
            text += u'\\';
        } else if (c == u'%') {
            text += u'%'; // else a field code
        }
        text += c;
    }
    return text + u'"';
}

} // namespace

QString desktopValue(const QString &text) {
    QString value;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'\\':
            value += QStringLiteral("\\\\");
            break;
        case u'\n':
            value += QStringLiteral("\\n");
            break;
        case u'\r':
            value += QStringLiteral("\\r");
            break;
        case u'\t':
            value += QStringLiteral("\\t");
            break;
        default:
            value += c;
        }
    }
    return value;
}

QString desktopText(const QString &value) {
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        const QChar escaped = value[++i];
        text += escaped == u's'   ? QChar(u' ')
                : escaped == u'n' ? QChar(u'\n')
                : escaped == u'r' ? QChar(u'\r')
                : escaped == u't' ? QChar(u'\t')
                                  : escaped;
    }
    return text;
}

QString desktopExecWord(const QString &text) {
    const bool breaks = std::any_of(text.begin(), text.end(), [](QChar c) { return c < u' '; });
    return breaks ? QString() : desktopValue(quoted(text));
}

QString desktopExec(const QStringList &command) {
    QStringList words = command;
    // Desktops look for the program by the word as it stands, and the rules forbid "=" in it.
    if (const QString &program = command.first();
        program.contains(u'%') || program.contains(u'=')) {
        words = QStringList{QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                            QStringLiteral("exec \"$0\" \"$@\"")} +
                command;
    }
    QStringList arguments;
    for (const QString &argument : std::as_const(words)) {
        arguments += quoted(argument);
    }
    return desktopValue(arguments.join(u' '));
}

QStringList desktopExecWords(const QString &value) {
    const QString line = desktopText(value);
    QStringList words;
    QString word;
    bool within = false; // a word
    bool quotes = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        const bool more = i + 1 < line.size();
        if (c == u'"') {
            quotes = !quotes;
            within = true;
        } else if (quotes && c == u'\\' && more) {
            word += line[++i];
        } else if (c == u'%' && more) {
            if (line[++i] == u'%') {
                word += u'%';
                within = true;
            }
        } else if (!quotes && (c == u' ' || c == u'\t' || c == u'\n')) {
            if (std::exchange(within, false)) {
                words += std::exchange(word, QString());
            }
        } else {
            word += c;
            within = true;
        }
    }
    return within ? words + QStringList{word} : words;
}

} // namespace vorle
