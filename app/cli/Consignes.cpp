#include "agents/Ask.h"
#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/Text.h"
#include "core/NumberText.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/run/RunPreview.h"

namespace vorle::cli {

namespace {

struct PromptShown {
    QString scope;
    QString prompt;
    QString schema;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("scope", &PromptShown::scope),
                          json::field("prompt", &PromptShown::prompt),
                          json::field("schema", &PromptShown::schema));
    }
};

} // namespace

Task<ExitStatus> consignes(Context &context, PromptSources sources) {
    const RunPreview preview =
        co_await previewRun({*sources.preferences, *sources.topics, *sources.asker, sources.clock,
                             [apps = sources.apps] { return discovery::namesOf(apps()); }});
    if (!preview.refusal.isEmpty()) {
        throw Failure(preview.refusal);
    }
    for (const QString &warning : preview.warnings) {
        context.console.say(warning);
    }
    QList<PromptShown> prompts;
    for (const PromptPreview &each : preview.prompts) {
        prompts += {each.scope, each.prompt, each.schema};
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(prompts, json::Style::Pretty));
        co_return ExitStatus::Done;
    }
    for (const PromptShown &prompt : prompts) {
        context.console.print(
            context.console.bold(prompt.scope) +
            context.console.faint(French::tr("  %1 caractères, %2 octets")
                                      .arg(numberText(characterCount(prompt.prompt)),
                                           numberText(utf8Size(prompt.prompt)))) +
            QStringLiteral("\n\n") + context.console.plain(prompt.prompt.trimmed()) + u'\n');
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
