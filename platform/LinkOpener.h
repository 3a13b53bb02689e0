#pragma once

#include <QUrl>

namespace vorle {

/// The user's default browser. Main thread.
class LinkOpener {
public:
    virtual ~LinkOpener() = default;

    /// Opens an http or https address; false when the system did not take it. Any other address is
    /// refused: links come from strangers, and a file or a mail is no page.
    bool open(const QUrl &address) {
        const bool isPage = address.isValid() && !address.host().isEmpty() &&
                            (address.scheme() == u"http" || address.scheme() == u"https");
        return isPage && openInBrowser(address);
    }

private:
    virtual bool openInBrowser(const QUrl &address) = 0;
};

} // namespace vorle
