#pragma once

#include "base/WebLink.h"
#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// A link that somebody hands over, with what they say of it.
struct CapturedLink {
    QString url;
    QString title = {}; ///< as the user or the sharing app has it; may be empty
    QString note = {};
    std::optional<QString> project = {};
    QString pageText = {}; ///< what the sharing app saw of the page; may be empty
    /// When another program handed it over. Such a link is a stranger's: as long as it waits it is
    /// held to what strangers' links may be, and may not lead to this machine.
    std::optional<QDateTime> sharedAt = {};
};

/// What became of a link that was handed over.
struct IntakeResult {
    enum class Kind {
        New,   ///< a topic was made of it, or is back that was taken back unread: it waits
        Held,  ///< a topic has it already; see captureIntake()
        NoLink ///< it is no web address
    };
    Kind kind = Kind::NoLink;
    QUuid topic; ///< null for NoLink
};

/// Whether a topic that has a link already takes up what came with it once more.
enum class HeldTopics { StayAsTheyAre, TakeItUp };

/// Makes topics of links, in one change of the store: pending, with all that was said of them; a
/// page's text as their `seenText`. One link is one topic, within the list too.
///
/// With HeldTopics::TakeItUp a topic that has the link already takes up what it did not know: the
/// note is put under its own, the project where it has none; one that was set aside is back. To
/// take in the same link twice is then the same as once.
///
/// Gives a result for each link, in their order. Main thread.
QList<IntakeResult> captureIntake(TopicStore &store, const QList<CapturedLink> &links,
                                  const QDateTime &now, HeldTopics held);

} // namespace vorle
