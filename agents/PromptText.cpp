#include "agents/PromptText.h"

#include "base/Text.h"

#include <QLocale>

#include <algorithm>
#include <iterator>

namespace vorle {

namespace {

constexpr qsizetype bytesPerCharacter = 8;

bool breaksLine(char32_t c) {
    return (c >= U'\n' && c <= U'\r') || (c >= 0x1C && c <= 0x1E) || c == 0x85 || c == 0x2028 ||
           c == 0x2029;
}

/// Control characters, and the one sign that is drawn as a blank without being one.
bool drawnBlank(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0) || c == 0x2800; }

/// Drawn as nothing: marks of direction, tags, fillers, joiners (Unicode's Default_Ignorable).
bool isInvisible(char32_t c) {
    struct Range {
        char32_t first;
        char32_t last;
    };
    static constexpr Range ranges[] = {{0xAD, 0xAD},       {0x34F, 0x34F},    {0x61C, 0x61C},
                                       {0x115F, 0x1160},   {0x17B4, 0x17B5},  {0x180B, 0x180F},
                                       {0x200B, 0x200F},   {0x202A, 0x202E},  {0x2060, 0x206F},
                                       {0x3164, 0x3164},   {0xFE00, 0xFE0F},  {0xFEFF, 0xFEFF},
                                       {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},  {0x1BCA0, 0x1BCA3},
                                       {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};
    return c >= ranges[0].first &&
           std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const Range &range) { return c >= range.first && c <= range.last; });
}

/// Scripts and emoji are written with joiners and variants, and only behind a sign of their own.
bool belongsTo(QChar before, char32_t c) {
    const bool joins = c == 0x200C || c == 0x200D || (c >= 0xFE00 && c <= 0xFE0F);
    return joins && before.unicode() >= 0x80 && !before.isPunct() && !before.isSpace() &&
           before.category() != QChar::Letter_Modifier;
}

/// Drawn as whatever a font likes: no agent can know what a reader saw.
bool isPrivate(char32_t c) {
    return (c >= 0xE000 && c <= 0xF8FF) || c >= 0xF0000 || (c & 0xFFFEU) == 0xFFFE ||
           (c >= 0xFDD0 && c <= 0xFDEF);
}

bool looksLikeQuote(char32_t c) {
    return (c < 0x10000 && QStringView(u"\"\u00A8\u02BA\u02DD\u02EE\u02F5\u02F6\u05F4\u1CD3"
                                       u"“”„‟″‴‶‷⁗❝❞❠⹂〃〝〞〟\uFF02")
                               .contains(QChar(static_cast<char16_t>(c)))) ||
           (c >= 0x1F676 && c <= 0x1F678);
}

bool looksLikeBackquote(char32_t c) {
    return c < 0x10000 &&
           QStringView(u"`\u02CB\u1FEF\u2035\uFF40").contains(QChar(static_cast<char16_t>(c)));
}

bool looksLikeHash(char32_t c) {
    return c < 0x10000 && QStringView(u"#\u22D5\u2317\u266F\u2A68\u2A69\uFE5F\uFF03")
                              .contains(QChar(static_cast<char16_t>(c)));
}

bool isPairAt(QStringView text, qsizetype at) {
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

/// What a reader sees of `text`: every line break as '\n', no other control character, nothing
/// invisible, nothing that only a font of its own draws.
QString visible(QStringView text) {
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool pair = isPairAt(text, i);
        const char32_t c =
            pair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : char32_t{text[i].unicode()};
        if (c == U'\r' && i + 1 < text.size() && text[i + 1] == u'\n') {
            continue;
        }
        if (breaksLine(c)) {
            out += u'\n';
        } else if (c != U'\t' && drawnBlank(c)) {
            out += u' ';
        } else if (!isPrivate(c) &&
                   (!isInvisible(c) || (!out.isEmpty() && belongsTo(out.back(), c)))) {
            out += text.sliced(i, pair ? 2 : 1);
        }
        i += pair ? 1 : 0;
    }
    return out;
}

char32_t codePointAt(QStringView text, qsizetype at) {
    return isPairAt(text, at) ? QChar::surrogateToUcs4(text[at], text[at + 1])
                              : char32_t{text[at].unicode()};
}

