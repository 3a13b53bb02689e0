// One topic's reading note: the kept one, or a new one.

#include "app/cli/BriefPage.h"
#include "app/cli/Handlers.h"
#include "app/cli/TopicArgument.h"
#include "app/labels/RunLabels.h"
#include "base/French.h"
#include "base/Resources.h"
#include "briefs/BriefWriter.h"

namespace vorle::cli {

namespace {

void show(const Context &context, const Topic &topic, std::optional<int> minutes) {
    if (context.arguments.json()) {
        context.console.print(json::encode(*topic.brief, json::Style::Pretty));
    } else {
        context.console.print(briefPage(context.console, topic, minutes));
    }
}

/// Whether the writer has done with the topic; a call that was stopped has ended by then.
bool isOver(const BriefWriter &writer, const QUuid &id) {
    const bool atOthers = writer.writing() && writer.writing() != id;
    return !writer.queue().contains(id) && (atOthers || !writer.running());
}

/// Writes the topic's note and waits for it. @throws Failure, Cancelled
Task<> write(Context &context, BriefWriter &writer, QUuid id) {
    OneShot ended;
    QObject scope; // the connections go with it
    const auto look = [&writer, id, ended] {
        if (isOver(writer, id)) {
            ended.fire();
        }
    };
    QObject::connect(&writer, &BriefWriter::queueChanged, &scope, look);
    QObject::connect(&writer, &BriefWriter::writingChanged, &scope, look);
    QObject::connect(&writer, &BriefWriter::runningChanged, &scope, look);
    // A note the window asked for is not this command's to withdraw.
    const bool askedAlready = writer.queue().contains(id) || writer.writing() == id;
    const auto stop = context.cancel.onCancel(
        [&writer, id, askedAlready, ended] { askedAlready ? ended.fire() : writer.withdraw(id); });
    context.console.progress(French::tr("J’écris la fiche de lecture…"), 0, 1,
                             French::tr("Je relis les sources · environ une minute"));
    writer.ask(id);
    co_await ended;
    context.console.endProgress();
    context.cancel.throwIfCancelled();
    if (writer.failed().contains(id)) {
        throw Failure(French::tr("Je n’ai pas pu écrire la fiche.\n"
                                 "Les sources n’ont pas répondu, ou ton IA non plus.\n") +
                      writer.failureText(id).trimmed());
    }
}

QString costFact(std::optional<double> costUSD) {
    return costUSD && *costUSD > 0 ? QStringLiteral(" · ") + costText(*costUSD) : QString();
}

} // namespace

Task<ExitStatus> fiche(Context &context, TopicsToChange topics, OnDemand<BriefWriter> briefs,
                       const Resources &resources, const Clock &clock) {
    const QString typed = context.arguments.positional.first();
    const bool again = context.arguments.flags.contains(QStringLiteral("refaire"));
    const auto showKept = [&](const TopicStore &kept) {
        const TopicPtr topic = topicByPrefix(kept, typed);
        const bool shown = topic->brief && !again;
        if (shown) {
            show(context, *topic, std::nullopt);
        }
        return shown;
    };
    // A kept note is read without waiting for whoever is changing the topics.
    if (topics.lock->isHeld() ? showKept(*topics.store)
                              : showKept({TopicStore::Kind::Real, resources, clock})) {
        co_return ExitStatus::Done;
    }
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    const QUuid id = topicByPrefix(store, typed)->id;
    if (again || !store.topic(id)->brief) {
        co_await write(context, *briefs, id);
    }
    const TopicPtr topic = store.topic(id);
    if (!topic || !topic->brief) {
        throw Failure(French::tr("La fiche n’a pas été écrite\u00A0: le sujet ou la demande a "
                                 "été retiré entre-temps."));
    }
    const auto receipt = briefs->receipt(id).value_or(BriefWriter::Receipt());
    show(context, *topic, receipt.minutes);
    if (!store.flush()) {
        throw Failure(
            store.saveError().value_or(French::tr("La fiche n’a pas pu être enregistrée.")));
    }
    context.console.say(French::tr("Fiche gardée dans le sujet%1").arg(costFact(receipt.costUSD)));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
