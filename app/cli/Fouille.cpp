#include "app/cli/Handlers.h"
#include "app/cli/TopicArgument.h"
#include "app/cli/TopicCards.h"
#include "app/labels/CalibrationText.h"
#include "app/labels/RunLabels.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "core/NumberText.h"
#include "search/run/SearchEngine.h"

namespace vorle::cli {

namespace {

/// The report's keys, with the topics.
struct FouilleAnswer : RunReport {
    QList<Topic> topics;

    static constexpr auto jsonFields() {
        return std::tuple_cat(RunReport::jsonFields(),
                              std::tuple(json::field("topics", &FouilleAnswer::topics)));
    }
};

/// Waits for the right to change the topics, then hands out what a run that died left behind. Gives
/// as holdTopics().
Task<std::optional<ExitStatus>> openStore(Context &context, TopicsToChange topics) {
    if (topics.lock->isHeld()) {
        co_return std::nullopt; // by the app, which did so at its start: what is pending is a run's
    }
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return forwarded;
    }
    TopicStore &store = *topics.store;
    if (const auto notice = store.notice()) {
        context.console.say(*notice);
    }
    if (const qsizetype released = store.releaseAllPending(); released > 0) {
        context.console.say(releasedText(released));
    }
    co_return std::nullopt;
}

void showProgress(Console &console, const RunProgress &progress) {
    // Each scope counts as much as reading and judging what it brought.
    const int total = progress.scopes + 2 * progress.candidates;
    const int done = progress.scopesDone + progress.read + progress.judged;
    const QString details =
        French::tr("liens : %1, lus : %2, jugés : %3")
            .arg(progress.candidates)
            .arg(progress.read)
            .arg(progress.judged) +
        (progress.calls > 0 ? QStringLiteral("  ") + spentText(progress) : QString());
    console.progress(progress.status, done, total, details);
}

/// "12 liens, 3 déjà connus, 1 en double".
QString scopeLine(const ScopeReport &scope) {
    if (scope.failed() || scope.waits.value_or(false)) {
        return scopeText(scope);
    }
    QStringList facts{scopeText(scope)};
    const auto add = [&](int count, const QString &what) {
        if (count > 0) {
            facts += numberText(count) + u' ' + what;
        }
    };
    add(scope.known, French::tr("déjà dans tes sujets"));
    add(scope.merged, French::tr("en double"));
    add(scope.refused, French::tr("sans adresse web"));
    return facts.join(QStringLiteral(", "));
}

/// What was read: "18 en entier, 2 en partie, 1 illisible".
QString readLine(const RunReport &report) {
    QStringList facts;
    const auto add = [&](int count, const QString &what) {
        if (count > 0) {
            facts += numberText(count) + u' ' + what;
        }
    };
    add(report.read.full, French::tr("en entier"));
    add(report.read.seen, French::tr("en partie"));
    add(report.read.meta, French::tr("par leur titre et leur description"));
    add(report.read.none,
        report.read.none > 1 ? French::tr("illisibles") : French::tr("illisible"));
    if (report.dug > 0) {
        facts += (report.dug > 1 ? French::tr("dont %1 retrouvées ailleurs")
                                 : French::tr("dont %1 retrouvée ailleurs"))
                     .arg(report.dug);
    }
    return facts.join(QStringLiteral(", "));
}

/// The run's report, short: a line a scope, then what was read and what else there is to tell.
void tellReport(Console &console, const RunReport &report) {
    for (const ScopeReport &scope : report.scopes) {
        console.say(
            French::tr("%1\u00A0: %2").arg(scopeName(scope).simplified(), scopeLine(scope)));
    }
    if (const QString line = readLine(report); !line.isEmpty()) {
        console.say(French::tr("Pages lues\u00A0: %1").arg(line));
    }
    for (const QString &notice : runNotices(report)) {
        console.say(notice);
    }
}

/// After the first run: the guided triage, until it is done or skipped.
void proposeCalibration(Context &context, const TopicsToChange &topics, const Clock &clock) {
    TopicStore &store = *topics.store;
    DecisionHistory history(store);
    const Calibration calibration(*topics.preferences, store, history, clock);
    if (!store.isDemo() && calibration.isProposed()) {
        const Calibration::Progress progress = calibration.progress();
        const CalibrationText text = calibrationInvitation(progress.total - progress.answered);
        context.console.say(French::tr("%1 (vorle calibrer, ou vorle calibrer --passer). %2")
                                .arg(text.title, text.text));
    }
}

/// Of what the agent's limit left: until when, and what becomes of it. A command does not go on by
/// itself: it ends.
void tellRest(Context &context, const RunReport &report, const RunRemainder &rest,
              const QDateTime &now) {
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const RunWaits &waits = rest.waits();
    const bool goesOn = resumeAction(rest, now, false) != ResumeAction::Offer;
    const bool isOpen = context.host == Host::App;
    // The report says it where it met the limit itself.
    const QString title = report.waits ? QString() : waitsTitle(waits) + u' ';
    if (rest.asked) {
        const PutOff why = rest.isUnanswered() ? PutOff::Unanswered : PutOff::Asked;
        context.console.say(title + putOffText(waits, why, now, zone));
    } else if (goesOn && !isOpen) {
        context.console.say(title + keptRestText(waits));
    } else {
        context.console.say(title + waitsText(waits, now, zone));
    }
    if (!goesOn) {
        context.console.say(French::tr("Pour continuer\u00A0: vorle fouille --suite"));
    } else if (!isOpen) {
        context.console.say(
            French::tr("%1, si vorle est ouvert, ou avec\u00A0: vorle fouille --suite")
                .arg(comingRestText(waits, now, zone)));
    }
}

ExitStatus giveUpRest(Context &context, SearchEngine &engine) {
    if (!engine.giveUpRest()) {
        throw Failure(engine.phase() != SearchEngine::Phase::Idle
                          ? French::tr("Une fouille est déjà en cours.")
                          : French::tr("Ce qui restait n’a pas pu être effacé."));
    }
    context.console.say(
        French::tr("Je laisse la suite\u00A0: la prochaine fouille reprendra la même période."));
    return ExitStatus::Done;
}

/// A run, or the rest of one, its progress shown until it ends. @throws as it does
Task<RunReport> runShown(Context &context, SearchEngine &engine, SearchRun::Part part) {
    const auto link = QObject::connect(&engine, &SearchEngine::progressed, &engine,
                                       [&](const RunProgress &progress) {
                                           // A refusal is told by its failure.
                                           if (engine.phase() != SearchEngine::Phase::Idle) {
                                               showProgress(context.console, progress);
                                           }
                                       });
    std::optional<RunReport> ended;
    std::exception_ptr failure;
    try {
        ended = co_await (part == SearchRun::Part::First ? engine.run(context.cancel)
                                                         : engine.resume(context.cancel));
    } catch (...) {
        failure = std::current_exception();
    }
    QObject::disconnect(link);
    context.console.endProgress();
    if (failure) {
        std::rethrow_exception(failure);
    }
    co_return *ended;
}

void printTopics(Context &context, const RunReport &report, const TopicStore &store) {
    QList<TopicPtr> topics;
    for (const QUuid &id : report.topicIds) {
        if (const TopicPtr topic = store.topic(id)) {
            topics += topic;
        }
    }
    if (context.arguments.json()) {
        FouilleAnswer answer{report, {}};
        for (const TopicPtr &topic : topics) {
            answer.topics += *topic;
        }
        context.console.print(json::encode(answer, json::Style::Pretty));
    } else if (!topics.isEmpty()) {
        context.console.print(topicCards(context.console, topics, store, QDate::currentDate()) +
                              u'\n');
    }
}

} // namespace

