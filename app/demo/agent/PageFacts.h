#pragma once

#include "app/demo/agent/PromptReader.h"
#include "app/demo/agent/Tie.h"
#include "core/Judgment.h"

namespace vorle::demo {

/// What can be told from one candidate's text by its words alone.
struct PageFacts {
    bool unread = false;   ///< nothing could be read
    bool steering = false; ///< speaks to the grader instead of the reader
    bool hype = false;
    bool french = true;
    bool flaw = false; ///< a security flaw
    bool exploited = false;
    bool breaking = false;
    int figures = 0; ///< numbers in the text: precise pages have many
    QStringList versions;
    QString deadline;       ///< a date after today to act by, as year-month-day, or empty
    QString deadlineReason; ///< French
    QString lead;           ///< the first paragraph
    QString step;           ///< the last sentence that says what to do, or empty
    QString heading;        ///< a heading of the page, or empty
    QStringList changes;    ///< lines that say what changes
    Tie tie;
};

PageFacts readFacts(const BlockRead &block, const ProfileRead &profile, const QDate &today);

/// The first sentences of `text` that fit in `characters`; its beginning when none does.
QString firstSentences(const QString &text, qsizetype characters);

} // namespace vorle::demo
