#include "app/report/FigureSentences.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "core/Corrections.h"
#include "core/DurationText.h"
#include "core/NumberText.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace vorle {

namespace {

using From = WatchFigures::From;

/// Fewer decisions than this tell nothing.
constexpr int minDecided = 5;
constexpr int minFound = 5;
constexpr int minAgreements = 10;
constexpr int highScore = 8;
constexpr int lowScore = 6;

/// "une", "quatre", "dix-sept" as figures; for what is feminine.
QString inWords(int number) {
    static constexpr std::array<const char *, 17> words{
        "aucune", "une", "deux", "trois", "quatre", "cinq",     "six",    "sept", "huit",
        "neuf",   "dix", "onze", "douze", "treize", "quatorze", "quinze", "seize"};
    return number >= 0 && number < int(words.size())
               ? French::tr(words[static_cast<std::size_t>(number)])
               : numberText(number);
}

QString capital(QString text) {
    text[0] = text[0].toUpper();
    return text;
}

QString number(double value) { return tenthsText(std::round(value * 10) / 10); }

/// How often, in tenths: "jamais", "1 fois sur 10", "toujours". Behind no verb: see keptText().
QString oftenText(int times, int of) {
    constexpr int tenths = 10;
    const auto share = static_cast<int>(std::lround(double(times) * tenths / of));
    if (times == 0) {
        return French::tr("jamais");
    }
    return times == of ? French::tr("toujours")
                       : French::tr("%1 fois sur 10").arg(std::clamp(share, 1, tenths - 1));
}

/// "tu gardes 7 fois sur 10", "tu n’en gardes aucun".
QString keptText(int times, int of) {
    return times == 0    ? French::tr("tu n’en gardes aucun")
           : times == of ? French::tr("tu gardes tout")
                         : French::tr("tu gardes %1").arg(oftenText(times, of));
}

/// Those with a score from `lowest` to `highest`.
WatchFigures::Cohort scored(const WatchFigures &figures, int lowest, int highest) {
    WatchFigures::Cohort sum;
    for (const WatchFigures::Score &score : figures.scores) {
        if (score.score >= lowest && score.score <= highest) {
            sum.found += score.found;
            sum.kept += score.kept;
            sum.later += score.later;
            sum.dismissed += score.dismissed;
        }
    }
    return sum;
}

double share(const WatchFigures::Cohort &cohort) {
    return cohort.found > 0 ? double(cohort.kept) / cohort.found : 0;
}

/// "2 h 05 cette semaine"
QString leftText(const WatchFigures &figures) {
    return French::tr("il t’en reste %1 cette semaine").arg(durationText(figures.minutesLeft));
}

QString sourceText(const WatchFigures::Source &source) {
    switch (source.from) {
    case From::Sites:
        return French::tr("tes sites sont les plus sûrs");
    case From::Topics:
        return French::tr("tes sujets sont les plus sûrs");
    case From::Project:
    case From::Captures:
    case From::Others:
        break;
    }
    return French::tr("%1 est la source la plus sûre").arg(shownWords(source.name).simplified());
}

} // namespace

QString foundSentence(const WatchFigures &figures) {
    if (figures.found.found == 0) {
        return figures.done == 0
                   ? French::tr("Rien de trouvé sur cette période.")
                   : French::tr("Rien de trouvé sur cette période\u00A0: tu as fait %1.")
                         .arg(counted(figures.done, French::tr("sujet d’avant"),
                                      French::tr("sujets d’avant")));
    }
    const double begun = figures.partsBegun;
    const bool mean = figures.kind != PeriodKind::Week && begun > 1 && figures.found.found >= begun;
    const auto of = [&](int total) { return std::lround(mean ? total / begun : total); };
    const QString found =
        counted(of(figures.found.found), French::tr("sujet trouvé"), French::tr("sujets trouvés")) +
        (!mean                               ? QString()
         : figures.kind == PeriodKind::Month ? French::tr(" par semaine")
                                             : French::tr(" par mois"));
    if (figures.found.kept == 0 && figures.done == 0) {
        const bool one = figures.found.found == 1;
        if (figures.found.waiting() == figures.found.found) {
            return (one ? French::tr("%1\u00A0: il t’attend encore.")
                        : French::tr("%1\u00A0: ils t’attendent encore."))
                .arg(found);
        }
        return (one ? French::tr("%1\u00A0: tu ne l’as pas gardé.")
                    : French::tr("%1\u00A0: tu n’en as gardé aucun."))
            .arg(found);
    }
    // What was done may have been found long before.
    return (figures.done > figures.found.kept
                ? French::tr("%1\u00A0: tu en gardes %2, et tu en fais %3 avec ceux d’avant.")
                : French::tr("%1\u00A0: tu en gardes %2 et tu en fais %3."))
        .arg(found, numberText(of(figures.found.kept)), numberText(of(figures.done)));
}

