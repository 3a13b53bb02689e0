#pragma once

#include "platform/LinkOpener.h"

namespace vorle {

/// The default browser as the desktop knows it. Needs a QGuiApplication.
class QtLinkOpener final : public LinkOpener {
private:
    bool openInBrowser(const QUrl &address) override;
};

} // namespace vorle
