#include "search/web/ImageBody.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

constexpr int maxScans = 32;       // encoders make about ten of them
constexpr int maxPackedTexts = 16; // and profiles of colour, which are packed likewise

constexpr QByteArrayView pngBegin("\x89PNG\r\n\x1A\n");
constexpr QByteArrayView jpegBegin("\xFF\xD8\xFF");
constexpr QByteArrayView icoBegin("\0\0\1\0", 4);

quint8 octet(QByteArrayView bytes, qsizetype at) { return static_cast<quint8>(bytes[at]); }

/// Goes over the chunks of a PNG: `use` is given the name and the whole of each, and says whether
/// to go on. False where one runs past the end of the file.
template <class Use>
bool eachChunk(QByteArrayView png, Use use) {
    constexpr qsizetype around = 12; // length, name, checksum
    qsizetype at = pngBegin.size();
    while (at + around <= png.size()) {
        const qsizetype length = qFromBigEndian<quint32>(png.data() + at);
        if (length > png.size() - at - around) {
            return false;
        }
        if (!use(png.sliced(at + 4, 4), png.sliced(at, around + length))) {
            return true;
        }
        at += around + length;
    }
    return at == png.size();
}

int packedTexts(QByteArrayView png) {
    int count = 0;
    eachChunk(png, [&](QByteArrayView name, QByteArrayView) {
        count += name == "zTXt" || name == "iTXt" || name == "iCCP" ? 1 : 0;
        return count <= maxPackedTexts;
    });
    return count;
}

QByteArray plainPng(QByteArrayView png) {
    constexpr std::array<QByteArrayView, 5> wanted{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    QByteArray plain = pngBegin.toByteArray();
    bool pixels = false;
    bool ended = false;
    const bool whole = eachChunk(png, [&](QByteArrayView name, QByteArrayView chunk) {
        if (std::ranges::find(wanted, name) != wanted.end()) {
            plain.append(chunk.data(), chunk.size());
        }
        pixels = pixels || name == "IDAT";
        ended = name == "IEND";
        return !ended;
    });
    return whole && pixels && ended ? plain : QByteArray();
}

/// The scans of a JPEG, counted a little past what is allowed. Segments are passed over by their
/// length, what a scan holds by its markers.
int scansIn(QByteArrayView jpeg) {
    int scans = 0;
    qsizetype at = 2;
    while (at + 1 < jpeg.size() && scans <= maxScans) {
        if (octet(jpeg, at) != 0xFF) {
            const qsizetype next = jpeg.indexOf('\xFF', at);
            at = next < 0 ? jpeg.size() : next;
            continue;
        }
        const quint8 marker = octet(jpeg, at + 1);
        const bool stands = marker == 0x00 || marker == 0x01 || (marker >= 0xD0 && marker <= 0xD9);
        if (marker == 0xFF) { // a fill byte
            ++at;
        } else if (stands) { // alone: no length follows
            at += 2;
        } else {
            scans += marker == 0xDA ? 1 : 0;
            const int length =
                at + 4 <= jpeg.size() ? qFromBigEndian<quint16>(jpeg.data() + at + 2) : 0;
            at += 2 + std::max(length, 2);
        }
    }
    return scans;
}

/// In all of its pictures together, by their names: that some bytes look like one is no matter.
bool isOverloadedIco(QByteArrayView ico) {
    int count = 0;
    for (const QByteArrayView name : {"zTXt", "iTXt", "iCCP"}) {
        for (qsizetype at = ico.indexOf(name); at >= 0 && count <= maxPackedTexts;
             at = ico.indexOf(name, at + name.size())) {
            ++count;
        }
    }
    return count > maxPackedTexts;
}

} // namespace

bool isOverloaded(QByteArrayView picture) {
    if (picture.startsWith(pngBegin)) {
        return packedTexts(picture) > maxPackedTexts;
    }
    if (picture.startsWith(jpegBegin)) {
        return scansIn(picture) > maxScans;
    }
    return picture.startsWith(icoBegin) && isOverloadedIco(picture);
}

QByteArray decodablePart(const QByteArray &picture) {
    if (picture.startsWith(pngBegin)) {
        return plainPng(picture);
    }
    if (picture.startsWith(jpegBegin)) {
        return scansIn(picture) > 0 ? picture : QByteArray();
    }
    if (picture.startsWith("RIFF") && picture.size() >= 8) {
        const quint32 length = qFromLittleEndian<quint32>(picture.data() + 4);
        return qsizetype{length} + 8 <= picture.size() ? picture : QByteArray();
    }
    return picture;
}

} // namespace vorle
