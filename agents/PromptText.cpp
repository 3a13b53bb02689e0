#include "agents/PromptText.h"

#include "base/Text.h"

#include <QLocale>

#include <algorithm>

namespace vorle {

namespace {

constexpr qsizetype bytesPerCharacter = 8;

bool breaksLine(char16_t c) {
    return (c >= u'\n' && c <= u'\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
}

} // namespace

QString oneLine(const QString &text, qsizetype maxCharacters) {
    const qsizetype maxBytes = maxCharacters * bytesPerCharacter;
    QString line;
    line.reserve(std::min(text.size(), maxBytes));
    for (const QChar c : utf8Prefix(trimmed(text), maxBytes)) {
        line += c.unicode() < 0x20 || breaksLine(c.unicode()) ? QChar(u' ') : c;
    }
    return firstCharacters(trimmed(line), maxCharacters).toString();
}

QString defused(const QString &text) {
    QString lines;
    lines.reserve(text.size() + 64);
    for (const QChar c : text) {
        lines += breaksLine(c.unicode()) ? QChar(u'\n') : c;
    }
    lines.replace(QStringLiteral("\"\"\""), QStringLiteral("”””"));
    QString out;
    out.reserve(lines.size() + 64);
    for (const QStringView line : QStringView(lines).split(u'\n')) {
        out += trimmed(line).startsWith(u'#') ? QStringLiteral("| ") : QString();
        out += line;
        out += u'\n';
    }
    out.chop(1);
    return out;
}

QString replacedOnce(const QString &instruction, const QList<std::pair<QString, QString>> &values) {
    QString out;
    qsizetype at = 0;
    while (at < instruction.size()) {
        const qsizetype next = instruction.indexOf(u'@', at);
        if (next < 0) {
            break;
        }
        out += QStringView(instruction).sliced(at, next - at);
        const auto rest = QStringView(instruction).sliced(next);
        const auto value = std::find_if(values.begin(), values.end(), [&](const auto &entry) {
            return rest.startsWith(entry.first);
        });
        if (value == values.end()) {
            out += u'@';
            at = next + 1;
        } else {
            out += value->second;
            at = next + value->first.size();
        }
    }
    out += QStringView(instruction).sliced(at);
    return out;
}

QString promptDate(const QDate &date) {
    return QLocale(QLocale::English, QLocale::UnitedStates)
        .toString(date, QStringLiteral("MMMM d, yyyy"));
}

} // namespace vorle
