#pragma once

#include "core/Settings.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace vorle {

/// How one scope of a run went.
struct ScopeReport {
    QString name;
    int found = 0;   ///< links brought back
    int known = 0;   ///< of these, held already
    int merged = 0;  ///< of these, the same link as another of this run
    int refused = 0; ///< of these, no web address
    QString error;   ///< the failure's text when the scope failed, else empty
};

/// How a run ended, for whoever shows it.
struct RunReport {
    LastReport last;
    bool cancelled = false;
    bool saved = true; ///< false: the last save failed; the topics are in memory alone
    QList<ScopeReport> scopes;
    QList<QUuid> topics;  ///< the topics added, in the order they were judged
    int read = 0;         ///< pages read whole or in part
    int glimpsed = 0;     ///< pages of which only the title or the description could be read
    int unread = 0;       ///< pages that could not be read
    int unjudged = 0;     ///< candidates the judge gave no answer for
    QStringList warnings; ///< French sentences, to be shown as they are
};

/// A run under way.
struct RunProgress {
    QString status; ///< the status text: the scope started last, then the reading count
    int scopes = 0;
    int scopesDone = 0;
    int candidates = 0;
    int read = 0; ///< candidates whose page was read, or could not be
    int judged = 0;
};

} // namespace vorle
