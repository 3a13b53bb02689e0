#include "search/web/Charset.h"

#include <QString>
#include <QStringDecoder>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

constexpr qsizetype metaSearchBytes = 4'096;
constexpr qsizetype binarySearchBytes = 1'024;

/// Where Windows-1252 differs from the first 256 code points: 0x80 to 0x9F.
constexpr std::array<char16_t, 32> windows1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QByteArray fromWindows1252(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        if (c >= u'\u0080' && c <= u'\u009F') {
            c = windows1252[c.unicode() - 0x80];
        }
    }
    return text.toUtf8();
}

/// Without the beginnings of a character whose end was cut off.
QByteArrayView withoutCutCharacter(QByteArrayView bytes) {
    for (qsizetype back = 1; back <= std::min<qsizetype>(3, bytes.size()); ++back) {
        const auto byte = static_cast<quint8>(bytes[bytes.size() - back]);
        if (byte >= 0xC0) {
            const qsizetype length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
            return length > back ? bytes.chopped(back) : bytes;
        }
        if (byte < 0x80) {
            break;
        }
    }
    return bytes;
}

QByteArray fromUtf8OrWindows1252(QByteArrayView bytes) {
    const QByteArrayView whole = withoutCutCharacter(bytes);
    if (whole.isValidUtf8()) {
        return QByteArray::fromRawData(whole.data(), whole.size());
    }
    const QString text = QString::fromUtf8(whole);
    const auto failed = text.count(QChar::ReplacementCharacter);
    const auto foreign =
        std::count_if(text.begin(), text.end(), [](QChar c) { return c >= u'\u0080'; });
    return failed > foreign - failed ? fromWindows1252(bytes) : text.toUtf8();
}

/// The word behind "charset=" in `text`, in lower case; empty without one.
QByteArray charsetIn(QByteArrayView text) {
    const QByteArray lower = QByteArray(text.data(), text.size()).toLower();
    for (auto at = lower.indexOf("charset"); at >= 0; at = lower.indexOf("charset", at + 1)) {
        QByteArrayView rest = QByteArrayView(lower).sliced(at + 7).trimmed();
        if (!rest.startsWith('=')) {
            continue;
        }
        rest = rest.sliced(1).trimmed();
        if (rest.startsWith('"') || rest.startsWith('\'')) {
            rest = rest.sliced(1);
        }
        const auto end = std::find_if(rest.begin(), rest.end(), [](char c) {
            return (c < 'a' || c > 'z') && (c < '0' || c > '9') && c != '-' && c != '_' &&
                   c != '.' && c != ':';
        });
        return QByteArray(rest.data(), end - rest.begin());
    }
    return {};
}

QByteArray charsetInMeta(QByteArrayView page) {
    const QByteArray head =
        QByteArray(page.data(), std::min(page.size(), metaSearchBytes)).toLower();
    for (auto at = head.indexOf("<meta"); at >= 0; at = head.indexOf("<meta", at + 1)) {
        const auto end = head.indexOf('>', at);
        const QByteArray charset =
            charsetIn(QByteArrayView(head).sliced(at, std::max(end, at) - at));
        if (!charset.isEmpty()) {
            // Bytes in which "<meta" could be read are no UTF-16, whatever they say.
            return charset.startsWith("utf-16") ? QByteArray("utf-8") : charset;
        }
    }
    return {};
}

QByteArray decodeAs(QByteArrayView bytes, const QByteArray &charset) {
    constexpr std::array<QByteArrayView, 6> latin{"iso-8859-1", "iso8859-1", "latin1",
                                                  "us-ascii",   "ascii",     "windows-1252"};
    if (std::find(latin.begin(), latin.end(), charset) != latin.end()) {
        return fromWindows1252(bytes);
    }
    if (!charset.isEmpty() && charset != "utf-8" && charset != "utf8") {
        QStringDecoder decoder(charset.constData());
        if (decoder.isValid()) {
            const QString text = decoder(bytes);
            return text.toUtf8();
        }
    }
    return fromUtf8OrWindows1252(bytes);
}

/// Whether the bytes are UTF-8 and could hardly be anything else: beyond ASCII, and without the
/// signs by which encodings of seven or sixteen bits say the same.
bool isUtf8ForSure(QByteArrayView bytes) {
    const QByteArrayView whole = withoutCutCharacter(bytes);
    const bool foreign = std::any_of(whole.begin(), whole.end(),
                                     [](char c) { return static_cast<quint8>(c) >= 0x80; });
    return foreign && !whole.contains('\0') && !whole.contains('\x1B') && whole.isValidUtf8();
}

QByteArray decodeBytes(QByteArrayView bytes, QByteArrayView contentType) {
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        return fromUtf8OrWindows1252(bytes.sliced(3));
    }
    if (bytes.startsWith("\xFF\xFE")) {
        return decodeAs(bytes, "utf-16le");
    }
    if (bytes.startsWith("\xFE\xFF")) {
        return decodeAs(bytes, "utf-16be");
    }
    if (isUtf8ForSure(bytes)) {
        return fromUtf8OrWindows1252(bytes);
    }
    const QByteArray charset = charsetIn(contentType);
    return decodeAs(bytes, charset.isEmpty() ? charsetInMeta(bytes) : charset);
}

} // namespace

std::optional<QByteArray> decodeText(QByteArrayView bytes, QByteArrayView contentType) {
    QByteArray text = decodeBytes(bytes, contentType);
    const qsizetype null = text.indexOf('\0');
    if (null >= 0 && null < binarySearchBytes) {
        return std::nullopt;
    }
    if (null >= 0) {
        text.replace('\0', QByteArrayView()); // some servers send their buffer's end along
    }
    return text;
}

} // namespace vorle
