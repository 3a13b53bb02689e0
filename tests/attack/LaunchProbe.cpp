#include "desktop/ClaudeLauncher.h"
#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/linux/LinuxTerminals.h"
#include "tests/attack/Probe.h"
#include "tests/support/Wait.h"

#include <QTemporaryDir>

#include <exception>

namespace vorle::attack {

QJsonObject launched(const QJsonObject &question) {
    const auto text = [&](const char *key) {
        return question.value(QLatin1StringView(key)).toString();
    };
    const QTemporaryDir folder;
    Preferences preferences(
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json"))));
    preferences.change(&Settings::projects, {{text("project"), text("folder")}});
    const AgentLocator locator(AgentEnvironment::ofThisProcess(), {});
    const LinuxTerminals terminals(LinuxTerminals::Setting::ofThisProcess());
    test::FakePasteboard pasteboard;
    test::FakeLinkOpener links;
    ClaudeLauncher launcher({locator, preferences, terminals, pasteboard, links});

    Topic topic;
    topic.title = text("title");
    topic.why = text("why");
    topic.firstStep = text("firstStep");
    topic.project = text("project");
    topic.sources = {{text("title"), text("url")}};
    QString error;
    try {
        const auto where = test::waitFor(launcher.takeFirstStep(topic));
        error =
            where == ClaudeLauncher::Where::Terminal ? QString() : QStringLiteral("no terminal");
    } catch (const std::exception &failure) {
        error = QString::fromUtf8(failure.what());
    }
    return {{QStringLiteral("error"), error}};
}

} // namespace vorle::attack
