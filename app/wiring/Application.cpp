#include "app/wiring/Application.h"

#include "base/French.h"
#include "storage/BesideTopics.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTimer>

namespace vorle {

Application::Application(Setup setup)
    : m_setup(std::move(setup))
    , m_version(Installation::hold(QCoreApplication::applicationFilePath())) {}

Preferences &Application::preferences() {
    if (!m_preferences) {
        auto file = m_setup.settingsFile ? std::make_unique<SettingsFile>(*m_setup.settingsFile)
                                         : std::make_unique<SettingsFile>();
        m_preferences = std::make_unique<Preferences>(std::move(file));
    }
    return *m_preferences;
}

StoreLock &Application::lock() {
    if (!m_lock) {
        m_lock = std::make_unique<StoreLock>(TopicStore::location(m_setup.store));
    }
    return *m_lock;
}

StoreLock &Application::appLock() {
    if (!m_appLock) {
        m_appLock = std::make_unique<StoreLock>(TopicStore::location(m_setup.store),
                                                StoreLock::Right::BeTheApp);
    }
    return *m_appLock;
}

QString Application::sharedPath(const QString &name) const {
    return m_setup.container.isEmpty() ? sidecarPath(topicsFile(), name)
                                       : m_setup.container + u'/' + name;
}

TopicStore &Application::store() {
    if (!m_store) {
        m_store = std::make_unique<TopicStore>(m_setup.store, m_resources, m_clock);
    }
    return *m_store;
}

ScoreProvenanceLog &Application::provenance() {
    if (!m_provenance) {
        m_provenance = std::make_unique<ScoreProvenanceLog>(store(), m_clock);
    }
    return *m_provenance;
}

RediscoveryLog &Application::rediscoveries() {
    if (!m_rediscoveries) {
        m_rediscoveries = std::make_unique<RediscoveryLog>(store(), m_clock);
    }
    return *m_rediscoveries;
}

HttpClient &Application::http() {
    if (!m_http) {
        m_http = std::make_unique<HttpClient>(m_setup.allowLoopback);
    }
    return *m_http;
}

PageReader &Application::reader() {
    if (!m_reader) {
        m_reader = std::make_unique<PageReader>(http());
    }
    return *m_reader;
}

Feeds &Application::feeds() {
    if (!m_feeds) {
        m_feeds = std::make_unique<Feeds>(http(), m_clock);
    }
    return *m_feeds;
}

std::function<QList<discovery::App>()> Application::appLister() const {
    return [machine = m_setup.installedApps] {
        QList<discovery::App> apps;
        const auto installed = machine != nullptr ? machine->list() : QList<InstalledApp>();
        for (const InstalledApp &app : installed) {
            apps += {app.name, app.location, app.category, app.icon};
        }
        return discovery::inOrder(std::move(apps));
    };
}

EngineAgent &Application::agent() {
    if (!m_agent) {
        m_agent = std::make_unique<EngineAgent>(AgentEnvironment::ofThisProcess(), [this] {
            return preferences().settings().agent.value_or(QString());
        });
        m_agent->setMending([this](CancelToken cancel) -> Task<> {
            co_await agentSetup().recover(std::move(cancel));
        });
    }
    return *m_agent;
}

AgentSetup &Application::agentSetup() {
    if (!m_agentSetup) {
        m_agentSetup = std::make_unique<AgentSetup>(AgentSetup::Parts{
            .agents = agent().locator(),
            .http = OnDemand<HttpClient>([this]() -> HttpClient & { return http(); }),
            .signatures = m_setup.signatures,
            .sources = AgentSources::forProcessor(QSysInfo::currentCpuArchitecture())});
    }
    return *m_agentSetup;
}

Asker &Application::asker() {
    if (!m_asker) {
        // A model is of the agent that was chosen with it: a variable may name another one.
        const auto model = [this](AgentKind kind) {
            const Settings &settings = preferences().settings();
            return !settings.agent || *settings.agent == json::rawText(kind) ? settings.agentModel
                                                                             : std::nullopt;
        };
        m_asker = std::make_unique<Asker>(agent(), m_resources, std::chrono::seconds(5), model);
    }
    return *m_asker;
}

SourceImage &Application::images() {
    if (!m_images) {
        m_images = std::make_unique<SourceImage>(http());
    }
    return *m_images;
}

SearchEngine &Application::engine() {
    if (!m_engine) {
        m_engine = std::make_unique<SearchEngine>(
            SearchEngine::Parts{.preferences = preferences(),
                                .store = store(),
                                .provenance = provenance(),
                                .rediscoveries = rediscoveries(),
                                .asker = asker(),
                                .reader = reader(),
                                .feeds = feeds(),
                                .images = images(),
                                .clock = m_clock,
                                .apps = [this] { return discovery::namesOf(apps()); }});
        const auto search = [this](bool searching) {
            if (m_widget) {
                m_widget->setSearching(searching);
            }
        };
        SearchEngine &engine = *m_engine;
        QObject::connect(&engine, &SearchEngine::started, &engine, [search] { search(true); });
        QObject::connect(&engine, &SearchEngine::finished, &engine, [search] { search(false); });
        QObject::connect(&engine, &SearchEngine::failed, &engine, [search] { search(false); });
    }
    return *m_engine;
}

BriefWriter &Application::briefs() {
    if (!m_briefs) {
        m_briefs = std::make_unique<BriefWriter>(
            BriefWriter::Parts{preferences(), store(), asker(), m_clock});
    }
    return *m_briefs;
}

LinkCapture &Application::capture() {
    if (!m_capture) {
        m_capture = std::make_unique<LinkCapture>(LinkCapture::Parts{
            preferences(), store(), provenance(), asker(), reader(), images(), m_clock});
    }
    return *m_capture;
}

QString Application::widgetFile() const { return sharedPath(QStringLiteral("widget.json")); }

WidgetPublisher &Application::widget() {
    if (!m_widget) {
        m_widget = std::make_unique<WidgetPublisher>(
            WidgetPublisher::Parts{.store = store(),
                                   .preferences = preferences(),
                                   .clock = m_clock,
                                   .file = widgetFile(),
                                   .pictures = SourceImage::defaultCacheFolder(),
                                   .published = m_setup.widgetsChanged});
    }
    return *m_widget;
}

Task<> Application::published() {
    if (m_widget) {
        co_await m_widget->ended();
    }
}

QString Application::updatedProgram() const {
    return m_setup.updates ? QCoreApplication::applicationFilePath() : QString();
}

AppcastEngine &Application::updates() {
    if (!m_updates) {
        m_updates = std::make_unique<AppcastEngine>(AppcastEngine::Parts{
            .preferences = preferences(),
            .clock = m_clock,
            .config = updateConfig(),
            .program = updatedProgram(),
            .version = QCoreApplication::applicationVersion(),
            // From the event loop: whoever asks may be waited for by the end.
            .quit = [] { QTimer::singleShot(0, qApp, &QCoreApplication::quit); }});
    }
    return *m_updates;
}

DiagnosticSources Application::diagnosticSources() {
    return {OnDemand<Preferences>([this]() -> Preferences & { return preferences(); }),
            OnDemand<TopicStore>([this]() -> TopicStore & { return store(); }),
            OnDemand<EngineAgent>([this]() -> EngineAgent & { return agent(); }),
            [this] { return topicsFile(); },
            m_clock,
            QStringLiteral("terminal")};
}

QStringList Application::notices() const {
    QStringList sentences;
    if (m_preferences && m_preferences->notice()) {
        sentences += *m_preferences->notice();
    }
    if (m_store && m_store->notice()) {
        sentences += *m_store->notice();
        if (m_store->readable() && !m_store->readable()->topics.isEmpty()) {
            sentences += French::tr("Pour reprendre ce qui est lisible : vorle reparer");
        }
    }
    return sentences;
}

std::optional<QString> Application::settingsProblem() const {
    return m_preferences && !m_preferences->flush() ? m_preferences->writeError() : std::nullopt;
}

} // namespace vorle
