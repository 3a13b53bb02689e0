#include "desktop/FeedbackPicture.h"

#include "base/Descriptor.h"
#include "base/French.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <fcntl.h>
#include <sys/stat.h>

#include <array>

namespace vorle {

namespace {

constexpr QSize smallSize(168, 112);
constexpr qint64 mostPoints = 40'000'000;

/// The bytes of an ordinary file, one more than the limit at most; nothing where it is none.
std::optional<QByteArray> bytesOf(const QString &path) {
    // A pipe that nobody writes to would hold it up for ever.
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat state{};
    if (!file.isOpen() || ::fstat(file.number(), &state) != 0 || !S_ISREG(state.st_mode)) {
        return std::nullopt;
    }
    QByteArray bytes;
    std::array<char, 65536> piece{};
    while (bytes.size() <= FeedbackPicture::mostBytes) {
        const auto got = ::read(file.number(), piece.data(), piece.size());
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            return bytes;
        }
        bytes.append(piece.data(), got);
    }
    return bytes;
}

/// What a file says it is by its first bytes, where it is one of those that are taken.
QByteArray formatOf(const QByteArray &bytes) {
    return bytes.startsWith("\x89PNG\r\n\x1A\n")                      ? "png"
           : bytes.startsWith("\xFF\xD8\xFF")                         ? "jpeg"
           : bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a") ? "gif"
           : bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP"    ? "webp"
                                                                      : QByteArray();
}

} // namespace

QImage smallOf(const QImage &image) {
    return image.width() > smallSize.width() || image.height() > smallSize.height()
               ? image.scaled(smallSize, Qt::KeepAspectRatio, Qt::SmoothTransformation)
               : image;
}

std::variant<FeedbackPicture, QString> readPicture(const QString &path) {
    const auto bytes = bytesOf(path);
    if (!bytes) {
        return French::tr("Je n’ai pas pu lire ce fichier.");
    }
    if (bytes->size() > FeedbackPicture::mostBytes) {
        return French::tr("Cette image est trop lourde\u00A0: 10 Mo au plus.");
    }
    const QByteArray format = formatOf(*bytes);
    if (format.isEmpty()) {
        return French::tr(
            "Ce n’est pas une image que je peux joindre\u00A0: PNG, JPEG, GIF ou WebP.");
    }
    QByteArray content = *bytes;
    QBuffer buffer(&content);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || qint64(size.width()) * size.height() > mostPoints) {
        return French::tr("Je n’arrive pas à lire cette image.");
    }
    if (size.width() > smallSize.width() || size.height() > smallSize.height()) {
        reader.setScaledSize(size.scaled(smallSize, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    }
    const QImage small = reader.read();
    if (small.isNull()) {
        return French::tr("Je n’arrive pas à lire cette image.");
    }
    const QString suffix =
        format == "jpeg" ? QStringLiteral(".jpg") : u'.' + QString::fromLatin1(format);
    return FeedbackPicture{QFileInfo(path).fileName(), suffix, *bytes, small};
}

FeedbackPicture pictureOf(const QImage &image, const QString &name) {
    FeedbackPicture picture{name, QStringLiteral(".png"), {}, smallOf(image), true};
    QBuffer buffer(&picture.bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return picture;
}

} // namespace vorle
