#include "app/window/pictures/PictureFile.h"

#include "app/window/pictures/DecodingDevice.h"
#include "search/web/ImageBody.h"
#include "search/web/SourceImage.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QSet>

#include <algorithm>
#include <mutex>

namespace vorle {

namespace {

constexpr qint64 headBytes = 256 * 1024; // a JPEG may have long notes before its size

struct Format {
    QByteArrayView begin;
    const char *name;
};
constexpr Format formats[] = {{"\x89PNG", "png"},
                              {"\xFF\xD8\xFF", "jpeg"},
                              {"GIF8", "gif"},
                              {"RIFF", "webp"},
                              {QByteArrayView("\0\0\1\0", 4), "ico"}};

const char *formatOf(QByteArrayView file) {
    const auto *found = std::ranges::find_if(
        formats, [&](const Format &format) { return file.startsWith(format.begin); });
    return found == std::end(formats) ? nullptr : found->name;
}

bool isIco(QByteArrayView file) { return qstrcmp(formatOf(file), "ico") == 0; }

/// Whether this system decodes that form: some of them it may lack.
bool hasDecoder(QByteArrayView file) {
    static const QList<QByteArray> known = QImageReader::supportedImageFormats();
    const char *format = formatOf(file);
    return format != nullptr && known.contains(format);
}

/// The files that could not be decoded. One that is replaced is another file.
class Broken {
public:
    void add(const QString &path) {
        const std::scoped_lock guard(m_lock);
        m_files.insert(stateOf(path));
    }
    bool has(const QString &path) {
        const std::scoped_lock guard(m_lock);
        return !m_files.isEmpty() && m_files.contains(stateOf(path));
    }

private:
    static QString stateOf(const QString &path) {
        const QFileInfo file(path);
        return QStringLiteral("%1 %2 %3")
            .arg(path)
            .arg(file.size())
            .arg(file.lastModified().toMSecsSinceEpoch());
    }

    std::mutex m_lock;
    QSet<QString> m_files;
};

Broken &broken() {
    static Broken files;
    return files;
}

/// Of the pictures in one file the largest.
void takeLargest(QImageReader &reader) {
    constexpr int most = 32;
    int best = 0;
    int width = 0;
    for (int i = 0; i < std::min(reader.imageCount(), most); ++i) {
        if (reader.jumpToImage(i) && reader.size().width() > width) {
            best = i;
            width = reader.size().width();
        }
    }
    reader.jumpToImage(best);
}

/// What of a picture fills `place`, as much as can be, from its middle.
QRect cutFor(QSize place, QSize picture) {
    const QSize cut = place.scaled(picture, Qt::KeepAspectRatio).expandedTo({1, 1});
    return {QPoint((picture.width() - cut.width()) / 2, (picture.height() - cut.height()) / 2),
            cut};
}

/// An icon is made no more than twice as large as it is.
QSize iconSize(QSize icon, QSize place) {
    constexpr qreal part = 0.56; // of its place
    const int side = std::max(1, static_cast<int>(std::min(place.width(), place.height()) * part));
    return icon.scaled(QSize(side, side).boundedTo(2 * icon), Qt::KeepAspectRatio)
        .expandedTo({1, 1});
}

QImage decoded(QImageReader &reader, PictureSort sort, QSize place) {
    const QSize whole = reader.size();
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const auto asItLies = [turned](QSize size) { return turned ? size.transposed() : size; };
    const QSize wanted = sort == PictureSort::Icon ? asItLies(iconSize(whole, place)) : place;
    if (sort != PictureSort::Icon) {
        reader.setClipRect(cutFor(asItLies(place), whole));
    }
    if (reader.format() == "jpeg") { // whose decoder has less to do then
        reader.setScaledSize(asItLies(wanted));
    }
    // Few colours would be dithered where they are scaled as such.
    const QImage picture = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return picture.isNull() || picture.size() == wanted
               ? picture
               : picture.scaled(wanted, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

PictureSort pictureSort(ImageSize size, bool ico) {
    constexpr int largestIcon = 512;
    constexpr int smallDrawing = 200;
    constexpr int bannerWidth = 600;
    constexpr int bannerHeight = 240;
    const int least = std::min(size.width, size.height);
    const int most = std::max(size.width, size.height);
    const bool square = most * 10 <= least * 11;
    if (ico || (square && most <= largestIcon) || least < smallDrawing / 2 || most < smallDrawing) {
        return PictureSort::Icon;
    }
    return size.width >= bannerWidth && size.height >= bannerHeight ? PictureSort::Banner
                                                                    : PictureSort::Drawing;
}

QString keptPicturePath(const QString &file) {
    const bool plain = !file.isEmpty() && QFileInfo(file).fileName() == file;
    return plain ? SourceImage::defaultCacheFolder() + u'/' + file : QString();
}

std::optional<PictureSort> keptPictureSort(const QString &path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray head = file.read(headBytes);
    const auto size = imageSize(head);
    return size ? std::optional(pictureSort(*size, isIco(head))) : std::nullopt;
}

bool canShowPicture(const QString &path) {
    const QByteArray file = isKnownBroken(path) ? QByteArray() : keptPicture(path);
    return hasDecoder(file) && SourceImage::keeps(file) && !decodablePart(file).isEmpty();
}

bool isKnownBroken(const QString &path) { return broken().has(path); }

void rememberBroken(const QString &path) { broken().add(path); }

QImage setPicture(const QByteArray &file, const PictureLook &look,
                  const std::function<bool()> &stopped) {
    if (!SourceImage::keeps(file) || !hasDecoder(file) || look.size.isEmpty()) {
        return {};
    }
    const bool ico = isIco(file);
    const PictureSort sort = pictureSort(*imageSize(file), ico);
    DecodingDevice device(decodablePart(file), stopped);
    QImageReader reader(&device, formatOf(file));
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    if (ico) {
        takeLargest(reader);
    }
    const QSize whole = reader.size();
    if (whole.isEmpty() || !SourceImage::keeps(ImageSize{whole.width(), whole.height()})) {
        return {};
    }
    const QImage picture = decoded(reader, sort, look.size);
    if (picture.isNull() || device.isGivenUp()) {
        return {};
    }
    QImage set(look.size, QImage::Format_ARGB32_Premultiplied);
    set.fill(Qt::transparent);
    QPainter painter(&set);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath place;
    place.addRoundedRect(QRectF(QPointF(), QSizeF(look.size)), look.radius, look.radius);
    if (sort == PictureSort::Icon) {
        painter.fillPath(place, look.ground);
        painter.drawImage((look.size.width() - picture.width()) / 2,
                          (look.size.height() - picture.height()) / 2, picture);
    } else {
        painter.fillPath(place, look.ground); // a picture may let it through
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.drawImage(0, 0, picture);
    }
    if (look.veil.isValid() && sort != PictureSort::Icon) {
        QColor veil = look.veil;
        veil.setAlphaF(PictureLook::veilOpacity);
        painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
        painter.fillRect(set.rect(), veil);
    }
    return set;
}

QByteArray keptPicture(const QString &path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) ||
        file.size() > SourceImage::maxPictureBytes) {
        return {};
    }
    return file.read(SourceImage::maxPictureBytes);
}

} // namespace vorle
