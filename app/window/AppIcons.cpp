#include "app/window/AppIcons.h"

#include "base/OnDisk.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QUrl>
#include <QtEndian>

#include <algorithm>
#include <mutex>

namespace vorle {

namespace {

constexpr qint64 maxIconFileBytes = 4 * 1024 * 1024; // an ICNS holds ten sizes
constexpr qsizetype maxDrawingBytes = 512 * 1024;
constexpr int largestSide = 1024; // of what is read
constexpr int mostAsked = 128;    // of what is shown
constexpr std::chrono::milliseconds iconPatience{500};
/// Fewer than the disk's threads: one that waits for a thread would count as unanswered.
constexpr int maxAtOnce = 4;
/// After so many without an answer the disk is left alone.
constexpr int mostUnanswered = 3;

constexpr QByteArrayView pngMark("\x89PNG\r\n\x1a\n", 8);

int bigEndian(QByteArrayView bytes, qsizetype at) {
    return at + 4 <= bytes.size()
               ? static_cast<int>(qFromBigEndian<quint32>(bytes.data() + at) & 0x7fffffff)
               : 0;
}

/// The width that a PNG says it has.
int widthOf(QByteArrayView png) { return bigEndian(png, 16); }

/// Of the PNGs in an ICNS the smallest that is large enough, else the largest; empty for none.
QByteArray pngInside(QByteArrayView icns, int side) {
    QByteArrayView best;
    for (qsizetype at = 8; at + 8 <= icns.size();) {
        const qsizetype length = bigEndian(icns, at + 4);
        if (length < 8 || length > icns.size() - at) {
            break;
        }
        const QByteArrayView entry = icns.sliced(at + 8, length - 8);
        if (entry.startsWith(pngMark)) {
            const bool nearer =
                best.isEmpty() ||
                (widthOf(best) < side ? widthOf(entry) > widthOf(best)
                                      : widthOf(entry) >= side && widthOf(entry) < widthOf(best));
            best = nearer ? entry : best;
        }
        at += length;
    }
    return best.toByteArray();
}

bool isDrawing(QByteArrayView file) {
    const QByteArrayView begin = file.first(std::min<qsizetype>(file.size(), 1024));
    return file.size() <= maxDrawingBytes && begin.trimmed().startsWith('<') &&
           file.indexOf("<svg") >= 0 && file.indexOf("<!ENTITY") < 0;
}

QByteArray readFile(const QString &path) {
    QFile file(path);
    // A pipe or a device must not hold the thread up.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly) ||
        file.size() > maxIconFileBytes) {
        return {};
    }
    return file.read(maxIconFileBytes);
}

} // namespace

QImage iconPicture(const QByteArray &file, int side) {
    QByteArray picture = file.startsWith("icns") ? pngInside(file, side) : file;
    const bool isPng = picture.startsWith(pngMark);
    if (!isPng && !isDrawing(picture)) {
        return {};
    }
    QBuffer buffer(&picture);
    QImageReader reader(&buffer, isPng ? "png" : "svg");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || std::max(size.width(), size.height()) > largestSide) {
        return {};
    }
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

/// What is asked, and how it went.
struct AppIcons::Source {
    const InstalledApps &apps;
    const QString theme;
    int unanswered = 0; // this and the next on the main thread alone
    Gate gate{maxAtOnce};
};

/// The engine takes a response down when it likes, on its thread.
struct AppIcons::Waiting {
    std::mutex lock;
    Response *response = nullptr; // under the lock
};

class AppIcons::Response final : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<Waiting> waiting) : m_waiting(std::move(waiting)) {
        m_waiting->response = this;
    }
    ~Response() override {
        const std::scoped_lock guard(m_waiting->lock);
        m_waiting->response = nullptr;
    }
    void give(const QImage &picture) {
        m_picture = picture;
        Q_EMIT finished();
    }
    QQuickTextureFactory *textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(m_picture);
    }

private:
    std::shared_ptr<Waiting> m_waiting;
    QImage m_picture;
};

AppIcons::AppIcons(const InstalledApps &apps, QString theme)
    : m_source(new Source{.apps = apps, .theme = std::move(theme)}) {}

QQuickImageResponse *AppIcons::requestImageResponse(const QString &id, const QSize &requested) {
    const int side = std::clamp(requested.width(), 16, mostAsked);
    const QString icon = QUrl::fromPercentEncoding(id.toUtf8());
    const auto waiting = std::make_shared<Waiting>();
    auto *response = new Response(waiting);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [source = m_source, waiting, icon, side] {
            detach(answer(source, waiting, icon, side), QStringLiteral("reading an icon"));
        },
        Qt::QueuedConnection);
    return response;
}

Task<> AppIcons::answer(std::shared_ptr<Source> source, std::shared_ptr<Waiting> waiting,
                        QString icon, int side) {
    QImage found;
    const Gate::Permit permit = co_await source->gate.enter();
    if (source->unanswered < mostUnanswered) {
        const auto picture = co_await onDisk(
            [&apps = source->apps, theme = source->theme, icon, side] {
                const QString path = apps.iconFile(icon, theme, side);
                return path.isEmpty() ? QImage() : iconPicture(readFile(path), side);
            },
            iconPatience);
        source->unanswered += picture ? 0 : 1;
        found = picture.value_or(QImage());
    }
    if (found.isNull()) {
        found = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        found.fill(Qt::transparent);
    }
    const std::scoped_lock guard(waiting->lock);
    if (waiting->response != nullptr) {
        waiting->response->give(found);
    }
}

} // namespace vorle
