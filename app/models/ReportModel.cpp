#include "app/models/ReportModel.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"

#include <algorithm>

namespace vorle {

namespace {

QVariantList scopesOf(const RunReport &report) {
    QList<NamedText> list;
    for (const ScopeReport &scope : report.scopes) {
        list.append({.name = shownWords(scopeName(scope)),
                     .text = shownWords(scopeText(scope)),
                     .failed = scope.failed()});
    }
    return variants(list);
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
    beginResetModel();
    m_reports = std::move(reports);
    endResetModel();
    Q_EMIT rowsChanged();
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
        return scopesOf(report);
    case Notices:
        return noticesOf(report);
    case Stopped:
        return report.cancelled;
    case Failed:
        return report.failed.has_value();
    default:
        return {};
    }
}

QHash<int, QByteArray> ReportModel::roleNames() const {
    return {{DateText, "dateText"}, {AddedText, "addedText"}, {FactsText, "factsText"},
            {Scopes, "scopes"},     {Notices, "notices"},     {Stopped, "stopped"},
            {Failed, "failed"}};
}

} // namespace vorle
