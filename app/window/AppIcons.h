#pragma once

#include "base/Async.h"
#include "platform/InstalledApps.h"

#include <QByteArray>
#include <QQuickImageProvider>

#include <memory>

namespace vorle {

/// A picture out of a file that anybody may have put on this machine, at most `side` pixels high
/// and wide: a PNG, an SVG where the system reads them, or the PNG in an ICNS. Null for anything
/// else, and for what is larger than an icon ever is. Pure, any thread.
QImage iconPicture(const QByteArray &file, int side);

/// The icons of the apps on this machine, for QML: "image://apps/ICON", ICON being InstalledApp's,
/// percent-encoded. One pixel that nobody sees where there is none. Asked off the main thread; a
/// disk that does not answer is given up.
class AppIcons final : public QQuickAsyncImageProvider {
public:
    /// @param apps   outlives the application's event loop
    /// @param theme  what the desktop's icon theme is called; may be empty
    AppIcons(const InstalledApps &apps, QString theme);

    /// By the engine, on a thread of its own; answered from the main thread's event loop.
    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requested) override;

private:
    struct Source;
    struct Waiting;
    class Response;

    static Task<> answer(std::shared_ptr<Source> source, std::shared_ptr<Waiting> waiting,
                         QString icon, int side);

    std::shared_ptr<Source> m_source;
};

} // namespace vorle
