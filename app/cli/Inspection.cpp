// The commands that show and change nothing.

#include "agents/Ask.h"
#include "agents/EngineAgent.h"
#include "app/cli/Handlers.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "core/NumberText.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/run/RunPreview.h"
#include "search/web/Links.h"
#include "search/web/PageReader.h"

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

struct PageShown {
    QString url;
    std::optional<QString> title;
    std::optional<QString> description;
    QByteArray text;
    ReadLevel level = ReadLevel::None;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("url", &PageShown::url), json::field("title", &PageShown::title),
            json::field("description", &PageShown::description),
            json::field("text", &PageShown::text), json::field("level", &PageShown::level));
    }
};

struct AgentShown {
    QString name;
    QString state;
    std::optional<QString> path;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &AgentShown::name),
                          json::field("state", &AgentShown::state),
                          json::field("path", &AgentShown::path));
    }
};

struct AgentsShown {
    QString chosen;
    QList<AgentShown> agents;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("chosen", &AgentsShown::chosen),
                          json::field("agents", &AgentsShown::agents));
    }
};

/// Why nothing could be read of a page; empty when something was.
QString unreadReason(const ReadPage &page) {
    if (page.level != ReadLevel::None) {
        return {};
    }
    switch (page.outcome) {
    case HttpResponse::Outcome::Refused:
        return French::tr("vorle ne va pas à cette adresse, ou elle renvoie sans fin ailleurs");
    case HttpResponse::Outcome::Failed:
        return French::tr("le site est injoignable");
    case HttpResponse::Outcome::TimedOut:
        return French::tr("le site n’a pas répondu à temps");
    case HttpResponse::Outcome::Answered:
        return page.status < 200 || page.status > 299
                   ? French::tr("le site a répondu %1").arg(page.status)
                   : French::tr("la page ne contient aucun texte");
    }
    return {};
}

QString stateWord(AgentReadiness readiness) {
    switch (readiness) {
    case AgentReadiness::Ready:
        return QStringLiteral("ready");
    case AgentReadiness::SignedOut:
        return QStringLiteral("signed out");
    case AgentReadiness::Missing:
        return QStringLiteral("missing");
    }
    return {};
}

QString stateText(AgentReadiness readiness, AgentKind kind) {
    switch (readiness) {
    case AgentReadiness::Ready:
        return French::tr("prêt");
    case AgentReadiness::SignedOut:
        return French::tr("déconnecté (%1)").arg(signInLabel(kind));
    case AgentReadiness::Missing:
        return French::tr("introuvable");
    }
    return {};
}

} // namespace

Task<ExitStatus> consignes(Context &context, PromptSources sources) {
    const RunPreview preview =
        co_await previewRun({*sources.preferences, *sources.topics, *sources.asker, sources.clock,
                             [apps = sources.apps] {
                                 QStringList names;
                                 for (const discovery::App &app : apps()) {
                                     names += app.name;
                                 }
                                 return names;
                             }});
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

Task<ExitStatus> lire(Context &context, OnDemand<PageReader> reader) {
    const QString text = context.arguments.positional.first();
    const auto typed = WebLink::typed(text, WebLink::Host::Any);
    if (!typed) {
        throw Failure(French::tr("« %1 » n’est pas une adresse web.").arg(text));
    }
    const QString &link = typed->text();
    const ReadPage page = co_await reader->read(link, context.cancel, Reach::Anywhere);
    if (context.arguments.json()) {
        const PageShown shown{link, page.title, page.description, page.text, page.level};
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else {
        if (page.title) {
            context.console.print(context.console.bold(*page.title));
        }
        if (page.description) {
            context.console.print(context.console.faint(*page.description));
        }
        if (!page.text.isEmpty()) {
            context.console.print(u'\n' + context.console.plain(QString::fromUtf8(page.text)));
        }
    }
    QStringList facts{page.finalUrl, readLevelLabel(page.level)};
    if (const QString reason = unreadReason(page); !reason.isEmpty()) {
        facts += reason;
    }
    context.console.say(facts.join(QStringLiteral(" · ")));
    co_return page.level == ReadLevel::None ? ExitStatus::Failed : ExitStatus::Done;
}

Task<ExitStatus> agents(Context &context, OnDemand<EngineAgent> agent) {
    const AgentLocator &locator = agent->locator();
    const AgentKind chosen = locator.choose();
    AgentsShown shown;
    shown.chosen = json::rawText(chosen);
    QStringList lines;
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        const AgentReadiness readiness = locator.readiness(kind);
        const auto path = locator.locate(kind);
        shown.agents += {json::rawText(kind), stateWord(readiness), path};
        lines += QStringLiteral("%1 %2 : %3%4")
                     .arg(kind == chosen ? QStringLiteral("●") : QStringLiteral("○"))
                     .arg(displayName(kind), stateText(readiness, kind),
                          path ? QStringLiteral(" · ") + *path : QString());
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else {
        context.console.print(lines.join(u'\n'));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
