#pragma once

#include "base/Json.h"
#include "core/PrioritySite.h"
#include "core/Schedule.h"
#include "core/SettingRow.h"
#include "core/Shortcut.h"

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>

#include <optional>

namespace vorle {

enum class Appearance { Automatic, Light, Dark };
constexpr std::array<std::string_view, 3> rawStrings(Appearance) {
    return {"Automatique", "Clair", "Sombre"};
}

enum class Accent { Braise, Framboise, Lagune, Indigo };
constexpr std::array<std::string_view, 4> rawStrings(Accent) {
    return {"Braise", "Framboise", "Lagune", "Indigo"};
}

enum class TerminalApp { Terminal, ITerm, Ghostty };
constexpr std::array<std::string_view, 3> rawStrings(TerminalApp) {
    return {"Terminal", "iTerm", "Ghostty"};
}

enum class NotifyMode { EveryRun, UrgentOnly, Never };
constexpr std::array<std::string_view, 3> rawStrings(NotifyMode) {
    return {"À chaque fouille", "Seulement si urgent", "Jamais"};
}

/// How the list of apps is used. Any unknown word reads as Only: the narrower mode is the default.
enum class AccessMode {
    AllExcept, ///< all apps but the excluded ones
    Only       ///< the kept ones alone
};
constexpr std::array<std::string_view, 2> rawStrings(AccessMode) { return {"allExcept", "only"}; }

/// What the last search run came to.
struct LastReport {
    QDateTime date;
    int added = 0;      ///< topics added to the inbox
    double costUSD = 0; ///< of the agent calls, in US dollars; 0 when the agent does not say
    double seconds = 0;
    QList<QString> uncovered; ///< the declared topics that stayed without a candidate
    json::Rest unknown = {};  ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("date", &LastReport::date),
                          json::field("added", &LastReport::added),
                          json::field("costUSD", &LastReport::costUSD),
                          json::field("seconds", &LastReport::seconds),
                          json::field("uncovered", &LastReport::uncovered));
    }
    static constexpr auto jsonRest() { return &LastReport::unknown; }
    bool operator==(const LastReport &) const = default;
};

/// Every setting of the user, with its default. Lists that are used as sets hold each text once.
struct Settings {
    int weeklyMinutes = 180; ///< time budget of the program
    Schedule schedule;
    Appearance appearance = Appearance::Automatic;
    Accent accent = Accent::Braise;
    TerminalApp terminal = TerminalApp::Terminal;
    NotifyMode notifyMode = NotifyMode::EveryRun;
    bool notifyReminder = false;
    TimeOfDay reminder;
    Shortcut captureShortcut;
    bool proposeTab = true; ///< quick capture offers the front browser tab
    bool onboarded = false;
    bool calibrated = false;
    std::optional<QDateTime> calibrationStart;
    std::optional<QString> job;
    QList<QString> interests;
    QList<QString> excludedApps; ///< a set
    QList<QString> keptApps;     ///< a set
    QList<QString> addedTools;
    QList<PrioritySite> prioritySites;
    QList<QString> disabledReflexes; ///< a set of reflex identifiers
    std::optional<QDateTime> reflexesSince;
    QMap<QString, int> interestWeights; ///< 1 to 5, 5 matters most
    int radiusLevel = 2;                ///< as stored, 0 to 6; see Preferences::radius()
    QList<QString> exclusions;
    AccessMode accessMode = AccessMode::Only;
    QMap<QString, QString> projects; ///< a project's name to its folder's path
    QMap<QString, QString> projectDescriptions;
    std::optional<QString> agent; ///< "claude" or "codex"; nothing while the user has not chosen
    /// The model that agent is asked for; nothing: its own choice. Goes when another agent is
    /// chosen.
    std::optional<QString> agentModel;
    int textScale = 100;                  ///< the size of all texts in the window, in percent
    int onboardingStep = 0;               ///< the step that the first set-up was left at
    std::optional<bool> updateChecks;     ///< daily; nothing while the user was not asked
    bool updateInstalls = false;          ///< what a check finds is installed unasked
    std::optional<QString> skippedUpdate; ///< a version that no check of its own accord offers
    std::optional<QDateTime> lastUpdateCheck;
    std::optional<LastReport> lastReport;
    /// When the last run ended that handed its topics over, whatever it left unjudged.
    std::optional<QDateTime> lastSearch;
    /// The slot of the schedule that this run served, as Schedule::slotAt() names it.
    std::optional<QString> servedSlot;
    /// That slot, unless a clock that was wrong dated the run far ahead of `now`: then the slot it
    /// named is one that no run served.
    std::optional<QString> believedSlot(const QDateTime &now) const {
        return believes(now) ? servedSlot : std::nullopt;
    }
    /// Whether the last run, if any, was dated by a clock to believe: at most 7 days ahead of
    /// `now`.
    bool believes(const QDateTime &now) const {
        return !lastSearch || *lastSearch <= now.addDays(7);
    }
    /// Where the next run's period starts; at `lastSearch` when there is none. It stays behind for
    /// one run when links were left without a judgment.
    std::optional<QDateTime> searchedUntil;

