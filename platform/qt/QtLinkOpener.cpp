#include "platform/qt/QtLinkOpener.h"

#include <QDesktopServices>

namespace vorle {

bool QtLinkOpener::openInBrowser(const QUrl &address) { return QDesktopServices::openUrl(address); }

} // namespace vorle
