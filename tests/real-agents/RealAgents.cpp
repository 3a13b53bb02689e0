// Calls an installed agent through EngineAgent and tells what came of it.
// Usage: real_agents claude|codex PROMPT [--web] [--model NAME] [--timeout SECONDS]
#include "agents/EngineAgent.h"
#include "tests/support/Wait.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <system_error>

int main(int argc, char **argv) {
    using namespace vorle;
    QCoreApplication app(argc, argv);
    QCommandLineParser line;
    line.addOptions(
        {{QStringLiteral("web"), QString()},
         {QStringLiteral("model"), QString(), QStringLiteral("name")},
         {QStringLiteral("timeout"), QString(), QStringLiteral("s"), QStringLiteral("60")}});
    const QStringList words = QCoreApplication::arguments();
    line.process(words.first(1) + words.mid(3)); // the prompt may look like an option
    const std::chrono::seconds timeout(line.value(QStringLiteral("timeout")).toInt());

    EngineAgent agent(AgentEnvironment::ofThisProcess(), {}, {timeout, timeout});
    AgentRequest request;
    request.prompt = words.value(2);
    request.schema = QStringLiteral(
        R"({"type":"object","required":["candidates"],"additionalProperties":false,"properties":{)"
        R"("candidates":{"type":"array","items":{"type":"object","required":["title"],)"
        R"("additionalProperties":false,)"
        R"("properties":{"title":{"type":"string"},"url":{"type":"string"}}}}}})");
    request.model = line.value(QStringLiteral("model"));
    request.web = line.isSet(QStringLiteral("web")) ? WebAccess::On : WebAccess::Off;
    const AgentKind kind =
        words.value(1) == QStringLiteral("codex") ? AgentKind::Codex : AgentKind::Claude;
    QTextStream out(stdout);
    try {
        const AgentResult result =
            test::waitFor(agent.run(request, kind), timeout + std::chrono::seconds(10));
        out << "answer " << result.json.trimmed() << " cost " << result.spent.costUSD.value_or(-1)
            << '\n';
    } catch (const AgentError &error) {
        out << "error " << static_cast<int>(error.kind()) << ' ' << error.text() << '\n';
    } catch (const std::exception &error) {
        out << "refused " << error.what() << '\n';
    }
    return 0;
}