QString timeSentence(const WatchFigures &figures) {
    const bool left = figures.present && figures.minutesLeft > 0 && figures.weeklyMinutes > 0;
    if (figures.minutes == 0) {
        return left ? French::tr("Pas encore de veille faite\u202F; %1.").arg(leftText(figures))
                    : French::tr("Pas de veille faite sur cette période.");
    }
    const QString done = durationText(figures.minutes);
    if (figures.budget() == 0) {
        return French::tr("Tu as fait %1 de veille.").arg(done);
    }
    if (figures.kind == PeriodKind::Week || figures.weeks < 2) {
        const int over = figures.minutes - figures.budget();
        const QString budget = durationText(figures.budget());
        return over >= 0
                   ? French::tr("Tu as fait %1 de veille\u00A0: ton temps est tenu.").arg(done)
               : left ? French::tr("Tu as fait %1 de veille sur %2\u202F; %3.")
                            .arg(done, budget, leftText(figures))
                      : French::tr("Tu as fait %1 de veille sur %2.").arg(done, budget);
    }
    QString held;
    if (figures.weeksHeld == figures.weeks) {
        held = French::tr("Tu as tenu ton temps de veille chaque semaine");
    } else if (figures.weeksHeld == 0) {
        held = figures.present
                   ? French::tr("Tu n’as encore tenu ton temps de veille aucune semaine")
                   : French::tr("Tu n’as tenu ton temps de veille aucune semaine");
    } else {
        held = French::tr("Tu as tenu ton temps de veille %1 sur %2")
                   .arg(figures.weeksHeld == 1
                            ? French::tr("une semaine")
                            : French::tr("%1 semaines").arg(inWords(figures.weeksHeld)),
                        inWords(figures.weeks));
    }
    return left ? held + QStringLiteral("\u202F; ") + leftText(figures) + u'.' : held + u'.';
}

QString scoresSentence(const WatchFigures &figures) {
    constexpr int top = 10;
    const auto high = scored(figures, highScore, top);
    const auto low = scored(figures, 0, lowScore - 1);
    if (scored(figures, 0, top).decided() < minDecided) {
        return French::tr("Pas encore assez de tris pour dire si mes notes te ressemblent.");
    }
    const bool highTells = high.decided() > 0;
    const bool lowTells = low.decided() > 0;
    const QString lowOften = !lowTells ? QString()
                             : low.kept == 0 && high.kept == high.decided()
                                 ? French::tr("rien")
                                 : oftenText(low.kept, low.decided());
    if (!highTells) {
        return lowTells
                   ? French::tr("En dessous de 6, %1\u202F; rien n’a eu 8 ou plus.")
                         .arg(keptText(low.kept, low.decided()))
                   : French::tr("Rien n’a eu 8 ou plus, ni moins de 6, parmi ce que tu as trié.");
    }
    const QString highOften = keptText(high.kept, high.decided());
    return lowTells ? French::tr("À partir de 8, %1\u202F; en dessous de 6, %2.")
                          .arg(highOften, lowOften)
                    : French::tr("À partir de 8, %1.").arg(highOften);
}

QString sourcesSentence(const WatchFigures &figures) {
    const auto &sources = figures.sources;
    const auto best = std::find_if(sources.begin(), sources.end(), [](const auto &source) {
        return source.from != From::Captures && source.from != From::Others &&
               source.found >= minFound && source.kept > 0;
    });
    if (best == sources.end()) {
        return French::tr("Pas encore assez de sujets gardés pour dire d’où viennent les bons.");
    }
    const auto captures = std::find_if(sources.begin(), sources.end(), [](const auto &source) {
        return source.from == From::Captures;
    });
    const QString good =
        French::tr("%1\u00A0: %2 sur %3.")
            .arg(sourceText(*best), counted(best->kept, French::tr("bon"), French::tr("bons")),
                 numberText(best->found));
    return captures != sources.end() && captures->kept > 0 && share(*captures) > share(*best)
               ? French::tr("Après tes captures, %1").arg(good)
           : best->from == From::Project ? good // its name is the user's
                                         : capital(good);
}

