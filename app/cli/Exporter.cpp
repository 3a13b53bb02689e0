#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/transfer/TopicArchive.h"
#include "app/transfer/TransferText.h"
#include "base/French.h"

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

} // namespace

Task<ExitStatus> exporter(Context &context, OnDemand<TopicStore> opened) {
    const ExportFormats formats = formatsOf(context.arguments);
    const QString folder = QFileInfo(context.arguments.positional.first()).absoluteFilePath();
    const TopicStore &store = *opened;
    requireReadable(store);
    QList<Topic> topics;
    for (const QList<TopicPtr> all = store.topics(); const TopicPtr &topic : all) {
        topics += *topic;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    auto stopped = std::make_shared<std::atomic<bool>>(false);
    const auto stop = context.cancel.onCancel([stopped] { *stopped = true; });
    const WrittenFiles files = co_await onPool([=, live = store.file()] {
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

} // namespace vorle::cli