/// What is drawn over the sign before it, or not at all.
bool isAccent(char32_t c) { return QChar::isMark(c) || c == 0x200C || c == 0x200D; }

/// Signs of one look in a row, their accents apart.
struct Run {
    qsizetype end; ///< behind the last sign and its accents
    int signs;
};

template <class Look>
Run runAt(QStringView text, qsizetype at, Look look) {
    Run run{at, 0};
    while (run.end < text.size()) {
        const char32_t c = codePointAt(text, run.end);
        const bool sign = look(c);
        if (!sign && (run.signs == 0 || !isAccent(c))) {
            break;
        }
        run.signs += sign ? 1 : 0;
        run.end += c >= 0x10000 ? 2 : 1;
    }
    return run;
}

/// Three signs or more in a row that could be taken for a fence become apostrophes.
template <class Look>
QString withoutFences(QStringView text, Look look) {
    QString out;
    qsizetype copied = 0;
    for (qsizetype at = 0; at < text.size();) {
        const char16_t c = text[at].unicode();
        if (c < 0x80 && c != u'"' && c != u'`') { // nearly all there is
            ++at;
            continue;
        }
        const Run run = runAt(text, at, look);
        if (run.signs >= 3) {
            out += text.sliced(copied, at - copied);
            out += QString(run.signs, u'\'');
            copied = run.end;
        }
        at = std::max(run.end, at + (isPairAt(text, at) ? 2 : 1));
    }
    out += text.sliced(copied);
    return out;
}

QString withoutQuoteFences(QStringView text) { return withoutFences(text, looksLikeQuote); }

bool looksLikeHeading(QStringView line) {
    qsizetype at = 0;
    while (at < line.size() && (isBlank(line[at].unicode()) || isAccent(codePointAt(line, at)))) {
        at += isPairAt(line, at) ? 2 : 1;
    }
    return at < line.size() && looksLikeHash(codePointAt(line, at));
}

} // namespace

QString oneLine(const QString &text, qsizetype maxCharacters) {
    QString line = visible(text);
    line.replace(u'\n', u' ').replace(u'\t', u' ');
    line = withoutFences(withoutQuoteFences(line), looksLikeBackquote);
    return firstCharacters(utf8Prefix(trimmed(line), maxCharacters * bytesPerCharacter),
                           maxCharacters)
        .toString();
}

QString escapedForPrompt(const QString &text) {
    const QString lines = withoutQuoteFences(visible(text));
    QString out;
    out.reserve(lines.size() + 64);
    for (const QStringView line : QStringView(lines).split(u'\n')) {
        out += looksLikeHeading(line) ? QStringLiteral("| ") : QString();
        out += line;
        out += u'\n';
    }
    out.chop(1);
    return out;
}

QString fencedForPrompt(const QString &text) {
    // A file's own marks of direction, or line breaks that only some readers know, are no text of
    // an ordinary file; its tabs and line ends are.
    QString held;
    held.reserve(text.size());
    for (const char32_t c : text.toUcs4()) {
        const bool control =
            c != U'\t' && c != U'\n' && c != U'\r' && (drawnBlank(c) || breaksLine(c));
        if (control) {
            held += u' ';
        } else if (!isPrivate(c) &&
                   (!isInvisible(c) || (!held.isEmpty() && belongsTo(held.back(), c)))) {
            held += QStringView(QChar::fromUcs4(c));
        }
    }
    int longest = 2;
    for (qsizetype at = 0; at < held.size();) {
        const Run run = runAt(held, at, looksLikeBackquote);
        longest = std::max(longest, run.signs);
        at = std::max(run.end, at + 1);
    }
    const QString fence(longest + 1, u'`');
    return fence + u'\n' + held + u'\n' + fence;
}

qsizetype promptSize(QStringView text) { return utf8Size(text) + 3 * text.count(u'@'); }

QStringView promptPrefix(QStringView text, qsizetype maxBytes) {
    qsizetype size = 0;
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype units = isPairAt(text, at) ? 2 : 1;
        size += promptSize(text.sliced(at, units));
        if (size > maxBytes) {
            break;
        }
        at += units;
    }
    return text.first(at);
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
