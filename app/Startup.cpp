#include "app/Startup.h"

#include "app/demo/Demonstration.h"

namespace vorle {

std::unique_ptr<Demonstration> enterDemonstration() {
    auto demonstration = Demonstration::start();
    qunsetenv("VORLE_STORE");
    const auto variables = demonstration->environment();
    for (auto it = variables.cbegin(); it != variables.cend(); ++it) {
        qputenv(it.key().toLatin1().constData(), it.value().toLocal8Bit());
    }
    return demonstration;
}

Application::Setup setupFor(const Demonstration *demonstration,
                            const InstalledApps &installedApps) {
    Application::Setup setup;
    setup.installedApps = &installedApps;
    const QByteArray loopback = qgetenv("VORLE_ALLOW_LOOPBACK");
    setup.allowLoopback = demonstration != nullptr || (!loopback.isEmpty() && loopback != "0");
    if (demonstration != nullptr) {
        setup.store = TopicStore::Kind::Demo;
        setup.settingsFile = demonstration->home() + QStringLiteral("/settings.json");
    }
    return setup;
}

} // namespace vorle
