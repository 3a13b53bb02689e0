#include "app/labels/RunLabels.h"

#include "app/labels/Wording.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "core/NumberText.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace vorle {

namespace {

/// "3 recherches et 12 liens à juger".
QString restText(const RunWaits &waits) {
    QStringList parts;
    if (waits.scopes > 0) {
        parts += counted(waits.scopes, French::tr("recherche"), French::tr("recherches"));
    }
    if (waits.links > 0 || parts.isEmpty()) {
        parts += counted(waits.links, French::tr("lien à juger"), French::tr("liens à juger"));
    }
    return parts.join(French::tr(" et "));
}

QString tokensText(qint64 tokens) {
    return counted(static_cast<qsizetype>(tokens), French::tr("jeton"), French::tr("jetons"));
}

std::optional<qint64> tokensOf(const RunReport &report) {
    std::optional<qint64> tokens;
    for (const StepReport &step : report.steps.value_or(QList<StepReport>())) {
        if (step.tokens) {
            tokens = tokens.value_or(0) + *step.tokens;
        }
    }
    return tokens;
}

} // namespace

QString waitsTitle(const RunWaits &waits) {
    return French::tr("%1 a atteint sa limite.").arg(waits.agent);
}

QString waitsText(const RunWaits &waits, const QDateTime &now, const QTimeZone &zone) {
    if (!waits.until) {
        return French::tr("Il ne dit pas jusqu’à quand. Je garde tout\u00A0: il reste %1.")
            .arg(restText(waits));
    }
    const QString when = comingText(*waits.until, now, zone);
    return *waits.until > now
               ? French::tr("Je garde tout et je continue %1\u00A0: il reste %2.")
                     .arg(when, restText(waits))
               : French::tr("La suite de la fouille %1 devait reprendre %2\u00A0: il reste %3.")
                     .arg(ofDayText(waits.since, now, zone), when, restText(waits));
}

QString putOffText(const RunWaits &waits, PutOff why, const QDateTime &now, const QTimeZone &zone) {
    const bool isLimited = waits.until && *waits.until > now;
    const QString left =
        isLimited ? French::tr("Je continue quand tu veux (limite levée %1)\u00A0: il reste %2.")
                        .arg(comingText(*waits.until, now, zone), restText(waits))
                  : French::tr("Je garde tout, et je continue quand tu veux\u00A0: il reste %1.")
                        .arg(restText(waits));
    return why == PutOff::Unanswered
               ? French::tr("Plusieurs reprises sont restées sans réponse. %1").arg(left)
               : left;
}

QString keptRestText(const RunWaits &waits) {
    return French::tr("Je garde tout\u00A0: il reste %1.").arg(restText(waits));
}

QString comingRestText(const RunWaits &waits, const QDateTime &now, const QTimeZone &zone) {
    return waits.until && *waits.until > now
               ? French::tr("La suite %1").arg(comingText(*waits.until, now, zone))
               : French::tr("La suite quand tu veux");
}

QString spentText(int calls, double seconds, double costUSD, const std::optional<qint64> &tokens) {
    QStringList parts{counted(calls, French::tr("appel"), French::tr("appels")),
                      secondsText(seconds)};
    if (costUSD > 0) {
        parts += costText(costUSD);
    } else if (tokens) {
        parts += tokensText(*tokens);
    }
    return parts.join(QStringLiteral(" · "));
}

QString spentText(const RunProgress &progress) {
    return spentText(progress.calls, progress.seconds, progress.costUSD, progress.tokens);
}

QString runResultText(const RunReport &report) {
    if (report.cancelled) {
        return report.added == 0   ? French::tr("Fouille arrêtée\u00A0: rien n’était encore jugé.")
               : report.added == 1 ? French::tr("Fouille arrêtée\u00A0: 1 nouveau sujet dans "
                                                "«\u202FÀ trier\u202F».")
                                   : French::tr("Fouille arrêtée\u00A0: %1 nouveaux sujets dans "
                                                "«\u202FÀ trier\u202F».")
                                         .arg(numberText(report.added));
    }
    if (report.waits && report.added == 0) {
        return French::tr("Rien de nouveau pour l’instant.");
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
    } else if (const auto tokens = tokensOf(report)) {
        facts += tokensText(*tokens);
    }
    return facts.join(QStringLiteral(" · "));
}

QString scopeName(const ScopeReport &scope) {
    return scope.origin == Origin::Suggestion ? French::tr("%1, seconde recherche").arg(scope.name)
                                              : scope.name;
}

QString scopeText(const ScopeReport &scope) {
    if (scope.waits.value_or(false)) {
        return French::tr("pas encore cherché");
    }
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
    if (report.waits) {
        return French::tr("attend sa suite");
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
    if (report.waits) {
        notices += French::tr("%1 Ce qu’il dit\u00A0: %2")
                       .arg(waitsTitle(*report.waits), report.waits->words);
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
