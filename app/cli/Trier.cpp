#include "app/cli/Handlers.h"
#include "app/cli/ReadNow.h"
#include "app/cli/TopicArgument.h"
#include "app/cli/TopicCards.h"
#include "app/labels/DecisionLabels.h"
#include "base/French.h"
#include "core/WeekProgram.h"
#include "search/capture/LinkCapture.h"

#include <algorithm>
#include <array>

namespace vorle::cli {

namespace {

enum class Action { Keep, Later, Dismiss, Done, Remove };

struct ActionWord {
    QStringView word;
    Action action;
    TopicStatus leadsTo;
};
constexpr std::array actionWords{
    ActionWord{u"garder", Action::Keep, TopicStatus::Program},
    ActionWord{u"plus-tard", Action::Later, TopicStatus::Reserve},
    ActionWord{u"pas-pour-moi", Action::Dismiss, TopicStatus::Dismissed},
    ActionWord{u"fait", Action::Done, TopicStatus::Done},
    ActionWord{u"retirer", Action::Remove, TopicStatus::Inbox},
    ActionWord{u"retrier", Action::Remove, TopicStatus::Inbox},
};

ActionWord actionNamed(const QString &word) {
    const auto found = std::ranges::find(actionWords, QStringView(word), &ActionWord::word);
    if (found == actionWords.end()) {
        throw Failure(French::tr("Action inconnue\u00A0: %1. Choix\u00A0: garder, plus-tard, "
                                 "pas-pour-moi, fait, retirer, retrier.")
                          .arg(word),
                      ExitStatus::Usage);
    }
    return *found;
}

std::optional<Worth> worthGiven(const Arguments &arguments, Action action) {
    const auto option = arguments.options.constFind(QStringLiteral("avis"));
    if (option == arguments.options.cend()) {
        return std::nullopt;
    }
    const auto worth = json::fromRaw<Worth>(*option);
    if (!worth) {
        throw Failure(
            French::tr("Avis inconnu\u00A0: %1. Choix\u00A0: meh (Bof), useful (Utile), gem "
                       "(Pépite).")
                .arg(*option),
            ExitStatus::Usage);
    }
    if (action != Action::Done) {
        throw Failure(French::tr("--avis ne va qu’avec « fait »."), ExitStatus::Usage);
    }
    return worth;
}

/// The decision that a word asks for, on a topic that is at `before`.
Outcome outcomeOf(Action action, TopicStatus before) {
    const bool fromProgram = before == TopicStatus::Program;
    switch (action) {
    case Action::Keep:
        return Outcome::Kept;
    case Action::Later:
        return fromProgram ? Outcome::Postponed : Outcome::Later;
    case Action::Dismiss:
        return Outcome::Dismissed;
    case Action::Done:
        return Outcome::Done;
    case Action::Remove:
        break;
    }
    return fromProgram ? Outcome::Removed : Outcome::PutBack;
}

/// Whether the week has no room for a topic that was just kept.
bool waitsInProgram(const TopicsToChange &topics, const Clock &clock, const QUuid &id) {
    const WeekProgram program =
        weekProgram(topics.store->topics(), topics.preferences->settings().weeklyMinutes,
                    calendarWeek(clock.now()));
    return std::ranges::any_of(program.waits,
                               [&](const TopicPtr &topic) { return topic->id == id; });
}

/// "retrier" on a captured link that nobody read: it waits again, and is read.
Task<> retryUnread(Context &context, TopicStore &store, LinkCapture &capture, TopicPtr topic) {
    TopicStore::TriageState waiting;
    waiting.status = TopicStatus::Pending;
    store.restore(topic->id, waiting);
    capture.ask(topic->id);
    co_await readNow(context, capture, topic->id);
    const TopicPtr now = store.topic(topic->id);
    if (!now || now->status != TopicStatus::Inbox) {
        throw Failure(French::tr("Ce lien n’a pas pu être lu et noté\u00A0: il attend toujours."));
    }
    co_await showChanged(context, store, topic->id, French::tr("Lu et noté · À trier"));
}

} // namespace

Task<ExitStatus> trier(Context &context, TopicsToChange topics, OnDemand<LinkCapture> capture,
                       const Clock &clock) {
    const ActionWord asked = actionNamed(context.arguments.positional[1]);
    const auto worth = worthGiven(context.arguments, asked.action);
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    const TopicPtr topic = topicByPrefix(store, context.arguments.positional[0]);
    if (isUnjudgedCapture(*topic) && asked.word == u"retrier") {
        co_await retryUnread(context, store, *capture, topic);
        co_return ExitStatus::Done;
    }
    if (const auto refused = refusal(*topic, asked.leadsTo)) {
        const bool reading = isBeingRead(*topic) && capture->running();
        const QString why = refusalText(*refused, reading ? Reading::UnderWay : Reading::Stopped);
        throw Failure(reading ? why
                              : French::tr("%1 Pour la faire lire\u00A0: vorle trier %2 retrier")
                                    .arg(why, context.arguments.positional[0]));
    }
    const Outcome outcome = outcomeOf(asked.action, topic->status);
    if (topic->status == asked.leadsTo && (!worth || worth == topic->worth)) {
        // A decision taken twice, by a script say, is not counted twice.
        context.console.say(French::tr("C’était déjà le cas."));
    } else if (DecisionHistory decisions(store); worth) {
        decisions.judge(topic->id, *worth);
    } else {
        decisions.decide(topic->id, outcome);
    }
    co_await showChanged(context, store, topic->id,
                         worth ? outcomeText(*worth) : outcomeText(outcome));
    if (asked.action == Action::Keep && waitsInProgram(topics, clock, topic->id)) {
        context.console.say(
            French::tr("Il ne tient pas dans ta semaine\u00A0: il attend sous la ligne."));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
