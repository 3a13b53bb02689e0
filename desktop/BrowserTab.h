#pragma once

#include "base/Async.h"
#include "base/WebLink.h"

#include <QString>

#include <optional>

namespace vorle {

class FrontBrowser;
class Pasteboard;

/// The page that the person looks at in their browser, for quick capture to propose. Safari, Google
/// Chrome and Arc tell it; Firefox does not, so that there the link on the pasteboard stands for
/// it. Where the system lets no program see another's window at all, the pasteboard's link is
/// proposed whatever is in front. Main thread; what it is given outlives it and its answers.
class BrowserTab {
public:
    struct Page {
        QString title; ///< may be empty
        QString address;
        QString from; ///< "Safari", "Presse-papiers"

        bool operator==(const Page &) const = default;
    };
    struct Proposal {
        std::optional<Page> page;
        QString hint; ///< what the person can do to have one proposed, in French; may be empty

        bool operator==(const Proposal &) const = default;
    };

    /// `browser`: null where the system tells nothing of the application in front.
    BrowserTab(FrontBrowser *browser, const Pasteboard &pasteboard)
        : m_browser(browser), m_pasteboard(pasteboard) {}

    /// Whether there are browsers that tell.
    bool asksBrowsers() const { return m_browser != nullptr; }
    /// Which application is in front: to be asked before a window of ours is.
    QString frontApp() const;
    /// What is proposed where that application is in front.
    Task<Proposal> read(QString frontApp) const;
    /// The same again, without asking the browser: a link may have been copied meanwhile.
    Proposal readPasteboard(const QString &frontApp) const;

private:
    FrontBrowser *m_browser;
    const Pasteboard &m_pasteboard;
};

} // namespace vorle
