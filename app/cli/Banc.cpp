// The judge measured on the samples an expert graded. The user's topics are never opened.

#include "agents/Ask.h"
#include "agents/EngineAgent.h"
#include "app/cli/Handlers.h"
#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "base/Resources.h"
#include "core/NumberText.h"
#include "judging/JudgeBench.h"

#include <cmath>

namespace vorle::cli {

namespace {

constexpr int nameColumns = 24;

struct ItemShown {
    QString id;
    QString title;
    std::optional<BenchLabel> label;
    std::optional<Judgment> judgment;
    std::optional<double> gap;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("id", &ItemShown::id), json::field("title", &ItemShown::title),
            json::field("label", &ItemShown::label), json::field("judgment", &ItemShown::judgment),
            json::field("gap", &ItemShown::gap));
    }
};

struct BenchShown {
    QString profile;
    QList<ItemShown> items;
    BenchFigures figures;
    QList<QString> worst; ///< the items furthest from their labels, furthest first

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("profile", &BenchShown::profile), json::field("items", &BenchShown::items),
            json::field("figures", &BenchShown::figures), json::field("worst", &BenchShown::worst));
    }
};

struct BancAnswer {
    QList<BenchShown> benches;
    BenchFigures figures;
    QList<QString> worst; ///< over all benches
    std::optional<double> costUSD;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("benches", &BancAnswer::benches),
                          json::field("figures", &BancAnswer::figures),
                          json::field("worst", &BancAnswer::worst),
                          json::field("costUSD", &BancAnswer::costUSD));
    }
};

/// What came of all benches.
struct Judged {
    QList<Bench> benches; ///< those that were gone through
    QList<JudgeBench::Outcome> outcomes;

    QList<BenchVerdict> verdicts() const {
        QList<BenchVerdict> all;
        for (const auto &outcome : outcomes) {
            all += outcome.verdicts;
        }
        return all;
    }
    std::optional<double> costUSD() const {
        std::optional<double> total;
        for (const auto &outcome : outcomes) {
            total = outcome.costUSD ? total.value_or(0) + *outcome.costUSD : total;
        }
        return total;
    }
    std::exception_ptr failure() const {
        return outcomes.isEmpty() ? nullptr : outcomes.last().failure;
    }
};

/// "0,82", "−0,25": with the minus sign, whatever the locale has for it.
QString decimals(double number, int places) {
    return frenchLocale().toString(number, 'f', places).replace(u'-', u'−');
}

/// "+2,5", "−1", "0".
QString gapText(double gap) {
    const QString size = tenthsText(std::abs(gap));
    return size == u"0" ? size : (gap < 0 ? QStringLiteral("−") : QStringLiteral("+")) + size;
}

QString cell(const std::optional<QString> &text) {
    return text.value_or(QStringLiteral("–")).rightJustified(7);
}

QString row(const Console &console, const BenchVerdict &verdict) {
    std::optional<QString> expected;
    std::optional<QString> judged;
    std::optional<QString> gap;
    if (verdict.label) {
        expected = tenthsText(verdict.label->score);
    }
    if (verdict.judgment) {
        judged = tenthsText(verdict.judgment->relevance);
    }
    if (verdict.gap()) {
        gap = gapText(*verdict.gap());
    }
    return cell(expected) + cell(judged) + console.accent(cell(gap)) + QStringLiteral("   ") +
           console.wrapped(verdict.item.title, nameColumns).trimmed();
}

QString figuresText(const BenchFigures &figures) {
    QStringList facts;
    if (figures.meanAbsoluteError) {
        facts += French::tr("Écart moyen : ") + decimals(*figures.meanAbsoluteError, 2);
        facts += French::tr("à un point près : %1 %").arg(std::lround(*figures.withinOne * 100));
        facts +=
            French::tr("corrélation des rangs : ") +
            (figures.rankCorrelation ? decimals(*figures.rankCorrelation, 2)
                                     : French::tr("non définie, les notes sont toutes égales"));
    }
    if (figures.unanswered > 0) {
        facts += French::tr("sans réponse : %1").arg(figures.unanswered);
    }
    return facts.join(QStringLiteral(" · "));
}

QString tableText(const Console &console, const Bench &bench, const JudgeBench::Outcome &outcome) {
    QStringList lines{
        console.bold(bench.profile.name) +
            console.faint(QStringLiteral("  ") +
                          counted(bench.items.size(), French::tr("sujet"), French::tr("sujets"))),
        console.faint(cell(French::tr("attendu")) + cell(French::tr("jugé")) +
                      cell(French::tr("écart")))};
    for (const BenchVerdict &verdict : outcome.verdicts) {
        lines += row(console, verdict);
    }
    lines += figuresText(benchFigures(outcome.verdicts));
    return lines.join(u'\n') + u'\n';
}

