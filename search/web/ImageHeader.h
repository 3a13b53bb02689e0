#pragma once

#include <QByteArrayView>

#include <optional>

namespace vorle {

/// The sides of a picture, in pixels.
struct ImageSize {
    int width = 0;
    int height = 0;

    bool operator==(const ImageSize &) const = default;
};

/// What the header of a PNG, JPEG, GIF, WebP or ICO says of its size; an ICO's is
/// the least that holds each of its pictures, whatever its list says of them. Nothing for other
/// bytes, or when the header is not all there. Nothing is decoded: the bytes may come from a
/// stranger. Pure, any thread; time linear in the bytes.
std::optional<ImageSize> imageSize(QByteArrayView bytes);

} // namespace vorle
