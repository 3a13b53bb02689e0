// The commands that take the topics out, and others in.

#include "app/cli/Handlers.h"
#include "app/cli/TopicArgument.h"
#include "app/transfer/TopicArchive.h"
#include "app/transfer/TopicImport.h"
#include "app/transfer/TransferText.h"
#include "base/French.h"
#include "search/capture/LinkCapture.h"

#include <QFileInfo>

#include <atomic>

namespace vorle::cli {

namespace {

struct ExportShown {
    QString folder;
    qsizetype topics = 0;
    qsizetype written = 0;
    qsizetype unchanged = 0;
    QStringList left;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("folder", &ExportShown::folder),
                          json::field("topics", &ExportShown::topics),
                          json::field("written", &ExportShown::written),
                          json::field("unchanged", &ExportShown::unchanged),
                          json::field("left", &ExportShown::left));
    }
};

ExportFormats formatsOf(const Arguments &arguments) {
    const QString word = arguments.options.value(QStringLiteral("format"));
    if (word.isEmpty()) {
        return {};
    }
    if (word != u"json" && word != u"markdown") {
        throw Failure(French::tr("Format inconnu : %1. Choix : json, markdown.").arg(word),
                      ExitStatus::Usage);
    }
    return {.json = word == u"json", .markdown = word == u"markdown"};
}

/// What `work` gives or throws, worked out on the pool: the app's window goes on meanwhile, and a
/// stop is heard.
template <class Work, class Result = std::invoke_result_t<Work>>
Task<Result> onPoolOrThrow(Work work) {
    struct Outcome {
        Result result;
        std::exception_ptr fault;
    };
    Outcome outcome = co_await onPool([work = std::move(work)] {
        Outcome made;
        try {
            made.result = work();
        } catch (...) {
            made.fault = std::current_exception();
        }
        return made;
    });
    if (outcome.fault) {
        std::rethrow_exception(outcome.fault);
    }
    co_return std::move(outcome.result);
}

} // namespace

Task<ExitStatus> exporter(Context &context, OnDemand<TopicStore> opened) {
    const ExportFormats formats = formatsOf(context.arguments);
    const QString folder = QFileInfo(context.arguments.positional.first()).absoluteFilePath();
    const TopicStore &store = *opened;
    if (store.isDamaged()) {
        throw Failure(French::tr("Tes sujets sont illisibles : %1").arg(store.file()));
    }
    QList<Topic> topics;
    for (const TopicPtr &topic : store.topics()) {
        topics += *topic;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    auto stopped = std::make_shared<std::atomic<bool>>(false);
    const auto stop = context.cancel.onCancel([stopped] { *stopped = true; });
    const WrittenFiles files = co_await onPoolOrThrow([=, live = store.file()] {
        return exportTopics(topics, folder, live, formats, now,
                            [stopped] { return stopped->load(); });
    });
    if (context.arguments.json()) {
        context.console.print(json::encode(
            ExportShown{folder, topics.size(), files.written, files.unchanged, files.left},
            json::Style::Pretty));
    }
    context.console.say(exportText(topics.size(), folder, files));
    co_return ExitStatus::Done;
}

Task<ExitStatus> importer(Context &context, TopicsToChange held, OnDemand<LinkCapture> capture) {
    // The open app, which may be asked to do it, works in another folder.
    const QString given = context.arguments.positional.first();
    const QString file = QFileInfo(given).absoluteFilePath();
    context.words.replace(context.words.lastIndexOf(given), file);
    co_await holdTopics(context, held);
    QList<Topic> topics = co_await onPoolOrThrow([file] { return readTopicArchive(file); });
    context.cancel.throwIfCancelled();
    TopicStore &store = *held.store;
    const ImportOutcome outcome = importTopicsInto(store, std::move(topics));
    if (context.host == Host::App) {
        capture->resume(); // links that still want to be read
    }
    if (!store.flush()) {
        throw Failure(
            store.saveError().value_or(French::tr("Les sujets n’ont pas pu être enregistrés.")));
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(outcome, json::Style::Pretty));
    }
    context.console.say(importText(outcome));
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
