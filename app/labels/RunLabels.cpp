#include "app/labels/RunLabels.h"

#include "app/labels/Wording.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "core/NumberText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace vorle {

QString runResultText(const RunReport &report) {
    if (report.cancelled) {
        return report.added == 0   ? French::tr("Fouille arrêtée\u00A0: rien n’était encore jugé.")
               : report.added == 1 ? French::tr("Fouille arrêtée\u00A0: 1 nouveau sujet dans "
                                                "«\u202FÀ trier\u202F».")
                                   : French::tr("Fouille arrêtée\u00A0: %1 nouveaux sujets dans "
                                                "«\u202FÀ trier\u202F».")
                                         .arg(numberText(report.added));
    }
    return report.added == 0   ? French::tr("Rien de nouveau cette fois.")
           : report.added == 1 ? French::tr("1 nouveau sujet dans «\u202FÀ trier\u202F».")
                               : French::tr("%1 nouveaux sujets dans «\u202FÀ trier\u202F».")
                                     .arg(numberText(report.added));
}

QString runFactsText(const RunReport &report) {
    int found = 0;
    for (const ScopeReport &scope : report.scopes) {
        found += scope.found;
    }
    const int pages = report.read.full + report.read.seen + report.read.meta;
    QStringList facts{counted(found, French::tr("lien trouvé"), French::tr("liens trouvés")),
                      counted(pages, French::tr("page lue"), French::tr("pages lues")),
                      secondsText(report.seconds)};
    if (report.costUSD > 0) {
        facts += costText(report.costUSD);
    }
    return facts.join(QStringLiteral(" · "));
}

QString scopeName(const ScopeReport &scope) {
    return scope.origin == Origin::Suggestion ? French::tr("%1, seconde recherche").arg(scope.name)
                                              : scope.name;
}

QString scopeText(const ScopeReport &scope) {
    return scope.failed() ? scope.error
                          : counted(scope.found, French::tr("lien"), French::tr("liens"));
}

QString scopeRemark(const ScopeReport &scope) {
    QStringList parts;
    const auto add = [&parts](int count, const QString &one, const QString &many) {
        if (count > 0) {
            parts += counted(count, one, many);
        }
    };
    add(scope.known, French::tr("déjà connu"), French::tr("déjà connus"));
    add(scope.merged, French::tr("en double"), French::tr("en double"));
    add(scope.refused, French::tr("sans adresse web"), French::tr("sans adresse web"));
    return parts.join(QStringLiteral(", "));
}

QString pagesText(const RunReport &report) {
    QStringList parts;
    const auto add = [&parts](int count, const QString &text) {
        if (count > 0) {
            parts += text.arg(numberText(count));
        }
    };
    add(report.read.full, French::tr("%1 en entier"));
    add(report.read.seen, French::tr("%1 en partie"));
    add(report.read.meta, French::tr("%1 par leur titre et leur description"));
    if (report.read.none > 0) {
        QString none = counted(report.read.none, French::tr("illisible"), French::tr("illisibles"));
        if (report.dug > 0) {
            none += French::tr(", dont %1")
                        .arg(counted(report.dug, French::tr("retrouvée ailleurs"),
                                     French::tr("retrouvées ailleurs")));
        }
        parts += none;
    }
    return parts.isEmpty() ? QString()
                           : French::tr("Pages\u00A0: %1.").arg(parts.join(QStringLiteral(", ")));
}

QString problemText(const RunReport &report) {
    if (report.failed) {
        return French::tr("a échoué");
    }
    if (report.cancelled) {
        return French::tr("arrêtée par toi");
    }
    QStringList failed;
    for (const ScopeReport &scope : report.scopes) {
        if (scope.failed()) {
            failed += shownWords(scopeName(scope)).simplified();
        }
    }
    if (failed.size() == 1) {
        return French::tr("%1\u00A0: pas de réponse").arg(failed.first());
    }
    return failed.isEmpty() ? QString()
                            : French::tr("%1 sans réponse")
                                  .arg(counted(failed.size(), French::tr("recherche"),
                                               French::tr("recherches")));
}

QStringList runNotices(const RunReport &report) {
    QStringList notices;
    if (report.failed) {
        notices += *report.failed;
    }
    notices += report.warnings;
    for (const FeedTrouble &feed : report.feeds) {
        notices += French::tr("%1\u00A0: %2").arg(feed.site, feed.problem);
    }
    for (const DroppedLink &link : report.notNewer) {
        notices += French::tr("Mis à part\u00A0: %1").arg(link.reason);
    }
    if (!report.unjudged.isEmpty()) {
        notices += French::tr("Liens non jugés\u00A0: %1. %2")
                       .arg(numberText(report.unjudged.size()), report.unjudged.first().reason);
    }
    if (report.surplus && !report.surplus->isEmpty()) {
        notices += French::tr("Liens de trop\u00A0: %1. %2")
                       .arg(numberText(report.surplus->size()), report.surplus->first().reason);
    }
    if (!report.uncovered.isEmpty() && !report.cancelled) {
        notices += French::tr("Rien trouvé pour\u00A0: %1")
                       .arg(report.uncovered.join(QStringLiteral(", ")));
    }
    return notices;
}

QString secondsText(double seconds) {
    const auto whole = static_cast<qint64>(std::lround(std::clamp(seconds, 0.0, 1e6)));
    return whole < 60        ? French::tr("%1 s").arg(whole)
           : whole % 60 == 0 ? French::tr("%1 min").arg(whole / 60)
                             : French::tr("%1 min %2 s").arg(whole / 60).arg(whole % 60);
}

QString costText(double usd) {
    return frenchLocale().toString(usd, 'f', 2) + QStringLiteral("\u00A0$");
}

QString nextRunText(const Settings &settings, const QDateTime &now, const QTimeZone &zone) {
    const auto next = settings.schedule.nextRun(now, zone, settings.believedSlot(now));
    return next ? comingText(*next, now, zone) : QString();
}

} // namespace vorle
