#pragma once

#include "agents/Ask.h"
#include "agents/setup/AgentSetup.h"
#include "app/diagnostics/Diagnostics.h"
#include "base/Clock.h"
#include "base/Descriptor.h"
#include "base/HttpClient.h"
#include "base/Resources.h"
#include "briefs/BriefWriter.h"
#include "core/Preferences.h"
#include "core/RediscoveryLog.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "desktop/WidgetPublisher.h"
#include "platform/InstalledApps.h"
#include "search/capture/LinkCapture.h"
#include "search/discovery/DiscoveryApps.h"
#include "search/feeds/Feeds.h"
#include "search/run/SearchEngine.h"
#include "search/web/PageReader.h"
#include "search/web/SourceImage.h"
#include "storage/StoreLock.h"
#include "update/AppcastEngine.h"
#include "update/UpdateConfig.h"

#include <functional>
#include <memory>

namespace vorle {

/// Makes the objects that live as long as the program and wires them to each other, each the first
/// time it is asked for: a command that reads a setting opens no topics file. Main thread.
class Application {
public:
    struct Setup {
        TopicStore::Kind store = TopicStore::Kind::Real;
        std::optional<QString> settingsFile; ///< instead of the user's own settings
        bool allowLoopback = false;          ///< links from strangers may reach this machine
        const InstalledApps *installedApps = nullptr; ///< outlives the application; null: no app
        /// The folder shared with the share sheet and the widget; empty: what they share lies
        /// beside the topics.
        QString container = {};
        /// The system's check of signatures, which outlives the application; null where it has
        /// none.
        const SignatureCheck *signatures = nullptr;
        std::function<void()> widgetsChanged = {}; ///< widgets are to read their file again
        /// Where new versions come from; nothing where the program is not to be updated, as in a
        /// demonstration.
        std::optional<UpdateConfig> updates = {};
    };

    explicit Application(Setup setup);

    const Clock &clock() const { return m_clock; }
    const Resources &resources() const { return m_resources; }
    Preferences &preferences();
    /// The topics file this application works on.
    /// @throws std::system_error when its folder cannot be made
    QString topicsFile() const { return TopicStore::location(m_setup.store); }
    /// Where the file or folder of that name lies that other programs of ours share with this one.
    /// @throws as topicsFile()
    QString sharedPath(const QString &name) const;
    /// The topics. Whoever is going to change them holds `lock()` first.
    /// @throws std::system_error when the topics file's folder cannot be made
    TopicStore &store();
    /// What stood behind the scores: one owner of its file. @throws as `store()`
    ScoreProvenanceLog &provenance();
    /// Which topics of the reserve runs came upon again. @throws as `store()`
    RediscoveryLog &rediscoveries();
    /// The right to change the topics. @throws std::system_error as `store()`
    StoreLock &lock();
    /// The right to be the app on these topics. @throws std::system_error as `store()`
    StoreLock &appLock();
    HttpClient &http();
    PageReader &reader();
    Feeds &feeds();
    SourceImage &images();
    /// The apps installed on this machine, in the order they are shown in. Read at each call.
    QList<discovery::App> apps() const { return appLister()(); }
    /// Reads them on any thread, and may outlive the application.
    std::function<QList<discovery::App>()> appLister() const;
    EngineAgent &agent();
    /// Installs agents and signs in to them: never those of a demonstration.
    AgentSetup &agentSetup();
    Asker &asker();
    SearchEngine &engine();
    BriefWriter &briefs();
    /// Whoever had it start on something waits for it before the application goes.
    LinkCapture &capture();

    /// Where the snapshot for widgets stands. @throws as `store()`
    QString widgetFile() const;
    /// Keeps it up to date from then on; it is the demonstration's own in one. @throws as `store()`
    WidgetPublisher &widget();
    /// Ends once the last state is there, where anybody asked for it to be kept up to date.
    Task<> published();

    /// Where new versions come from, and the program that they take the place of; "" where none
    /// may.
    UpdateConfig updateConfig() const { return m_setup.updates.value_or(UpdateConfig()); }
    QString updatedProgram() const;
    /// What keeps the program current where the system brings nothing for that.
    AppcastEngine &updates();

    /// Where its diagnostics are drawn from. What it gives is good as long as the application is.
    DiagnosticSources diagnosticSources();

    /// What the user has to know of how the settings and the topics were found, as far as they were
    /// opened: French sentences.
    QStringList notices() const;
    /// Waits until the settings that were changed are on disk. Gives a French sentence when they
    /// could not be written.
    std::optional<QString> settingsProblem() const;

private:
    Setup m_setup;
    // What it starts lies beside it, also once another version took this one's place.
    Descriptor m_version;
    SystemClock m_clock;
    Resources m_resources;
    // In the order they depend on each other: the last made goes first.
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<StoreLock> m_appLock; // given back last
    std::unique_ptr<StoreLock> m_lock;
    std::unique_ptr<TopicStore> m_store;
    std::unique_ptr<ScoreProvenanceLog> m_provenance;
    std::unique_ptr<RediscoveryLog> m_rediscoveries;
    std::unique_ptr<HttpClient> m_http;
    std::unique_ptr<PageReader> m_reader;
    std::unique_ptr<Feeds> m_feeds;
    std::unique_ptr<SourceImage> m_images;
    std::unique_ptr<EngineAgent> m_agent;
    std::unique_ptr<AgentSetup> m_agentSetup;
    std::unique_ptr<Asker> m_asker;
    std::unique_ptr<SearchEngine> m_engine;
    std::unique_ptr<BriefWriter> m_briefs;
    std::unique_ptr<LinkCapture> m_capture;
    std::unique_ptr<WidgetPublisher> m_widget;
    std::unique_ptr<AppcastEngine> m_updates;
};

} // namespace vorle
