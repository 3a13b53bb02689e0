#pragma once

#include "core/RunReport.h"

namespace vorle {

/// The reports of the last runs, kept for the report screen: one JSON array, newest last, in
/// "runs.json" beside the topics file. Main thread. See TopicStore::history() for the reports with
/// what became of their topics.
class RunHistory {
public:
    /// More than a year of a run a day; of those past the newest ones only the numbers are kept,
    /// and the names of what was asked.
    static constexpr qsizetype maxReports = 400;
    static constexpr qsizetype maxWholeReports = 60;

    /// The history that lies beside `topicsFile`; a preview's (an empty name) keeps nothing.
    explicit RunHistory(const QString &topicsFile);
    static QString fileName() { return QStringLiteral("runs.json"); }

    /// Oldest first; empty when there is none, or none that can be read.
    QList<RunReport> reports() const;
    /// Puts these reports (none of them changes nothing) in the place of those kept, lets the
    /// oldest ones go, and keeps but the numbers of those past the newest. A failure is logged: a
    /// run is not lost for it. What was read and holds no reports is kept aside first, under the
    /// date of the newest; what the system does not let be read is not replaced.
    void replace(QList<RunReport> reports) const;
    /// The same for the kept reports of these dates alone: the others stay, before these.
    void add(QList<RunReport> reports) const;

private:
    enum class Others { Stay, Go };
    void write(QList<RunReport> all, Others others) const;

    QString m_file;
};

} // namespace vorle
