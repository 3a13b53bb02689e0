#include "app/window/ShellParts.h"

#include "app/diagnostics/Diagnostics.h"
#include "app/wiring/Application.h"

#include <QGuiApplication>

namespace vorle {

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
        .diagnosticText = [sources] { return diagnosticText(diagnose(sources)); },
        .readOn = [&capture = app.capture()] { capture.resume(); }};
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
            .clock = app.clock(),
            .links = adapters.links,
            .pasteboard = adapters.pasteboard,
            .launcher = adapters.launcher,
            .files = adapters.files,
            .screens = std::move(screens),
            .apps = app.appLister()};
}

} // namespace vorle
