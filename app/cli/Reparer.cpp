// The command that takes up what can be read of a damaged topics file.

#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/cli/TopicArgument.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"

namespace vorle::cli {

namespace {

struct RepairShown {
    qsizetype kept = 0; ///< topics there are now
    qsizetype left = 0; ///< entries that could not be read
    std::optional<QString> aside;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("kept", &RepairShown::kept),
                          json::field("left", &RepairShown::left),
                          json::field("aside", &RepairShown::aside));
    }
};

} // namespace

Task<ExitStatus> reparer(Context &context, TopicsToChange topics) {
    if (const auto forwarded = co_await holdTopics(context, topics)) {
        co_return *forwarded;
    }
    TopicStore &store = *topics.store;
    const auto readable = store.readable();
    RepairShown shown{store.count(), 0, std::nullopt};
    QString said = French::tr("Ton fichier de sujets se lit en entier : rien à réparer.");
    ExitStatus status = ExitStatus::Done;
    if (readable) {
        shown.left = readable->left;
        shown.kept = store.repair();
        co_await onceSaved(context, store);
        if (shown.kept == 0) {
            said = French::tr("Rien n’est lisible dans ton fichier de sujets. Je n’y touche pas.");
            status = ExitStatus::Failed;
        } else {
            shown.aside = store.setAside();
            said = repairedText(shown.kept, readable->entries()) +
                   French::tr(" L’ancien fichier est gardé ici : %1").arg(*shown.aside);
        }
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    }
    context.console.say(said);
    co_return status;
}

} // namespace vorle::cli
