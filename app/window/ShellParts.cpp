#include "app/window/ShellParts.h"

#include "app/wiring/Application.h"

namespace vorle {

Shell::Parts shellParts(Application &app, const ShellAdapters &adapters) {
    return {.store = app.store(),
            .preferences = app.preferences(),
            .provenance = app.provenance(),
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
            .apps = [&app] { return app.apps(); }};
}

} // namespace vorle
