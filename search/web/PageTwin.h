#pragma once

#include "search/web/PageText.h"

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace vorle {

/// The same thing as a page shows, offered by its own site as JSON: sites that build their pages by
/// script or turn programs away publish it for them.
struct PageTwin {
    enum class Use {
        Instead, ///< it says all that the page says: asked first
        Unread   ///< it says less: asked where the page itself could not be read
    };

    QUrl address;
    Use use = Use::Instead;
    /// What the answer says; ReadLevel::None when it is not what it should be. Pure, any thread;
    /// takes time linear in the bytes.
    PageText (*read)(const QByteArray &body) = nullptr;
};

/// The twin of the page at `link`, where there is one: a package's page on npm (its registry
/// document), a thread on Reddit (".json"), a video on YouTube (oEmbed), a release or the releases
/// of a repository on GitHub (the notes as they were written). Pure.
std::optional<PageTwin> twinOf(const QUrl &link);

/// What to ask when `twin` was too long to be read whole; nothing for most.
std::optional<PageTwin> shorterTwin(const QUrl &link);

} // namespace vorle
