#include "app/triage/SearchFold.h"

#include <array>
#include <cstring>

namespace vorle {

namespace {

/// What becomes of one character: a few bytes of UTF-8.
struct Folded {
    std::array<char, 7> bytes{};
    signed char size = 0;
};

/// What decomposition leaves whole.
QString plainLetters(char32_t c) {
    switch (c) {
    case U'œ':
        return QStringLiteral("oe");
    case U'æ':
        return QStringLiteral("ae");
    case U'ß':
        return QStringLiteral("ss");
    case U'ø':
        return QStringLiteral("o");
    case U'ł':
        return QStringLiteral("l");
    case U'đ':
        return QStringLiteral("d");
    case U'ı':
        return QStringLiteral("i");
    case U'‘':
    case U'’':
    case U'ʼ':
        return QStringLiteral("'");
    case U'\u00AD': // soft hyphen
        return {};
    default:
        return QString::fromUcs4(&c, 1);
    }
}

Folded fold(char32_t c) {
    const QString split =
        QString::fromUcs4(&c, 1).toCaseFolded().normalized(QString::NormalizationForm_KD);
    QString plain;
    for (const char32_t part : split.toUcs4()) {
        if (QChar::category(part) == QChar::Mark_NonSpacing) {
            continue;
        }
        plain += QChar::isSpace(part) ? QStringLiteral(" ") : plainLetters(part);
    }
    const QByteArray utf8 = plain.toUtf8();
    Folded folded;
    if (utf8.size() > static_cast<qsizetype>(folded.bytes.size())) {
        return fold(U' '); // a sign that stands for whole words: nobody types it
    }
    folded.size = static_cast<signed char>(utf8.size());
    std::memcpy(folded.bytes.data(), utf8.constData(), static_cast<std::size_t>(utf8.size()));
    return folded;
}

/// The letters of European languages, worked out once.
constexpr char32_t tableBegin = 0x80;
constexpr char32_t tableEnd = 0x530;

const Folded &tabled(char32_t c) {
    static const auto table = [] {
        std::array<Folded, tableEnd - tableBegin> all;
        for (char32_t each = tableBegin; each < tableEnd; ++each) {
            all[each - tableBegin] = fold(each);
        }
        return all;
    }();
    return table[c - tableBegin];
}

/// The blocks outside the table in which folding changes something.
bool changes(char32_t c) {
    return (c >= 0x1E00 && c < 0x2070) || (c >= 0xFB00 && c < 0xFB07) ||
           (c >= 0xFF00 && c < 0xFFF0) || c == 0x3000;
}

/// The character that begins at `at` and its length; 0 and 1 where there is none.
std::pair<char32_t, qsizetype> characterAt(const uchar *at, const uchar *end) {
    const auto follows = [&](qsizetype n) { return at + n < end && (at[n] & 0xC0) == 0x80; };
    if (*at >= 0xC2 && *at < 0xE0 && follows(1)) {
        return {((*at & 0x1FU) << 6) | (at[1] & 0x3FU), 2};
    }
    if (*at >= 0xE0 && *at < 0xF0 && follows(1) && follows(2)) {
        return {((*at & 0x0FU) << 12) | ((at[1] & 0x3FU) << 6) | (at[2] & 0x3FU), 3};
    }
    if (*at >= 0xF0 && *at < 0xF5 && follows(1) && follows(2) && follows(3)) {
        return {0x10000, 4}; // past the first plane nothing is folded
    }
    return {0, 1};
}

char lowered(uchar c) {
    return static_cast<char>(c - uchar('A') < 26U ? c + 32 : c < 0x20 ? ' ' : c);
}

/// Calls `sink(where, bytes)` for each character that is not ASCII, `ascii(from, to)` for each run
/// of those that are, until one of them gives false.
template <class Ascii, class Sink>
void walk(QByteArrayView utf8, Ascii ascii, Sink sink) {
    const auto *begin = reinterpret_cast<const uchar *>(utf8.data());
    const auto *end = begin + utf8.size();
    for (const auto *at = begin; at < end;) {
        const auto *run = at;
        while (at < end && *at < 0x80) {
            ++at;
        }
        if (at > run && !ascii(run - begin, at - begin)) {
            return;
        }
        if (at == end) {
            return;
        }
        const auto [c, size] = characterAt(at, end);
        QByteArrayView bytes(at, size);
        Folded own;
        if (c >= tableBegin && c < tableEnd) {
            const Folded &folded = tabled(c);
            bytes = QByteArrayView(folded.bytes.data(), folded.size);
        } else if (changes(c)) {
            own = fold(c);
            bytes = QByteArrayView(own.bytes.data(), own.size);
        }
        if (!sink(at - begin, bytes)) {
            return;
        }
        at += size;
    }
}

} // namespace

QByteArray foldedForSearch(QByteArrayView utf8) {
    QByteArray folded;
    folded.reserve(utf8.size());
    walk(
        utf8,
        [&](qsizetype from, qsizetype to) {
            const qsizetype start = folded.size();
            folded.resize(start + to - from);
            char *out = folded.data() + start;
            for (qsizetype i = from; i < to; ++i) {
                *out++ = lowered(static_cast<uchar>(utf8[i]));
            }
            return true;
        },
        [&](qsizetype, QByteArrayView bytes) {
            folded.append(bytes.data(), bytes.size());
            return true;
        });
    return folded;
}

QByteArray foldedForSearch(QStringView text) { return foldedForSearch(text.toUtf8()); }

qsizetype unfoldedOffset(QByteArrayView utf8, qsizetype offset) {
    qsizetype folded = 0;
    qsizetype found = utf8.size();
    walk(
        utf8,
        [&](qsizetype from, qsizetype to) {
            if (offset < folded + to - from) {
                found = from + offset - folded;
                return false;
            }
            folded += to - from;
            return true;
        },
        [&](qsizetype where, QByteArrayView bytes) {
            if (offset < folded + bytes.size()) {
                found = where;
                return false;
            }
            folded += bytes.size();
            return true;
        });
    return found;
}

} // namespace vorle