QString runsSentence(const WatchFigures &figures) {
    if (figures.runs.isEmpty()) {
        return French::tr("Aucune fouille sur cette période.");
    }
    const auto count = static_cast<int>(figures.runs.size());
    const QString runs = capital(count == 1 ? French::tr("une fouille")
                                            : French::tr("%1 fouilles").arg(inWords(count)));
    if (figures.costUSD() <= 0) {
        return French::tr("%1\u00A0: %2.")
            .arg(runs, spentText(figures.calls(), figures.seconds(), 0));
    }
    const QString cost = (count == 1 ? French::tr("%1 a coûté %2") : French::tr("%1 ont coûté %2"))
                             .arg(runs, costText(figures.costUSD()));
    if (figures.found.kept == 0) {
        return cost + u'.';
    }
    const double cents = figures.costUSD() * 100 / figures.found.kept;
    return cents < 100
               ? French::tr("%1, soit %2 par sujet gardé.")
                     .arg(cost, cents < 2 ? French::tr("%1 cent").arg(number(cents))
                                          : French::tr("%1 cents").arg(number(cents)))
               : French::tr("%1, soit %2 par sujet gardé.").arg(cost, costText(cents / 100));
}

QString correctionsSentence(const WatchFigures &figures) {
    const auto &changed = figures.changed;
    const int count = changed.up + changed.down;
    if (count == 0) {
        return French::tr("Tu n’as changé aucune de mes notes.");
    }
    QString text = (count == 1 ? French::tr("Tu as changé une note")
                               : French::tr("Tu as changé %1 notes").arg(inWords(count))) +
                   (changed.down == 0 ? French::tr(", vers le haut")
                    : changed.up == 0 ? French::tr(", vers le bas")
                                      : French::tr(", %1 vers le haut et %2 vers le bas")
                                            .arg(inWords(changed.up), inWords(changed.down)));
    text += (count == 1 ? French::tr(", de %1") : French::tr(", de %1 en moyenne"))
                .arg(counted(std::lround(std::max(1.0, changed.gap)), French::tr("point"),
                             French::tr("points")));
    if (changed.reason) {
        text += (count == 1 ? French::tr("\u00A0: %1")
                            : French::tr("\u202F; le plus souvent\u00A0: %1"))
                    .arg(correctionReasonText(*changed.reason).toLower());
    }
    return text + u'.';
}

QString reflexesSentence(const WatchFigures &figures) {
    const auto &with = figures.withReflexes;
    const auto &without = figures.withoutReflexes;
    if (with.of < minAgreements) {
        return {};
    }
    const QString right = with.right == 0
                              ? French::tr("Avec tes réflexes, ma note ne tombe jamais juste")
                              : French::tr("Avec tes réflexes, ma note tombe juste %1")
                                    .arg(oftenText(with.right, with.of));
    return without.of < minAgreements
               ? right + u'.'
               : right +
                     French::tr("\u202F; sans eux, %1.").arg(oftenText(without.right, without.of));
}

QString budgetText(const WatchFigures &figures) {
    return figures.budget() > 0 ? French::tr("sur %1 de veille").arg(durationText(figures.budget()))
                                : French::tr("de veille");
}

QString countsText(const WatchFigures &figures) {
    return QStringList{
        counted(figures.found.found, French::tr("trouvé"), French::tr("trouvés")),
        counted(figures.found.kept, French::tr("gardé"), French::tr("gardés")),
        counted(figures.done, French::tr("fait"), French::tr("faits")),
        counted(figures.found.dismissed, French::tr("écarté"), French::tr("écartés")),
        counted(figures.gems, French::tr("pépite"), French::tr("pépites"))}
        .join(QStringLiteral(" · "));
}

QString stepName(RunStep step) {
    switch (step) {
    case RunStep::Candidates:
        return French::tr("Recherche");
    case RunStep::Sites:
        return French::tr("Tes sites");
    case RunStep::Judge:
        return French::tr("Jugement");
    case RunStep::Dig:
        return French::tr("Pages illisibles");
    }
    return {};
}

} // namespace vorle
