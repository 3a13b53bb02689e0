#include "app/models/settings/SettingsPages.h"

#include "tests/core/Samples.h"
#include "tests/storage/SettingsFixture.h"
#include "tests/support/Text.h"

#include <QSignalSpy>

namespace vorle {
namespace {

using test::text;

class SettingsPagesTest : public test::SettingsFixture {
protected:
    test::FixedClock clock;
    Preferences preferences = open();
    SettingsPages pages{preferences, clock, QTimeZone::utc()};
};

TEST_F(SettingsPagesTest, a_page_shows_its_rows_and_each_stands_on_one) {
    EXPECT_EQ(pages.pages(),
              (QStringList{text("Général"), text("Fouille"), text("Ton IA"), text("Notifications"),
                           text("Capture"), text("Tes données")}));
    QStringList seen;
    for (int page = 0; page < pages.pages().size(); ++page) {
        pages.setPage(page);
        EXPECT_EQ(pages.shownPages(), QStringList{pages.pages()[page]});
        EXPECT_FALSE(pages.shown().isEmpty());
        for (const QString &row : pages.shown()) {
            EXPECT_FALSE(SettingsPages::title(row).isEmpty()) << row.toStdString();
        }
        seen += pages.shown();
    }
    EXPECT_EQ(seen.removeDuplicates(), 0);
    pages.setPage(99);
    EXPECT_EQ(pages.page(), pages.pages().size() - 1);
}

TEST_F(SettingsPagesTest, a_search_goes_over_all_pages_by_every_word_without_case_or_accents) {
    const std::pair<const char *, QStringList> searches[] = {
        {"THEME", {text("appearance"), text("accent")}},
        {"thème sombre", {text("appearance")}},
        {"modele", {text("agentModel")}},
        {"exporter", {text("archive"), text("notes")}},
        {"  veille   semaine ", {text("weeklyMinutes")}},
        {"jeudi", {text("weekdays"), text("notifyReminder"), text("reminder")}},
        {"banc d'essai", {text("bench")}},
        {"chaussette", {}},
    };
    for (const auto &[words, rows] : searches) {
        pages.setQuery(text(words));
        EXPECT_TRUE(pages.searching());
        EXPECT_EQ(pages.shown(), rows) << words << ": " << pages.shown().join(u' ').toStdString();
    }
    // A row with nothing to set now is not found either.
    QSignalSpy told(&pages, &SettingsPages::shownChanged);
    pages.setQuery(text("thème"));
    for (const bool present : {false, false, true}) {
        pages.setPresent(text("accent"), present);
        EXPECT_EQ(pages.shown().contains(text("accent")), present);
    }
    EXPECT_EQ(told.count(), 3) << "of the search, and of each change";
    pages.setQuery(text("données"));
    EXPECT_EQ(pages.shownPages(), QStringList{text("Tes données")});
    pages.setPage(1);
    EXPECT_FALSE(pages.searching()) << "a page that is asked for ends the search";
    EXPECT_EQ(pages.shownPages(), QStringList{text("Fouille")});
}

TEST_F(SettingsPagesTest, what_is_told_of_a_setting_follows_it) {
    QSignalSpy told(&pages, &SettingsPages::settingsChanged);
    preferences.change(&Settings::weeklyMinutes, 90);
    preferences.change(&Settings::radiusLevel, 1);
    preferences.change(&Settings::schedule, Schedule{{5}, 7, 30});
    EXPECT_EQ(told.count(), 3);
    EXPECT_EQ(pages.weeklyText(), text("1\u00A0h\u00A030"));
    EXPECT_EQ(pages.radiusText(), text("Et chez tes voisins"));
    EXPECT_EQ(pages.nextRunText(), text("Prochaine fouille jeudi 5 novembre à 7:30."));
}

TEST_F(SettingsPagesTest, the_weeks_time_goes_by_half_hours_within_what_it_may_be) {
    const std::pair<std::pair<int, int>, int> steps[] = {
        {{180, 1}, 210}, {{180, -1}, 150}, {{100, 1}, 120},       {{100, -1}, 90},
        {{0, -1}, 0},    {{10, -1}, 0},    {{10'080, 1}, 10'080}, {{10'070, 1}, 10'080},
    };
    for (const auto &[from, to] : steps) {
        EXPECT_EQ(SettingsPages::steppedMinutes(from.first, from.second), to) << from.first;
    }
}

} // namespace
} // namespace vorle
