#pragma once

#include "core/Preferences.h"
#include "desktop/ProjectNames.h"
#include "desktop/ShareInbox.h"
#include "search/capture/LinkCapture.h"

#include <QObject>

namespace vorle {

/// What other programs share with the app: takes the links in that they drop, and keeps the names
/// of the projects beside them. Main thread; what it is given outlives it.
class SharedLinks final : public QObject {
    Q_OBJECT
public:
    struct Parts {
        const Preferences &preferences;
        TopicStore &store;
        LinkCapture &capture;
        QString inbox;        ///< the drop folder
        QString projectNames; ///< the file of the names
        DropSignal *signal = nullptr;
    };
    explicit SharedLinks(Parts parts, ShareInbox::Pace pace, QObject *parent = nullptr);
    explicit SharedLinks(Parts parts) : SharedLinks(std::move(parts), ShareInbox::Pace{}) {}
    ~SharedLinks() override;

    /// Looks into the drop folder now.
    void look() { m_inbox.look(); }
    /// Takes no further link; ends once those under way are on disk.
    Task<> stopped();

Q_SIGNALS:
    /// Files were dropped that hold no link; a French sentence.
    void told(const QString &sentence);

private:
    Task<std::optional<QList<ShareInbox::Taken>>> take(QList<ShareInbox::Item> items);

    Parts m_parts;
    ProjectNames m_names;
    ShareInbox m_inbox;
};

} // namespace vorle
