#pragma once

#include "core/Topic.h"

namespace vorle {

/// What comes with a link that somebody hands over, held to its sizes already. Each may be empty.
struct Handover {
    QString title;
    QString note;
    QString project;
    QByteArray pageText; ///< what another program saw of the page, in UTF-8
};

/// Has a topic that has the link take up what came with it this time, and what it did not know:
/// - the note, always: on lines of its own under what stands there;
/// - the project where it has none, and the page's text where that is longer than what it has, as
///   long as nobody has decided on the topic (it is pending, or in the inbox). A judgment that was
///   made without them stays: the text serves the reading note and the search;
/// - the title, where the link is still to be read and has none.
///
/// What stands behind a decision is left as it was when that was taken, so one that was decided on
/// takes the note alone. Nothing that the user wrote is replaced. To take the same up once more
/// changes nothing. Gives whether anything changed. Pure.
bool takeUp(Topic &topic, const Handover &handed);

} // namespace vorle
