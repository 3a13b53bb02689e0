#pragma once

#include "app/cli/Command.h"
#include "app/cli/TopicArgument.h"
#include "app/diagnostics/Diagnostics.h"
#include "base/Clock.h"
#include "base/OnDemand.h"
#include "search/discovery/DiscoveryApps.h"
#include "update/UpdateConfig.h"

namespace vorle {
class AgentLocator;
class AgentSetup;
class Asker;
class BriefWriter;
class EngineAgent;
class Feeds;
class LinkCapture;
class PageReader;
class Preferences;
class Resources;
class RediscoveryLog;
class ScoreProvenanceLog;
class SearchEngine;
class StoreLock;
class TopicStore;
} // namespace vorle

/// What runs for each row of commands(), in its order: the parameters are all that a command can
/// reach. `context` and what is given by reference outlive the task.
namespace vorle::cli {

/// The apps of this machine, in the order they are shown in.
using InstalledAppsList = std::function<QList<discovery::App>()>;

Task<ExitStatus> fouille(Context &context, TopicsToChange topics, OnDemand<SearchEngine> engine,
                         const Clock &clock);

/// What a run's prompts are made of.
struct PromptSources {
    OnDemand<Preferences> preferences;
    OnDemand<TopicStore> topics;
    OnDemand<Asker> asker;
    const Clock &clock;
    InstalledAppsList apps;
};
Task<ExitStatus> consignes(Context &context, PromptSources sources);

Task<ExitStatus> sujets(Context &context, OnDemand<TopicStore> topics,
                        OnDemand<Preferences> preferences, OnDemand<ScoreProvenanceLog> provenance,
                        OnDemand<RediscoveryLog> rediscoveries, const Clock &clock);
/// Where links are added, and what of.
struct LinkDoors {
    TopicsToChange topics;
    OnDemand<LinkCapture> capture;
    std::function<QString()> inbox; ///< the drop folder; @throws std::system_error
};
Task<ExitStatus> ajouter(Context &context, LinkDoors doors, const Clock &clock);
Task<ExitStatus> capturer(Context &context, std::function<QString()> topicsFile);
Task<ExitStatus> integrer(Context &context, const Resources &resources);
Task<ExitStatus> trier(Context &context, TopicsToChange topics, OnDemand<LinkCapture> capture,
                       const Clock &clock);
Task<ExitStatus> corriger(Context &context, TopicsToChange topics, const Clock &clock);
Task<ExitStatus> programme(Context &context, OnDemand<TopicStore> topics,
                           OnDemand<Preferences> preferences, const Clock &clock);
Task<ExitStatus> bilan(Context &context, OnDemand<TopicStore> topics,
                       OnDemand<Preferences> preferences, OnDemand<ScoreProvenanceLog> provenance,
                       const Clock &clock);
Task<ExitStatus> calibrer(Context &context, TopicsToChange topics, const Clock &clock);
Task<ExitStatus> fiche(Context &context, TopicsToChange topics, OnDemand<BriefWriter> briefs,
                       const Resources &resources, const Clock &clock);
Task<ExitStatus> lire(Context &context, OnDemand<PageReader> reader);
Task<ExitStatus> flux(Context &context, OnDemand<Feeds> feeds, const Clock &clock);
Task<ExitStatus> decouverte(Context &context, OnDemand<Preferences> preferences,
                            InstalledAppsList apps);
Task<ExitStatus> reflexes(Context &context, OnDemand<TopicStore> topics,
                          OnDemand<Preferences> preferences, const Clock &clock);
Task<ExitStatus> projet(Context &context, OnDemand<Preferences> preferences);
Task<ExitStatus> reglages(Context &context, OnDemand<Preferences> preferences);
Task<ExitStatus> exporter(Context &context, OnDemand<TopicStore> topics);
Task<ExitStatus> importer(Context &context, TopicsToChange topics, OnDemand<LinkCapture> capture);
Task<ExitStatus> reparer(Context &context, TopicsToChange topics);
Task<ExitStatus> banc(Context &context, OnDemand<EngineAgent> agent, OnDemand<Asker> asker,
                      const Resources &resources);
Task<ExitStatus> agents(Context &context, OnDemand<EngineAgent> agent);
Task<ExitStatus> installer(Context &context, OnDemand<AgentSetup> setup);
Task<ExitStatus> connecter(Context &context, OnDemand<AgentSetup> setup);
/// Shows the file that widgets read. That a run is under way is believed as long as
/// `isSomebodyThere` says that a process works with the topics: one that was killed takes nothing
/// back.
Task<ExitStatus> widget(Context &context, std::function<QString()> file,
                        std::function<bool()> isSomebodyThere, const Clock &clock);
Task<ExitStatus> diagnostic(Context &context, DiagnosticSources sources);
/// What a new version is looked for with, and installed.
struct UpdateDoor {
    UpdateConfig config;
    QString program; ///< the one that runs, by its path; "" where it is not to be updated
    std::function<QString()> topicsFile; ///< @throws std::system_error
    OnDemand<StoreLock> appLock;
};
Task<ExitStatus> miseAJour(Context &context, UpdateDoor door);

} // namespace vorle::cli
