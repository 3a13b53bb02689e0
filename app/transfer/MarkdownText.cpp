#include "app/transfer/MarkdownText.h"

#include "app/labels/Wording.h"
#include "base/Json.h"
#include "base/Text.h"
#include "base/WebLink.h"

#include <algorithm>

namespace vorle::markdown {

namespace {

/// Escaped wherever they stand.
constexpr QStringView alwaysMarkup = u"\\`*[]<|~$";

bool isWord(QChar c) { return c.isLetterOrNumber(); }

/// How many characters of a line's beginning make it a heading, a list or a ruler, the one to be
/// escaped last; 0 when none do.
qsizetype blockMarkSize(QStringView line) {
    if (line.isEmpty()) {
        return 0;
    }
    if (QStringView(u"#>+-=:").contains(line.front())) {
        return 1;
    }
    qsizetype digits = 0;
    while (digits < line.size() && line[digits] >= u'0' && line[digits] <= u'9') {
        ++digits;
    }
    const bool numbered =
        digits > 0 && digits < line.size() && (line[digits] == u'.' || line[digits] == u')');
    return numbered ? digits + 1 : 0;
}

bool isMarkup(QStringView line, qsizetype at) {
    const QChar c = line[at];
    const QChar before = at > 0 ? line[at - 1] : QChar(u' ');
    const QChar after = at + 1 < line.size() ? line[at + 1] : QChar(u' ');
    if (alwaysMarkup.contains(c)) {
        return true;
    }
    if (c == u'_') {
        return !isWord(before) || !isWord(after);
    }
    if (c == u'#') { // a tag
        return isBlank(before.unicode()) && !isBlank(after.unicode());
    }
    if (c == u'&') { // an entity
        return after == u'#' || isWord(after);
    }
    if (c == u'^') { // the name of a block
        return isBlank(before.unicode());
    }
    return (c == u'=' || c == u'%') && (before == c || after == c);
}

QString escapedLine(QStringView given) {
    const QStringView line = trimmed(given); // blanks at the beginning would make it code
    const qsizetype mark = blockMarkSize(line);
    QString out;
    out.reserve(line.size() + line.size() / 8);
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (i + 1 == mark || isMarkup(line, i)) {
            out += u'\\';
        }
        out += line[i];
    }
    return out;
}

} // namespace

QString plainText(const QString &words) {
    QStringList lines;
    for (const QString &line : shownWords(words).split(u'\n')) {
        lines += escapedLine(line);
    }
    return lines.join(u'\n').trimmed();
}

QString plainLine(const QString &words) { return escapedLine(shownWords(words).simplified()); }

QString codeBlock(const QString &code) {
    const QString text = withoutHidden(code).trimmed();
    qsizetype longest = 2;
    qsizetype run = 0;
    for (const QChar c : text) {
        run = c == u'`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    const QString fence(longest + 1, u'`');
    return fence + u'\n' + text + u'\n' + fence;
}

QString link(const QString &words, const QString &address) {
    const auto web = WebLink::from(address, WebLink::Giver::User);
    QString text = plainLine(words);
    if (!web) {
        return text;
    }
    if (text.isEmpty()) {
        text = escapedLine(web->text());
    }
    return QStringLiteral("[%1](<%2>)").arg(text, web->text());
}

QString quoted(const QString &words) {
    return QString::fromUtf8(json::encode(withoutHidden(words).simplified()));
}

QString fileStem(const QString &title) {
    constexpr qsizetype longest = 60;
    QString stem;
    for (const QChar c : title.normalized(QString::NormalizationForm_KD).toLower()) {
        if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9')) {
            stem += c;
        } else if (!c.isMark() && !stem.isEmpty() && !stem.endsWith(u'-')) {
            stem += u'-';
        }
        if (stem.size() > longest) {
            // Cut where a word ends, unless it is one long word.
            const qsizetype end = stem.lastIndexOf(u'-');
            stem.truncate(end > longest / 2 ? end : longest);
            break;
        }
    }
    while (stem.endsWith(u'-')) {
        stem.chop(1);
    }
    return stem.isEmpty() ? QStringLiteral("sujet") : stem;
}

} // namespace vorle::markdown
