#pragma once

#include <QString>

#include <array>
#include <span>
#include <string_view>

namespace vorle {

struct Settings;
class SettingsFile;

struct WholeRange {
    int min;
    int max;
    constexpr bool contains(int value) const { return value >= min && value <= max; }
};

/// Which texts a setting may be, where they cannot be listed. None is as good as an empty one.
struct TextRule {
    bool (*accepts)(const QString &text);
    QString (*expectation)(); ///< in French: "un nom de modèle"
};

/// What a setting may be, where its type does not say it: nothing set means any value of the type.
/// A record tells by its own isValid(), an enumeration by its words.
struct SettingLimits {
    const WholeRange *range = nullptr; ///< of a whole number, or of each one of a dictionary
    std::span<const std::string_view> words = {}; ///< the texts to choose from
    const TextRule *rule = nullptr;               ///< which texts, where they are not listed
    bool once = false;                            ///< a list used as a set: each text stands once
};

/// One setting: all there is to know of it. Its stored form (number, date, record, …) is its
/// type's; its default is the member's initialiser.
template <class T>
struct SettingRow {
    std::string_view key; ///< what it is stored under, and what the command line calls it
    T Settings::*member;
    SettingLimits limits = {};
    /// Says what it is where the file holds none that makes sense, from what older versions wrote;
    /// the settings before it in the table are read by then. Null: the default.
    void (*migrate)(const SettingsFile &file, Settings &into) = nullptr;
};

template <class T>
constexpr SettingRow<T> settingRow(std::string_view key, T Settings::*member,
                                   SettingLimits limits = {},
                                   void (*migrate)(const SettingsFile &, Settings &) = nullptr) {
    return {key, member, limits, migrate};
}

inline constexpr WholeRange weeklyMinutesRange{0, 7 * 24 * 60};
inline constexpr WholeRange interestWeightRange{1, 5};
inline constexpr WholeRange radiusRange{0, 6};
inline constexpr WholeRange textScaleRange{80, 150};
inline constexpr WholeRange onboardingStepRange{0, 5};
inline constexpr std::array<std::string_view, 2> agentWords{"claude", "codex"};

/// A model's name goes to the agent's command line as an argument of its own: 1 to 100 of the signs
/// that such names are made of, never an option.
bool isModelName(const QString &text);
QString modelNameExpectation();
inline constexpr TextRule modelNameRule{isModelName, modelNameExpectation};

/// Who finished onboarding before calibration existed is not asked to calibrate.
void migrateCalibrated(const SettingsFile &file, Settings &into);
/// The radius used to go from 0 to 9 under a key of its own.
void migrateRadius(const SettingsFile &file, Settings &into);

} // namespace vorle