QString worstText(const Console &console, const QList<BenchVerdict> &verdicts,
                  const BenchFigures &figures) {
    QStringList lines{console.bold(French::tr("Les plus grands écarts"))};
    for (const qsizetype index : figures.worst) {
        const BenchVerdict &verdict = verdicts[index];
        lines += console.accent(cell(gapText(*verdict.gap()))) + QStringLiteral("  ") +
                 console.wrapped(verdict.item.title, 9).trimmed();
        lines += console.wrapped(French::tr("Attendu %1 : %2")
                                     .arg(tenthsText(verdict.label->score), verdict.label->text),
                                 9);
        lines += console.wrapped(
            French::tr("Jugé %1 : %2")
                .arg(tenthsText(verdict.judgment->relevance), verdict.judgment->why),
            9);
    }
    return lines.join(u'\n') + u'\n';
}

void tell(const Console &console, const Judged &judged, const BenchFigures &figures) {
    for (qsizetype i = 0; i < judged.outcomes.size(); ++i) {
        console.print(tableText(console, judged.benches[i], judged.outcomes[i]));
    }
    if (!figures.worst.isEmpty()) {
        console.print(worstText(console, judged.verdicts(), figures));
    }
    if (judged.outcomes.size() > 1) {
        console.print(console.bold(French::tr("En tout")) + u'\n' + figuresText(figures));
    }
}

QList<QString> worstOf(const BenchFigures &figures, const QList<BenchVerdict> &verdicts) {
    QList<QString> ids;
    for (const qsizetype index : figures.worst) {
        ids += verdicts[index].item.id;
    }
    return ids;
}

BancAnswer answerOf(const Judged &judged, const BenchFigures &figures) {
    BancAnswer answer{{}, figures, worstOf(figures, judged.verdicts()), judged.costUSD()};
    for (qsizetype i = 0; i < judged.outcomes.size(); ++i) {
        const QList<BenchVerdict> &verdicts = judged.outcomes[i].verdicts;
        const BenchFigures own = benchFigures(verdicts);
        BenchShown shown{judged.benches[i].profile.name, {}, own, worstOf(own, verdicts)};
        for (const BenchVerdict &verdict : verdicts) {
            shown.items += {verdict.item.id, verdict.item.title, verdict.label, verdict.judgment,
                            verdict.gap()};
        }
        answer.benches += shown;
    }
    return answer;
}

/// Up to the first failure.
Task<Judged> judgeAll(Context &context, OnDemand<Asker> asker, QList<Bench> benches) {
    qsizetype total = 0;
    for (const Bench &bench : benches) {
        total += bench.items.size();
    }
    JudgeBench judging(*asker);
    Judged judged;
    qsizetype before = 0;
    for (const Bench &bench : benches) {
        const auto progress = [&](qsizetype done) {
            context.console.progress(French::tr("Jugement du banc d’essai"), int(before + done),
                                     int(total),
                                     French::tr("jugés : %1 sur %2").arg(before + done).arg(total));
        };
        progress(0);
        judged.outcomes += co_await judging.judge(bench, progress, context.cancel);
        judged.benches += bench;
        if (judged.failure()) {
            break;
        }
        before += bench.items.size();
    }
    co_return judged;
}

} // namespace

Task<ExitStatus> banc(Context &context, OnDemand<EngineAgent> agent, OnDemand<Asker> asker,
                      const Resources &resources) {
    QList<Bench> benches = loadBenches(resources);
    if (context.arguments.flags.contains(QStringLiteral("apercu"))) {
        benches = {previewOf(benches.first())};
        context.console.say(previewTitle());
        context.console.say(previewSubtitle());
    }
    agent->check(agent->locator().choose());
    const Judged judged = co_await judgeAll(context, asker, benches);
    context.console.endProgress();
    const BenchFigures figures = benchFigures(judged.verdicts());
    if (figures.compared > 0 && context.arguments.json()) {
        context.console.print(json::encode(answerOf(judged, figures), json::Style::Pretty));
    } else if (figures.compared > 0) {
        tell(context.console, judged, figures);
    }
    if (judged.failure()) {
        std::rethrow_exception(judged.failure());
    }
    const qsizetype answered = judged.verdicts().size() - figures.unanswered;
    if (answered == 0) {
        throw Failure(French::tr("L’IA a répondu, mais n’a jugé aucun sujet."));
    }
    QString line = counted(answered, French::tr("sujet jugé"), French::tr("sujets jugés"));
    if (figures.unanswered > 0) {
        line += French::tr(", %1 sans réponse").arg(figures.unanswered);
    }
    if (const auto cost = judged.costUSD()) {
        line += QStringLiteral(" · ") + costText(*cost);
    }
    context.console.say(line);
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
