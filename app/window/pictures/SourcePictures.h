#pragma once

#include <QQuickImageProvider>
#include <QThreadPool>

#include <memory>

namespace vorle {

struct PictureLook;

/// The pictures of sources, for QML: "image://pictures/GROUND/VEIL/RADIUS/FILE", each as
/// `PictureLook` has it: two colours as "efe8dd" ("-" for no veil), thousandths of the height, and
/// the name of a file in the picture cache. Nothing is fetched here. What cannot be shown is
/// one pixel that nobody sees.
///
/// They are decoded on one thread of its own, so that a screen full of them holds up neither frames
/// nor memory. One that nobody waits for any more is given up, at its end all are; one that cannot
/// be decoded is not tried again. The last ones set are kept, up to 16 MB; an `Image` of them keeps
/// none beside (`cache: false`).
class SourcePictures final : public QQuickAsyncImageProvider {
public:
    explicit SourcePictures(QString folder);
    /// Over the user's own picture cache.
    SourcePictures();
    ~SourcePictures() override;

    /// By the engine, on a thread of its own.
    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requested) override;

private:
    struct State;
    struct Waiting;
    class Response;

    static QImage decoded(State &state, Waiting &waiting, const QString &file,
                          const PictureLook &look);

    std::shared_ptr<State> m_state;
    QThreadPool m_pool; ///< last: it waits for what it does, which ends soon
};

} // namespace vorle
