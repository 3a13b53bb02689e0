#include "search/web/ImageHeader.h"

#include <QtEndian>

#include <algorithm>

namespace vorle {

namespace {

using Size = std::optional<ImageSize>;

quint8 byteAt(QByteArrayView bytes, qsizetype at) { return static_cast<quint8>(bytes[at]); }

int big16(QByteArrayView bytes, qsizetype at) { return qFromBigEndian<quint16>(bytes.data() + at); }

int little16(QByteArrayView bytes, qsizetype at) {
    return qFromLittleEndian<quint16>(bytes.data() + at);
}

quint32 little32(QByteArrayView bytes, qsizetype at) {
    return qFromLittleEndian<quint32>(bytes.data() + at);
}

int little24(QByteArrayView bytes, qsizetype at) {
    return little16(bytes, at) | byteAt(bytes, at + 2) << 16;
}

constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1A\n");

Size ofPng(QByteArrayView bytes) {
    if (bytes.size() < 33 || bytes.sliced(12, 4) != "IHDR") {
        return std::nullopt;
    }
    const auto width = qFromBigEndian<quint32>(bytes.data() + 16);
    const auto height = qFromBigEndian<quint32>(bytes.data() + 20);
    constexpr quint32 most = 0x7FFFFFFF; // by the format's own rule
    return width > most || height > most
               ? Size()
               : ImageSize{static_cast<int>(width), static_cast<int>(height)};
}

Size ofGif(QByteArrayView bytes) {
    return bytes.size() < 13 ? Size() : ImageSize{little16(bytes, 6), little16(bytes, 8)};
}

/// A JPEG is a chain of segments; the one that begins a frame has the size.
Size ofJpeg(QByteArrayView bytes) {
    qsizetype at = 2;
    while (at + 9 < bytes.size() && byteAt(bytes, at) == 0xFF) {
        const quint8 marker = byteAt(bytes, at + 1);
        if (marker == 0xFF) { // a fill byte
            ++at;
            continue;
        }
        const bool frame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) {
            return ImageSize{big16(bytes, at + 7), big16(bytes, at + 5)};
        }
        const int length = big16(bytes, at + 2);
        if (marker == 0xDA || marker == 0xD9 || length < 2) { // data or end before any frame
            return std::nullopt;
        }
        at += 2 + length;
    }
    return std::nullopt;
}

Size ofWebp(QByteArrayView bytes) {
    if (bytes.size() < 30) {
        return std::nullopt;
    }
    const QByteArrayView form = bytes.sliced(12, 4);
    if (form == "VP8X") {
        return ImageSize{little24(bytes, 24) + 1, little24(bytes, 27) + 1};
    }
    if (form == "VP8L" && byteAt(bytes, 20) == 0x2F) {
        const quint32 sides = little32(bytes, 21);
        return ImageSize{static_cast<int>(sides & 0x3FFF) + 1,
                         static_cast<int>(sides >> 14 & 0x3FFF) + 1};
    }
    if (form == "VP8 " && bytes.sliced(23, 3) == "\x9D\x01\x2A") {
        return ImageSize{little16(bytes, 26) & 0x3FFF, little16(bytes, 28) & 0x3FFF};
    }
    return std::nullopt;
}

/// The size of one picture of an ICO: a PNG, or a bitmap whose height counts twice, for its mask.
/// What has neither header is of the size it is listed with, where a side of 0 means 256.
Size ofIcoPicture(QByteArrayView picture, int listedWidth, int listedHeight) {
    if (picture.startsWith(pngSignature)) {
        return ofPng(picture);
    }
    ImageSize size{listedWidth == 0 ? 256 : listedWidth, listedHeight == 0 ? 256 : listedHeight};
    if (picture.size() >= 12 && little32(picture, 0) >= 40) {
        const quint32 width = little32(picture, 4);
        const quint32 height = little32(picture, 8) / 2;
        constexpr quint32 most = 0x7FFFFFFF;
        if (width > most) {
            return std::nullopt;
        }
        size.width = std::max(size.width, static_cast<int>(width));
        size.height = std::max(size.height, static_cast<int>(height));
    }
    return size;
}

/// An ICO lists its pictures, 16 bytes each.
Size ofIco(QByteArrayView bytes) {
    const int count = bytes.size() < 6 ? 0 : little16(bytes, 4);
    Size all;
    for (int i = 0; i < count; ++i) {
        const qsizetype at = 6 + qsizetype{16} * i;
        if (at + 16 > bytes.size() ||
            quint64{little32(bytes, at + 12)} + little32(bytes, at + 8) > quint64(bytes.size())) {
            return std::nullopt;
        }
        const Size one =
            ofIcoPicture(bytes.sliced(little32(bytes, at + 12), little32(bytes, at + 8)),
                         byteAt(bytes, at), byteAt(bytes, at + 1));
        if (!one) {
            return std::nullopt;
        }
        const ImageSize before = all.value_or(ImageSize{});
        all = ImageSize{std::max(before.width, one->width), std::max(before.height, one->height)};
    }
    return all;
}

} // namespace

std::optional<ImageSize> imageSize(QByteArrayView bytes) {
    if (bytes.startsWith(pngSignature)) {
        return ofPng(bytes);
    }
    if (bytes.startsWith("\xFF\xD8\xFF")) {
        return ofJpeg(bytes);
    }
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) {
        return ofGif(bytes);
    }
    if (bytes.startsWith("RIFF") && bytes.size() >= 12 && bytes.sliced(8, 4) == "WEBP") {
        return ofWebp(bytes);
    }
    if (bytes.startsWith(QByteArrayView("\0\0\1\0", 4))) {
        return ofIco(bytes);
    }
    return std::nullopt;
}

} // namespace vorle
