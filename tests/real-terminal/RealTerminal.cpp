#include "agents/AgentError.h"
#include "desktop/ClaudeLauncher.h"
#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/linux/LinuxTerminals.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

/// Takes a topic's first step in a terminal of this machine: real_terminal SETTINGS TERMINAL FOLDER
/// TITLE. Prints "opened", or the sentence the user would read.
int main(int argc, char **argv) {
    using namespace vorle;
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5) {
        return 2;
    }
    Preferences preferences(std::make_unique<SettingsFile>(arguments[1]));
    preferences.changeSetting(QStringLiteral("terminal"), arguments[2]);
    preferences.change(&Settings::projects, {{QStringLiteral("projet"), arguments[3]}});
    const AgentLocator agents(AgentEnvironment::ofThisProcess(), {});
    const LinuxTerminals terminals(LinuxTerminals::Setting::ofThisProcess());
    test::FakePasteboard pasteboard;
    test::FakeLinkOpener links;
    ClaudeLauncher launcher({agents, preferences, terminals, pasteboard, links});
    Topic topic;
    topic.title = arguments[4];
    topic.project = QStringLiteral("projet");
    QString outcome = QStringLiteral("opened");
    try {
        test::waitFor(launcher.takeFirstStep(topic));
    } catch (const LaunchError &error) {
        outcome = error.text();
    } catch (const AgentError &error) {
        outcome = error.text();
    }
    std::printf("%s\n", qUtf8Printable(outcome));
    return 0;
}
