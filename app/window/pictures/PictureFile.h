#pragma once

#include "search/web/ImageHeader.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

#include <functional>
#include <optional>

namespace vorle {

/// What a kept picture can be shown as.
enum class PictureSort {
    Icon,    ///< a site's sign: square or small; it stands whole in the middle of its place
    Drawing, ///< it fills a small place
    Banner   ///< it fills a place as wide as a page, too
};

/// By its sides, and whether it is of the format that holds icons alone. Pure.
PictureSort pictureSort(ImageSize size, bool ico);

/// Where a file of the user's own picture cache lies; "" where its name would lead elsewhere.
QString keptPicturePath(const QString &file);
/// The sort of the picture kept in that file; nothing where there is none, or none that is known.
/// Reads the file's first bytes: for the one topic that is being opened, not for a list.
std::optional<PictureSort> keptPictureSort(const QString &path);
/// Whether the picture kept in that file can be shown, as far as that is known without decoding it:
/// this system decodes its form, it is all there, and it was not found broken. Reads all of it.
bool canShowPicture(const QString &path);
/// Whether that file, as it is now, was found to be none that can be decoded; and to say so. Known
/// while the program runs. Any thread.
bool isKnownBroken(const QString &path);
void rememberBroken(const QString &path);

/// How a picture is to be set. In pixels of the screen.
struct PictureLook {
    QSize size;    ///< of its place, which it fills wholly
    int radius;    ///< of the place's corners, which are left transparent
    QColor ground; ///< behind an icon
    QColor veil;   ///< laid over it thinly, so that it is no lamp on dark paper; invalid for none

    static constexpr int mostSide = 4'096;
    static constexpr float veilOpacity = 0.14F;
};

/// A kept picture, cut and scaled to its place; null where its bytes are none that `SourceImage`
/// keeps, or cannot be decoded. Its header is looked at before anything is decoded; what is decoded
/// has at most the pixels that `SourceImage` allows, of what else it holds a decoder is given
/// nothing (`decodablePart`), and one that takes three seconds of work is given up.
/// @param stopped  asked now and then, on the same thread: once it is true, null is given soon.
/// Pure, any thread. @throws std::bad_alloc
QImage setPicture(const QByteArray &file, const PictureLook &look,
                  const std::function<bool()> &stopped = {});

/// The whole file; empty where it cannot be read, is no plain file, or is larger than what is ever
/// kept. Any thread.
QByteArray keptPicture(const QString &path);

} // namespace vorle
