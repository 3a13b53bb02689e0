#pragma once

#include "core/Preferences.h"
#include "desktop/ProjectNames.h"
#include "desktop/ShareInbox.h"
#include "search/capture/LinkCapture.h"

#include <QObject>

namespace vorle {

/// What other programs share with the app: takes the links in that they drop, and keeps the names
/// of the projects beside them. As long as the topics file is damaged nothing is taken in: the save
/// would replace it unasked. Main thread; what it is given outlives it.
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
    /// What the person has to know of what was dropped; a French sentence.
    void told(const QString &sentence);

private:
    QList<ShareInbox::Taken> take(const QList<ShareInbox::Item> &items);
    void tellOfFiles(qsizetype noLinks, qsizetype tooLarge);

    Parts m_parts;
    bool m_toldOfDamage = false; ///< and held back since
    ProjectNames m_names;
    ShareInbox m_inbox;
};

} // namespace vorle
