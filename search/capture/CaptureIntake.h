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
        Held,  ///< a topic has it already, which took up what it did not know
        NoLink ///< it is no web address
    };
    Kind kind = Kind::NoLink;
    QUuid topic;         ///< null for NoLink
    bool tookUp = false; ///< a topic that has it already learnt something of it
    bool isBack = false; ///< the topic that has it had been set aside, and is to be sorted again
};

/// What becomes of a topic that was judged, and set aside, when its link is handed over again.
enum class SetAside { Stays, Returns };

/// Makes topics of links, in one change of the store: pending, with all that was said of them; a
/// page's text as their `seenText`. One link is one topic, within the list too: what comes with it
/// once more is taken up by that one, whatever its state (see takeUp()).
///
/// One that was set aside before it was read is back, and waits; one that was judged is with
/// SetAside::Returns. But a link that was shared before it was set aside brings nothing back: it is
/// an earlier one that comes late, or a second time. To take in the same links twice, in whatever
/// order, is then the same as once.
///
/// Gives a result for each link, in their order. Main thread.
QList<IntakeResult> captureIntake(TopicStore &store, const QList<CapturedLink> &links,
                                  const QDateTime &now, SetAside setAside);

} // namespace vorle
