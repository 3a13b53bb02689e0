#pragma once

#include "core/Preferences.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "search/feeds/Feeds.h"
#include "search/run/SearchEngine.h"
#include "search/web/PageReader.h"
#include "search/web/SourceImage.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Settle.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QTemporaryDir>

namespace vorle::test {

/// The objects of a run on real collaborators: a child process for the agent, real HTTP, real
/// files. At the end it stops the run under way and waits for it: a coroutine that nothing resumes
/// would be lost with all that it holds.
class RunParts {
public:
    explicit RunParts(const Clock &time, LocalZone zone = {})
        : feeds(http, time)
        , store(folder.filePath(QStringLiteral("topics.json")), resources, time)
        , provenance(store, time)
        , rediscoveries(store, time)
        , engine({.preferences = preferences,
                  .store = store,
                  .provenance = provenance,
                  .rediscoveries = rediscoveries,
                  .asker = asker,
                  .reader = reader,
                  .feeds = feeds,
                  .images = images,
                  .clock = time,
                  .zone = std::move(zone)}) {}
    ~RunParts() {
        engine.stop();
        settle([this] { return engine.phase() == SearchEngine::Phase::Idle; });
    }
    RunParts(const RunParts &) = delete;
    RunParts &operator=(const RunParts &) = delete;

    static QByteArray page(const char *name) {
        return QByteArray("<title>Page ") + name + "</title><article>" +
               QByteArray("mot ").repeated(300) + "</article>";
    }

    QTemporaryDir folder;
    ScriptedAgent claude{folder.filePath(QStringLiteral("home"))};
    TestServer server;
    Resources resources{QStringLiteral(VORLE_RESOURCES)};
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    HttpClient http{true};
    PageReader reader{http, std::chrono::seconds(5)};
    EngineAgent agent{claude.environment(),
                      [] { return QString(); },
                      {std::chrono::seconds(4), std::chrono::seconds(4)}};
    Asker asker{agent, resources, std::chrono::milliseconds(10)};
    SourceImage images{http,
                       {folder.filePath(QStringLiteral("pictures")), server.url({}).toString()}};
    Feeds feeds;
    TopicStore store;
    ScoreProvenanceLog provenance;
    RediscoveryLog rediscoveries;
    SearchEngine engine;
};

} // namespace vorle::test
