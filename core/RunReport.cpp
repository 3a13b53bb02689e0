#include "core/RunReport.h"

namespace vorle {

namespace {

void count(Yield &yield, const std::function<std::optional<TopicStatus>(const QUuid &)> &statusOf) {
    int present = 0;
    int kept = 0;
    int done = 0;
    for (const QUuid &id : std::as_const(yield.topicIds)) {
        const auto status = statusOf(id);
        present += status ? 1 : 0;
        done += status == TopicStatus::Done ? 1 : 0;
        kept += status == TopicStatus::Done || status == TopicStatus::Program ? 1 : 0;
    }
    if (present > 0) {
        yield.kept = kept;
        yield.done = done;
    }
}

} // namespace

void countYields(RunReport &report,
                 const std::function<std::optional<TopicStatus>(const QUuid &)> &statusOf) {
    for (ScopeReport &scope : report.scopes) {
        if (scope.yield) {
            count(*scope.yield, statusOf);
        }
    }
    if (report.sites) {
        for (SiteReport &site : *report.sites) {
            count(site.yield, statusOf);
        }
    }
}

QList<RunReport>::const_iterator reportOf(const QList<RunReport> &reports, const QDateTime &date) {
    auto found = reports.cend();
    for (auto report = reports.cbegin(); report != reports.cend(); ++report) {
        const bool isLess = found != reports.cend() && found->waits && !report->waits;
        if (report->date == date && !isLess) {
            found = report;
        }
    }
    return found;
}

} // namespace vorle
