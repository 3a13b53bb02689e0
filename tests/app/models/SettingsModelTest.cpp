#include "app/models/settings/SettingsModel.h"
#include "tests/storage/SettingsFixture.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QMetaProperty>
#include <QSignalSpy>

namespace vorle {
namespace {

using test::text;

class SettingsModelTest : public test::SettingsFixture {
protected:
    void SetUp() override { ASSERT_TRUE(QDir(dir.path()).mkpath(QFileInfo(file).path())); }
};

/// A setting's property, the value that a screen sets it to, and what is stored of it.
struct Stored {
    const char *property;
    const char *key;
    QVariant value;
    const char *json; // in a list, so that it may be anything
};

const QList<Stored> &stored() {
    static const QList<Stored> all{
        {"weeklyMinutes", "weeklyMinutes", 90, "[90]"},
        {"appearance", "appearance", text("Sombre"), "[\"Sombre\"]"},
        {"accent", "accent", text("Lagune"), "[\"Lagune\"]"},
        {"terminal", "terminal", text("Ghostty"), "[\"Ghostty\"]"},
        {"notifyMode", "notifyMode", text("Jamais"), "[\"Jamais\"]"},
        {"notifyReminder", "notifyReminder", true, "[true]"},
        {"proposeTab", "proposeTab", false, "[false]"},
        {"job", "job", text("luthière « été »"), "[\"luthière « été »\"]"},
        {"agent", "agent", text("codex"), "[\"codex\"]"},
        {"agentModel", "agentModel", text("opus-4[1m]"), "[\"opus-4[1m]\"]"},
        {"textScale", "textScale", 130, "[130]"},
        {"runTime", "schedule", text("9:30"), R"([{"weekdays":[2],"hour":9,"minute":30}])"},
        {"reminder", "reminder", text("18:15"), R"([{"hour":18,"minute":15}])"},
        {"weekdays", "schedule", QVariant::fromValue(QList<int>{2, 5}),
         R"([{"weekdays":[2,5],"hour":8,"minute":0}])"},
    };
    return all;
}

QJsonValue jsonOf(const Stored &row) { return QJsonDocument::fromJson(row.json).array().first(); }

TEST_F(SettingsModelTest, a_screen_a_command_and_the_disk_store_and_show_one_value) {
    for (const Stored &row : stored()) {
        const QString key = QString::fromLatin1(row.key);
        const QMetaProperty property = SettingsModel::staticMetaObject.property(
            SettingsModel::staticMetaObject.indexOfProperty(row.property));
        QByteArray written;
        { // a screen
            Preferences preferences = open();
            SettingsModel model(preferences);
            QSignalSpy told(&model, property.notifySignal());
            EXPECT_NE(property.read(&model), row.value) << row.property << " is its default";
            EXPECT_TRUE(property.write(&model, row.value)) << row.property;
            EXPECT_EQ(property.read(&model), row.value) << row.property;
            EXPECT_EQ(told.size(), 1) << row.property;
            EXPECT_EQ(model.problem(), QString());
            ASSERT_TRUE(preferences.flush());
            EXPECT_EQ(onDisk().value(key), jsonOf(row)) << row.property;
            written = test::readFile(file);
        }
        QFile::remove(file);
        Preferences shown = open();
        SettingsModel model(shown);
        QSignalSpy told(&model, property.notifySignal());
        { // a command, in a process of its own
            Preferences preferences = open();
            EXPECT_FALSE(preferences.changeSetting(key, jsonOf(row))) << row.property;
            ASSERT_TRUE(preferences.flush());
            EXPECT_EQ(test::readFile(file), written) << row.property;
        }
        shown.watch(); // the disk
        EXPECT_EQ(property.read(&model), row.value) << row.property;
        EXPECT_EQ(told.size(), 1) << row.property;
        QFile::remove(file);
    }
}

TEST_F(SettingsModelTest, what_another_process_sets_shows_by_itself) {
    Preferences preferences = open();
    SettingsModel model(preferences);
    preferences.watch();
    QSignalSpy told(&model, &SettingsModel::appearanceChanged);
    Preferences other = open();
    other.change(&Settings::appearance, Appearance::Dark);
    ASSERT_TRUE(other.flush());
    test::spinUntil([&] { return model.appearance() == u"Sombre"; });
    EXPECT_EQ(told.size(), 1);
}

TEST_F(SettingsModelTest, tells_what_does_not_fit_and_changes_nothing) {
    Preferences preferences = open();
    SettingsModel model(preferences);
    QSignalSpy told(&model, &SettingsModel::problemChanged);
    const struct {
        const char *property;
        QVariant value;
        const char *problem;
    } rows[] = {
        {"weeklyMinutes", -1, "« weeklyMinutes » attend un nombre entier de 0 à 10080."},
        {"weeklyMinutes", 10081, "« weeklyMinutes » attend un nombre entier de 0 à 10080."},
        {"runTime", text("25:00"),
         "Ce n’est pas une heure\u00A0: «\u202F25:00\u202F». Écris par exemple 8:30."},
        {"textScale", 151, "« textScale » attend un nombre entier de 80 à 150."},
        {"agent", text("gpt"), "« agent » attend \"claude\", \"codex\" ou null."},
        {"notifyMode", text("Parfois"),
         "« notifyMode » attend l’un de ces mots : \"À chaque fouille\", \"Seulement si urgent\", "
         "\"Jamais\"."},
    };
    for (const auto &[property, value, problem] : rows) {
        const QVariant before = model.property(property);
        model.setProperty(property, value);
        EXPECT_EQ(model.property(property), before) << property;
        EXPECT_EQ(model.problem(), text(problem));
        told.clear();
        model.setProperty(property, before); // one that fits
        EXPECT_EQ(model.problem(), QString());
        EXPECT_EQ(told.size(), 1);
    }
    ASSERT_TRUE(preferences.flush());
    EXPECT_EQ(preferences.settings(), Settings());
}

TEST_F(SettingsModelTest, a_time_of_day_goes_round_the_clock_by_minutes) {
    const struct {
        const char *time;
        int minutes;
        const char *later;
    } rows[] = {{"8:00", 5, "8:05"},
                {"8:00", -5, "7:55"},
                {"0:00", -5, "23:55"},
                {"23:58", 5, "0:03"},
                {"830", 5, "8:35"}};
    for (const auto &[time, minutes, later] : rows) {
        EXPECT_EQ(SettingsModel::laterTime(text(time), minutes), text(later)) << time;
    }
}

TEST_F(SettingsModelTest, tells_a_disk_that_refuses_until_it_takes_it) {
    const QString folder = QFileInfo(file).path();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    test::writeFile(folder, "a file where the folder would be");
    Preferences preferences = open();
    SettingsModel model(preferences);
    QSignalSpy told(&model, &SettingsModel::problemChanged);
    model.setProposeTab(false);
    EXPECT_FALSE(preferences.flush());
    EXPECT_TRUE(model.problem().contains(text("proposeTab"))) << model.problem().toStdString();
    EXPECT_FALSE(model.proposeTab()) << "it acts all the same";
    ASSERT_TRUE(QFile::remove(folder));
    EXPECT_TRUE(preferences.flush());
    EXPECT_EQ(model.problem(), QString());
    EXPECT_EQ(told.size(), 2);
}

} // namespace
} // namespace vorle
