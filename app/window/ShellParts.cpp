#include "app/window/ShellParts.h"

#include "app/wiring/Application.h"

namespace vorle {

Shell::Parts shellParts(Application &app, LinkOpener &links, Pasteboard &pasteboard,
                        ClaudeLauncher &launcher) {
    return {.store = app.store(),
            .preferences = app.preferences(),
            .provenance = app.provenance(),
            .engine = app.engine(),
            .briefs = app.briefs(),
            .capture = app.capture(),
            .agents = app.agent().locator(),
            .clock = app.clock(),
            .links = links,
            .pasteboard = pasteboard,
            .launcher = launcher};
}

} // namespace vorle
