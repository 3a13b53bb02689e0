#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/cli/TopicArgument.h"
#include "app/transfer/TopicArchive.h"
#include "app/transfer/TopicImport.h"
#include "app/transfer/TransferText.h"
#include "search/capture/LinkCapture.h"

#include <QFileInfo>

namespace vorle::cli {

Task<ExitStatus> importer(Context &context, TopicsToChange changed, OnDemand<LinkCapture> capture) {
    // The open app, which may be asked to do it, works in another folder.
    const QString given = context.arguments.positional.first();
    const QString file = QFileInfo(given).absoluteFilePath();
    context.words.replace(context.words.lastIndexOf(given), file);
    if (const auto forwarded = co_await holdTopics(context, changed)) {
        co_return *forwarded;
    }
    QList<Topic> topics = co_await onPool([file] { return readTopicArchive(file); });
    context.cancel.throwIfCancelled();
    TopicStore &store = *changed.store;
    const ImportOutcome outcome = importTopicsInto(store, std::move(topics));
    if (context.host == Host::App) {
        capture->resume(); // links that still want to be read
    }
    co_await onceSaved(context, store);
    if (context.arguments.json()) {
        context.console.print(json::encode(outcome, json::Style::Pretty));
    }
    context.console.say(importText(outcome));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