    /// The table of all settings, in this order: command line, screens and disk are served from it.
    static constexpr auto rows() {
        return std::tuple(
            settingRow("weeklyMinutes", &Settings::weeklyMinutes, {.range = &weeklyMinutesRange}),
            settingRow("schedule", &Settings::schedule),
            settingRow("appearance", &Settings::appearance),
            settingRow("accent", &Settings::accent), settingRow("terminal", &Settings::terminal),
            settingRow("notifyMode", &Settings::notifyMode),
            settingRow("notifyReminder", &Settings::notifyReminder),
            settingRow("reminder", &Settings::reminder),
            settingRow("captureShortcut", &Settings::captureShortcut),
            settingRow("proposeTab", &Settings::proposeTab),
            settingRow("onboarded", &Settings::onboarded),
            settingRow("calibrated", &Settings::calibrated, {}, migrateCalibrated),
            settingRow("calibrationStart", &Settings::calibrationStart),
            settingRow("job", &Settings::job), settingRow("interests", &Settings::interests),
            settingRow("excludedApps", &Settings::excludedApps, {.once = true}),
            settingRow("keptApps", &Settings::keptApps, {.once = true}),
            settingRow("addedTools", &Settings::addedTools),
            settingRow("prioritySites", &Settings::prioritySites),
            settingRow("disabledReflexes", &Settings::disabledReflexes, {.once = true}),
            settingRow("reflexesSince", &Settings::reflexesSince),
            settingRow("interestWeights", &Settings::interestWeights,
                       {.range = &interestWeightRange}),
            settingRow("radiusLevel2", &Settings::radiusLevel, {.range = &radiusRange},
                       migrateRadius),
            settingRow("exclusions", &Settings::exclusions),
            settingRow("accessMode", &Settings::accessMode),
            settingRow("projects", &Settings::projects),
            settingRow("projectDescriptions", &Settings::projectDescriptions),
            settingRow("agent", &Settings::agent, {.words = agentWords}),
            settingRow("agentModel", &Settings::agentModel, {.rule = &modelNameRule}),
            settingRow("textScale", &Settings::textScale, {.range = &textScaleRange}),
            settingRow("onboardingStep", &Settings::onboardingStep,
                       {.range = &onboardingStepRange}),
            settingRow("updateChecks", &Settings::updateChecks),
            settingRow("updateInstalls", &Settings::updateInstalls),
            settingRow("skippedUpdate", &Settings::skippedUpdate),
            settingRow("lastUpdateCheck", &Settings::lastUpdateCheck),
            settingRow("lastReport", &Settings::lastReport),
            settingRow("lastSearch", &Settings::lastSearch),
            settingRow("servedSlot", &Settings::servedSlot),
            settingRow("searchedUntil", &Settings::searchedUntil));
    }
    bool operator==(const Settings &) const = default;
};

} // namespace vorle