Task<ExitStatus> fouille(Context &context, TopicsToChange topics, OnDemand<SearchEngine> search,
                         const Clock &clock) {
    const bool isRest = context.arguments.flags.contains(QStringLiteral("suite"));
    const bool isGivenUp = context.arguments.flags.contains(QStringLiteral("laisser"));
    if (isRest && isGivenUp) {
        throw Failure(French::tr("C’est --suite ou --laisser, pas les deux."), ExitStatus::Usage);
    }
    if (const auto forwarded = co_await openStore(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    SearchEngine &engine = *search;
    if ((isRest || isGivenUp) && !engine.remainder()) {
        context.console.say(French::tr("Rien n’attend."));
        co_return ExitStatus::Done;
    }
    if (isGivenUp) {
        co_return giveUpRest(context, engine);
    }
    const RunReport report = co_await runShown(
        context, engine, isRest ? SearchRun::Part::Further : SearchRun::Part::First);
    printTopics(context, report, store);
    tellReport(context.console, report);
    if (report.saved) {
        context.console.say(runResultText(report));
        context.console.say(runFactsText(report));
        if (const auto &rest = engine.remainder()) {
            tellRest(context, report, *rest, clock.now());
        }
        proposeCalibration(context, topics, clock);
    } else {
        context.console.say(
            store.saveError().value_or(French::tr("Les sujets n’ont pas pu être enregistrés.")));
    }
    co_return report.cancelled || !report.saved ? ExitStatus::Failed : ExitStatus::Done;
}

} // namespace vorle::cli
