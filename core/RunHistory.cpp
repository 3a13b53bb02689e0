#include "core/RunHistory.h"

#include "base/Log.h"
#include "storage/BesideTopics.h"
#include "storage/DurableFile.h"

#include <algorithm>
#include <utility>

namespace vorle {

RunHistory::RunHistory(const QString &topicsFile) : m_file(sidecarPath(topicsFile, fileName())) {}

namespace {

/// @throws std::system_error, json::DecodeError
QList<RunReport> readReports(const QString &file) {
    const auto bytes = file.isEmpty() ? std::nullopt : readWhole(file);
    return bytes ? json::decode<QList<RunReport>>(*bytes) : QList<RunReport>();
}

/// What a year's figures are made of stays; what only somebody reads who opens the report goes. A
/// yield without its topics stays as it was counted last.
void keepNumbersOf(RunReport &report) {
    for (ScopeReport &scope : report.scopes) {
        if (scope.yield) {
            scope.yield->topicIds.clear();
        }
    }
    if (report.sites) {
        for (SiteReport &site : *report.sites) {
            site.yield.topicIds.clear();
        }
    }
    report.unjudged.clear();
    report.notNewer.clear();
    report.feeds.clear();
    report.surplus.reset();
    report.warnings.clear();
    report.topicIds.clear();
}

} // namespace

QList<RunReport> RunHistory::reports() const {
    try {
        return readReports(m_file);
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the reports of past runs could not be read: ") +
                QString::fromUtf8(error.what()));
        return {};
    }
}

void RunHistory::replace(QList<RunReport> all) const { write(std::move(all), Others::Go); }

void RunHistory::add(QList<RunReport> reports) const { write(std::move(reports), Others::Stay); }

void RunHistory::write(QList<RunReport> all, Others others) const {
    if (m_file.isEmpty() || all.isEmpty()) {
        return;
    }
    try {
        QList<RunReport> kept =
            replaceable<QList<RunReport>>(m_file, all.last().date).value_or(QList<RunReport>());
        kept.removeIf([&](const RunReport &report) {
            return others == Others::Go || std::ranges::any_of(all, [&](const RunReport &other) {
                       return other.date == report.date;
                   });
        });
        all = kept + all;
        // A press on the same button again tells nothing new, and must not push out real reports.
        for (qsizetype i = all.size() - 1; i > 0; --i) {
            if (!all[i].hasBegun() && !all[i - 1].hasBegun() &&
                all[i].failed == all[i - 1].failed) {
                all.remove(i - 1);
            }
        }
        all = all.last(std::min(maxReports, all.size()));
        for (qsizetype i = 0; i < all.size() - maxWholeReports; ++i) {
            keepNumbersOf(all[i]);
        }
        replaceWhole(m_file, json::encode(all, json::Style::Pretty) + '\n');
    } catch (const std::exception &error) {
        logLine(QStringLiteral("the report of the run could not be kept: ") +
                QString::fromUtf8(error.what()));
    }
}

} // namespace vorle
