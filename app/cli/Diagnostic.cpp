// What helps to mend the program on somebody's machine, and nothing of what they watch.

#include "app/cli/CommandForwarding.h"
#include "app/cli/Handlers.h"

#include <system_error>

namespace vorle::cli {

Task<ExitStatus> diagnostic(Context &context, DiagnosticSources sources) {
    if (context.host == Host::App) {
        sources.surface = QStringLiteral("app");
    } else {
        // The open app knows its own last errors.
        QString file;
        try {
            file = sources.topicsFile();
        } catch (const std::system_error &) {
            file.clear(); // told among the problems
        }
        if (!file.isEmpty()) {
            if (const auto status = co_await forwardCommand(context, file)) {
                co_return *status;
            }
        }
    }
    const Diagnostics told = diagnose(sources);
    if (context.arguments.json()) {
        context.console.print(json::encode(told, json::Style::Pretty));
    } else {
        context.console.print(context.console.plain(diagnosticText(told)).trimmed());
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
