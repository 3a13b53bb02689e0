#pragma once

#include "base/WebLink.h"

namespace vorle {

/// The user's default browser. Main thread.
class LinkOpener {
public:
    virtual ~LinkOpener() = default;

    /// False when the system did not take it. Links come from strangers, and a file or a mail is no
    /// page: nothing but a web link can be handed over.
    bool open(const WebLink &link) { return openInBrowser(link.url()); }

private:
    virtual bool openInBrowser(const QUrl &address) = 0;
};

} // namespace vorle
