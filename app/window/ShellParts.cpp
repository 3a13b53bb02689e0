#include "app/window/ShellParts.h"

#include "agents/AgentLocator.h"
#include "app/diagnostics/Diagnostics.h"
#include "app/wiring/Application.h"

#include <QGuiApplication>
#include <QSysInfo>
#include <QSystemTrayIcon>

namespace vorle {

namespace {

/// What a message to the maker says of where it comes from.
QString feedbackLine(const QString &version, const AgentLocator &agents) {
    return QStringLiteral("vorle %1, %2, %3")
        .arg(version.isEmpty() ? QCoreApplication::applicationVersion() : version,
             QSysInfo::prettyProductName(), displayName(agents.choose()));
}

} // namespace

Shell::Parts shellParts(Application &app, const ShellAdapters &adapters) {
    DiagnosticSources sources = app.diagnosticSources();
    sources.surface = QGuiApplication::platformName();
    Screens::Parts screens{
        .preferences = app.preferences(),
        .store = app.store(),
        .asker = app.asker(),
        .clock = app.clock(),
        .pasteboard = adapters.pasteboard,
        .files = adapters.files,
        .reveal = adapters.reveal,
        .notifier = adapters.notifier,
        .login = adapters.login,
        .hotKey = adapters.hotKey,
        .keys = adapters.keys,
        .mail = adapters.mail,
        .updater = adapters.updater,
        .diagnosticText = [sources] { return diagnosticText(diagnose(sources)); },
        .feedbackLine = [version = adapters.version,
                         &agents = app.agent().locator()] { return feedbackLine(version, agents); },
        .readOn = [&capture = app.capture()] { capture.resume(); },
        .hasMenuBar = [] { return QSystemTrayIcon::isSystemTrayAvailable(); }};
    return {.store = app.store(),
            .preferences = app.preferences(),
            .provenance = app.provenance(),
            .rediscoveries = app.rediscoveries(),
            .engine = app.engine(),
            .briefs = app.briefs(),
            .capture = app.capture(),
            .asker = app.asker(),
            .feeds = app.feeds(),
            .agents = app.agent().locator(),
            .agentSetup = app.agentSetup(),
            .clock = app.clock(),
            .links = adapters.links,
            .pasteboard = adapters.pasteboard,
            .launcher = adapters.launcher,
            .files = adapters.files,
            .screens = std::move(screens),
            .apps = app.appLister(),
            .browser = adapters.browser};
}

} // namespace vorle
