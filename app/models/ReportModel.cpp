#include "app/models/ReportModel.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "base/WebLink.h"

#include <algorithm>

namespace vorle {

namespace {

QList<ReportLine> scopesOf(const RunReport &report) {
    QList<ReportLine> lines;
    for (const ScopeReport &scope : report.scopes) {
        lines += ReportLine{shownWords(scopeName(scope)), shownWords(scopeText(scope)),
                            scopeRemark(scope), scope.failed()};
    }
    return lines;
}

/// Links that were not judged: those set apart are told one by one among the notices. A flood of
/// them tells no more than its beginning.
QList<ReportLine> linksOf(const RunReport &report) {
    constexpr qsizetype maxShown = 30;
    QList<ReportLine> lines;
    const auto add = [&lines](const QList<DroppedLink> &links) {
        for (const DroppedLink &link : links) {
            if (lines.size() < maxShown) {
                lines += ReportLine{
                    shownWords(link.title.isEmpty() ? WebLink::shown(link.url) : link.title),
                    {},
                    shownWords(link.reason),
                    false};
            }
        }
    };
    add(report.unjudged);
    add(report.surplus.value_or(QList<DroppedLink>()));
    return lines;
}

QStringList noticesOf(const RunReport &report) {
    QStringList notices = runNotices(report);
    for (QString &notice : notices) {
        notice = shownWords(notice);
    }
    return notices;
}

} // namespace

ReportModel::ReportModel(RunHistory history, const Clock &clock, const LocalZone &zone,
                         QObject *parent)
    : QAbstractListModel(parent), m_history(std::move(history)), m_clock(clock), m_zone(zone) {
    refresh();
}

void ReportModel::refresh() {
    QList<RunReport> reports = m_history.reports();
    std::ranges::reverse(reports);
    // What is read on goes on being read: a run that ended comes before the others.
    const qsizetype fresh = reports.size() - m_reports.size();
    if (fresh >= 0 && reports.sliced(fresh) == m_reports) {
        if (fresh == 0) {
            return;
        }
        beginInsertRows({}, 0, static_cast<int>(fresh) - 1);
        m_reports = std::move(reports);
        endInsertRows();
    } else {
        beginResetModel();
        m_reports = std::move(reports);
        endResetModel();
    }
    Q_EMIT rowsChanged();
}

void ReportModel::toggle(int row) {
    const QModelIndex cell = index(row);
    if (!cell.isValid()) {
        return;
    }
    const QDateTime &date = m_reports.at(row).date;
    if (!m_open.remove(date)) {
        m_open.insert(date);
    }
    Q_EMIT dataChanged(cell, cell, {Open});
}

int ReportModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ReportModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const RunReport &report = m_reports.at(index.row());
    switch (role) {
    case DateText:
        return tr("%1 à %2").arg(dayText(report.date, m_clock.now(), m_zone),
                                 timeText(report.date, m_zone));
    case AddedText:
        return countedTopics(report.added);
    case FactsText:
        return runFactsText(report);
    case Scopes:
        return variants(scopesOf(report));
    case Pages:
        return pagesText(report);
    case Links:
        return variants(linksOf(report));
    case Notices:
        return noticesOf(report);
    case Problem:
        return problemText(report);
    case Open:
        return m_open.contains(report.date);
    default:
        return {};
    }
}

QHash<int, QByteArray> ReportModel::roleNames() const {
    return {{DateText, "dateText"}, {AddedText, "addedText"}, {FactsText, "factsText"},
            {Scopes, "scopes"},     {Pages, "pages"},         {Notices, "notices"},
            {Links, "links"},       {Problem, "problem"},     {Open, "open"}};
}

} // namespace vorle
