#pragma once

#include "search/run/RunPlan.h"

#include <QDateTime>
#include <QSet>
#include <QString>

namespace vorle {

/// The items of trusted sites' feeds that a screening passed over, so that no later run pays for
/// them again: the last thousand, in "screened.json" beside the topics file. They were passed over
/// for one territory: with another project, topic or tool all may be looked at anew. Never worth a
/// run: what cannot be read or written is logged, and screened again. A file that was read and
/// holds no such items is kept aside before it is replaced; one that the system does not let be
/// read is not replaced. Main thread.
class ScreenedItems {
public:
    static constexpr qsizetype maxItems = 1'000;

    /// What lies beside `topicsFile`; a preview's (an empty name) keeps nothing.
    explicit ScreenedItems(const QString &topicsFile);
    static QString fileName() { return QStringLiteral("screened.json"); }

    /// The links passed over for the territory of this request (as canonicalLink()).
    QSet<QString> passedOver(const SitesRequest &request) const;
    /// Adds those passed over just now, at `now`.
    void add(const SitesRequest &request, const QSet<QString> &links, const QDateTime &now) const;

private:
    QString m_file;
};

} // namespace vorle
