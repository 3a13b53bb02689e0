#include "app/models/ReportModel.h"

#include "app/labels/Wording.h"
#include "core/NumberText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace vorle {

namespace {

QString secondsText(double seconds) {
    const auto whole = static_cast<qint64>(std::lround(std::clamp(seconds, 0.0, 1e6)));
    return whole < 60 ? ReportModel::tr("%1 s").arg(whole)
                      : ReportModel::tr("%1 min %2 s").arg(whole / 60).arg(whole % 60);
}

QString factsText(const RunReport &report) {
    int found = 0;
    for (const ScopeReport &scope : report.scopes) {
        found += scope.found;
    }
    const int pages = report.read.full + report.read.seen + report.read.meta;
    QStringList facts{
        counted(found, ReportModel::tr("lien trouvé"), ReportModel::tr("liens trouvés")),
        counted(pages, ReportModel::tr("page lue"), ReportModel::tr("pages lues")),
        secondsText(report.seconds)};
    if (report.costUSD > 0) {
        const QLocale french(QLocale::French, QLocale::France);
        facts += french.toString(report.costUSD, 'f', 2) + QStringLiteral("\u00A0$");
    }
    return facts.join(QStringLiteral(" · "));
}

QVariantList scopesOf(const RunReport &report) {
    QVariantList list;
    for (const ScopeReport &scope : report.scopes) {
        const bool failed = scope.failed();
        const QString text =
            failed ? scope.error
                   : counted(scope.found, ReportModel::tr("lien"), ReportModel::tr("liens"));
        const QString name = scope.origin == Origin::Suggestion
                                 ? ReportModel::tr("%1, seconde recherche").arg(scope.name)
                                 : scope.name;
        list.append(QVariantMap{{QStringLiteral("name"), shownWords(name)},
                                {QStringLiteral("text"), shownWords(text)},
                                {QStringLiteral("failed"), failed}});
    }
    return list;
}

QStringList noticesOf(const RunReport &report) {
    QStringList notices;
    if (report.failed) {
        notices += *report.failed;
    }
    notices += report.warnings;
    for (const FeedTrouble &feed : report.feeds) {
        notices += ReportModel::tr("%1\u00A0: %2").arg(feed.site, feed.problem);
    }
    for (const DroppedLink &link : report.notNewer) {
        notices += ReportModel::tr("Mis à part\u00A0: %1").arg(link.reason);
    }
    if (!report.unjudged.isEmpty()) {
        notices += ReportModel::tr("Liens non jugés\u00A0: %1. %2")
                       .arg(numberText(report.unjudged.size()), report.unjudged.first().reason);
    }
    if (report.surplus && !report.surplus->isEmpty()) {
        notices += ReportModel::tr("Liens de trop\u00A0: %1. %2")
                       .arg(numberText(report.surplus->size()), report.surplus->first().reason);
    }
    if (!report.uncovered.isEmpty() && !report.cancelled) {
        notices += ReportModel::tr("Rien trouvé pour\u00A0: %1")
                       .arg(report.uncovered.join(QStringLiteral(", ")));
    }
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
        return factsText(report);
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
