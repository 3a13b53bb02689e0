#include "app/window/pictures/SourcePictures.h"

#include "app/window/pictures/PictureFile.h"
#include "search/web/SourceImage.h"

#include <QCache>
#include <QStringList>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

namespace vorle {

namespace {

constexpr qsizetype keptBytes = 16 * 1024 * 1024;

struct Asked {
    QString file;
    PictureLook look;
};

/// What is asked for, or nothing where it is not asked as it should be: only a plain name may name
/// a file.
std::optional<Asked> asked(const QString &id, QSize size) {
    const QStringList parts = id.split(u'/');
    if (parts.size() != 4 || parts[3].isEmpty() || parts[3].startsWith(u'.') ||
        parts[3].contains(u'\\') || parts[3].contains(QChar::Null) || size.isEmpty()) {
        return std::nullopt;
    }
    const QSize place = size.boundedTo({PictureLook::mostSide, PictureLook::mostSide});
    constexpr int thousand = 1'000;
    return Asked{parts[3],
                 {.size = place,
                  .radius = std::clamp(parts[2].toInt(), 0, thousand) * place.height() / thousand,
                  .ground = QColor(u'#' + parts[0]),
                  .veil = parts[1] == u"-" ? QColor() : QColor(u'#' + parts[1])}};
}

} // namespace

struct SourcePictures::State {
    explicit State(QString where) : folder(std::move(where)) {}

    const QString folder;
    std::atomic<bool> ending = false;
    std::mutex lock{};
    QCache<QString, QImage> kept{keptBytes}; // under the lock

    QImage of(const QString &key) {
        const std::scoped_lock guard(lock);
        const QImage *image = kept.object(key);
        return image == nullptr ? QImage() : *image;
    }
    void keep(const QString &key, const QImage &image) {
        const std::scoped_lock guard(lock);
        kept.insert(key, new QImage(image), image.sizeInBytes());
    }
};

/// The engine takes a response down when it likes, on its thread.
struct SourcePictures::Waiting {
    std::mutex lock;
    Response *response = nullptr; // under the lock
    bool wanted = true;           // likewise

    bool isWanted() {
        const std::scoped_lock guard(lock);
        return wanted && response != nullptr;
    }
    void give(const QImage &picture);
};

class SourcePictures::Response final : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<Waiting> waiting) : m_waiting(std::move(waiting)) {
        m_waiting->response = this;
    }
    ~Response() override {
        const std::scoped_lock guard(m_waiting->lock);
        m_waiting->response = nullptr;
    }
    /// From its own event loop: the engine listens once it has the response.
    void give(const QImage &picture) {
        m_picture = picture;
        if (m_picture.isNull()) {
            m_picture = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
            m_picture.fill(Qt::transparent);
        }
        QMetaObject::invokeMethod(this, &QQuickImageResponse::finished, Qt::QueuedConnection);
    }
    void cancel() override {
        const std::scoped_lock guard(m_waiting->lock);
        m_waiting->wanted = false;
    }
    QQuickTextureFactory *textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(m_picture);
    }

private:
    std::shared_ptr<Waiting> m_waiting;
    QImage m_picture;
};

void SourcePictures::Waiting::give(const QImage &picture) {
    const std::scoped_lock guard(lock);
    if (response != nullptr) {
        response->give(picture);
    }
}

SourcePictures::SourcePictures(QString folder)
    : m_state(std::make_shared<State>(std::move(folder))) {
    m_pool.setMaxThreadCount(1);
    m_pool.setThreadPriority(QThread::LowPriority);
}

SourcePictures::SourcePictures() : SourcePictures(SourceImage::defaultCacheFolder()) {}

SourcePictures::~SourcePictures() {
    m_state->ending = true;
    m_pool.clear();
}

/// Nobody waits for it, or it cannot be shown: null. That it cannot be decoded is remembered.
QImage SourcePictures::decoded(State &state, Waiting &waiting, const QString &file,
                               const PictureLook &look) {
    const QString path = state.folder + u'/' + file;
    const auto stopped = [&] { return state.ending || !waiting.isWanted(); };
    if (stopped() || isKnownBroken(path)) {
        return {};
    }
    try {
        const QByteArray bytes = keptPicture(path);
        const QImage picture = setPicture(bytes, look, stopped);
        if (picture.isNull() && !bytes.isEmpty() && !stopped()) {
            rememberBroken(path);
        }
        return picture;
    } catch (const std::bad_alloc &) {
        return {};
    }
}

QQuickImageResponse *SourcePictures::requestImageResponse(const QString &id,
                                                          const QSize &requested) {
    const auto waiting = std::make_shared<Waiting>();
    auto *response = new Response(waiting);
    const auto wanted = asked(id, requested);
    const QString key =
        id + QStringLiteral("@%1x%2").arg(requested.width()).arg(requested.height());
    const QImage kept = wanted ? m_state->of(key) : QImage();
    if (!wanted || !kept.isNull()) {
        response->give(kept);
        return response;
    }
    m_pool.start([state = m_state, waiting, asked = *wanted, key] {
        const QImage picture = decoded(*state, *waiting, asked.file, asked.look);
        if (!picture.isNull()) {
            state->keep(key, picture);
        }
        waiting->give(picture);
    });
    return response;
}

} // namespace vorle
