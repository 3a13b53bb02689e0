#include "agents/AgentError.h"
#include "agents/setup/AgentSetup.h"
#include "app/cli/AgentArgument.h"
#include "app/cli/Handlers.h"
#include "app/labels/AgentLabels.h"
#include "base/French.h"

#include <QProcess>
#include <QStandardPaths>

namespace vorle::cli {

namespace {

/// Opens the page in the user's browser, which outlives this command. False where none is known,
/// or no screen is there to show it on.
bool openPage(const WebLink &page) {
#if defined(Q_OS_MACOS)
    const QString program = QStringLiteral("/usr/bin/open");
#else
    const bool screen =
        qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const QString program =
        screen ? QStandardPaths::findExecutable(QStringLiteral("xdg-open")) : QString();
#endif
    QProcess browser;
    browser.setProgram(program);
    browser.setArguments({page.text()});
    browser.setStandardInputFile(QProcess::nullDevice());
    browser.setStandardOutputFile(QProcess::nullDevice()); // the results are ours
    browser.setStandardErrorFile(QProcess::nullDevice());
    return !program.isEmpty() && browser.startDetached();
}

} // namespace

Task<ExitStatus> connecter(Context &context, OnDemand<AgentSetup> setup) {
    co_await setup->recover(context.cancel);
    const AgentLocator &agents = setup->agents();
    const AgentKind kind = agentMeant(context, agents);
    Console &console = context.console;
    const AgentReadiness found = agents.readiness(kind);
    if (found == AgentReadiness::Missing) {
        throw Failure(AgentError::notFound(displayName(kind)).text() + u'\n' +
                      French::tr("Pour l’installer : vorle installer %1").arg(json::rawText(kind)));
    }
    const bool before = found == AgentReadiness::Ready;
    if (!before) {
        const auto show = [&console](const WebLink &page) {
            console.say(openPage(page)
                            ? signInPageText()
                            : French::tr("Ouvre cette page et valides-y la connexion :"));
            console.say(page.text());
        };
        console.say(
            French::tr("Connexion à %1 : une page va s’ouvrir dans ton navigateur, j’attends "
                       "que tu la valides.")
                .arg(displayName(kind)));
        if (!co_await setup->signIn(kind, show, context.cancel)) {
            throw Failure(signInFailureText());
        }
    }
    if (context.arguments.json()) {
        console.print(json::encode(shownAgent(agents, kind), json::Style::Pretty));
    } else if (before) {
        console.print(French::tr("%1 est déjà connecté.").arg(displayName(kind)));
    } else {
        console.print(agentReadyText(kind));
    }
    if (const AgentKind used = agents.choose(); used != kind) {
        console.say(French::tr("Pour l’instant j’utilise %1 : cela se change dans les réglages.")
                        .arg(displayName(used)));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
