#include "app/wiring/Startup.h"

#include "app/demo/Demonstration.h"

#include <QThread>

#include <exception>
#include <iterator>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace vorle {

namespace {

/// What people write for yes; anything else, "0" or nothing, is no.
bool isYes(const QString &value) {
    const QString word = value.trimmed().toLower();
    return word == u"1" || word == u"true" || word == u"yes" || word == u"oui" || word == u"on";
}

} // namespace

void ignoreRelativeFolders() {
    for (const char *name : {"XDG_RUNTIME_DIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                             "XDG_DATA_HOME", "XDG_STATE_HOME"}) {
        if (!qgetenv(name).startsWith('/')) {
            qunsetenv(name);
        }
    }
}

void requireThreads() {
    // Those of the pool, the writer of the topics, and one to spare: all at once.
    const int needed = QThread::idealThreadCount() + 2;
    std::vector<std::thread> threads;
    std::exception_ptr refusal;
    {
        std::mutex gate;
        const auto pass = [&gate] { const std::lock_guard inside(gate); };
        {
            const std::lock_guard closed(gate);
            try {
                while (std::ssize(threads) < needed) {
                    threads.emplace_back(pass);
                }
            } catch (const std::system_error &) {
                refusal = std::current_exception();
            }
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    }
    if (refusal) {
        std::rethrow_exception(refusal);
    }
}

std::unique_ptr<Demonstration> enterDemonstration() {
    auto demonstration = Demonstration::start();
    qunsetenv("VORLE_STORE");
    const auto variables = demonstration->environment();
    for (auto it = variables.cbegin(); it != variables.cend(); ++it) {
        qputenv(it.key().toLatin1().constData(), it.value().toLocal8Bit());
    }
    return demonstration;
}

Application::Setup setupFor(const Demonstration *demonstration, const InstalledApps &installedApps,
                            const SharedContainer *container, const UpdateConfig &updates) {
    Application::Setup setup;
    setup.installedApps = &installedApps;
    setup.allowLoopback =
        demonstration != nullptr || isYes(qEnvironmentVariable("VORLE_ALLOW_LOOPBACK"));
    if (demonstration == nullptr) {
        setup.updates = updates;
    }
    if (demonstration != nullptr) {
        setup.store = TopicStore::Kind::Demo;
        setup.settingsFile = demonstration->home() + QStringLiteral("/settings.json");
    } else if (container != nullptr && qEnvironmentVariableIsEmpty("VORLE_STORE")) {
        setup.container = container->folder().value_or(QString()); // of the user's own topics alone
    }
    return setup;
}

} // namespace vorle
