#pragma once

#include "app/models/Sections.h"
#include "core/ScoreProvenanceLog.h"
#include "search/feeds/Feeds.h"
#include "search/web/PageReader.h"
#include "search/web/SourceImage.h"
#include "tests/app/models/Watched.h"

#include <QTemporaryDir>

namespace vorle::test {

/// The window's sections over a store in memory, with all that they tell of.
struct SectionsShelf {
    Shelf shelf;
    QTemporaryDir folder;
    Resources resources;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    HttpClient http{false};
    PageReader reader{http};
    EngineAgent agent{AgentEnvironment(), [] { return QString(); }};
    Asker asker{agent, resources};
    Feeds feeds{http, shelf.clock};
    SourceImage images{http, folder.path()};
    ScoreProvenanceLog provenance{shelf.store, shelf.clock};
    RediscoveryLog rediscoveries{shelf.store, shelf.clock};
    SearchEngine engine{{.preferences = preferences,
                         .store = shelf.store,
                         .provenance = provenance,
                         .rediscoveries = rediscoveries,
                         .asker = asker,
                         .reader = reader,
                         .feeds = feeds,
                         .images = images,
                         .clock = shelf.clock}};
    RunModel run{engine, preferences, shelf.store, shelf.clock, QTimeZone::utc()};
    ProgramBudget budget{shelf.store, preferences, shelf.clock, shelf.list(Section::Program),
                         QTimeZone::utc()};
    Sections sections{Sections::Parts{shelf.list(Section::Inbox), shelf.list(Section::Program),
                                      shelf.list(Section::Reserve), shelf.list(Section::Library),
                                      budget, run, preferences, shelf.clock, QTimeZone::utc()}};
};

} // namespace vorle::test
