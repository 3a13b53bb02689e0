#include "tests/storage/SettingsFixture.h"

#include <QJsonArray>

namespace vorle {
namespace {

using test::readFile;

class PreferencesTest : public test::SettingsFixture {};

TEST_F(PreferencesTest, starts_with_the_defaults) {
    const Settings settings = open().settings();
    EXPECT_EQ(settings, Settings());
    EXPECT_EQ(settings.weeklyMinutes, 180);
    EXPECT_EQ(settings.schedule, (Schedule{{2}, 8, 0}));
    EXPECT_EQ(json::rawText(settings.appearance), QStringLiteral("Automatique"));
    EXPECT_EQ(json::rawText(settings.accent), QStringLiteral("Braise"));
    EXPECT_EQ(json::rawText(settings.terminal), QStringLiteral("Terminal"));
    EXPECT_EQ(json::rawText(settings.notifyMode), QStringLiteral("À chaque fouille"));
    EXPECT_FALSE(settings.notifyReminder);
    EXPECT_EQ(settings.reminder, (TimeOfDay{17, 0}));
    EXPECT_TRUE(settings.proposeTab);
    EXPECT_EQ(settings.radiusLevel, 2);
    EXPECT_EQ(settings.accessMode, AccessMode::Only);
    EXPECT_FALSE(QFile::exists(file)) << "nothing is written before something is set";
}

TEST_F(PreferencesTest, gives_back_every_setting_after_a_restart) {
    const QDateTime moment(QDate(2026, 11, 2), QTime(8, 0), Qt::UTC);
    Preferences preferences = open();
    preferences.change(&Settings::weeklyMinutes, 90);
    preferences.change(&Settings::schedule, {{3, 5}, 7, 30});
    preferences.change(&Settings::notifyMode, NotifyMode::UrgentOnly);
    preferences.change(&Settings::notifyReminder, true);
    preferences.change(&Settings::reminder, {18, 15});
    preferences.change(&Settings::captureShortcut, {49, 0x100, QStringLiteral(" ")});
    preferences.change(&Settings::reflexesSince, moment);
    preferences.change(&Settings::job, QStringLiteral("luthière · « été »"));
    preferences.change(&Settings::keptApps,
                       {QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")});
    preferences.change(&Settings::prioritySites, {{QStringLiteral("example.org"), {}, moment}});
    preferences.change(&Settings::interestWeights, {{QStringLiteral("a/b"), 5}});
    preferences.change(&Settings::projects, {{QStringLiteral("Tiravue"), QStringLiteral("/p/t")}});
    preferences.change(&Settings::agent, QStringLiteral("codex"));
    preferences.change(&Settings::lastReport,
                       LastReport{moment, 3, 0.25, 61, {QStringLiteral("x")}});
    EXPECT_EQ(preferences.settings().keptApps,
              (QList<QString>{QStringLiteral("b"), QStringLiteral("a")}));

    ASSERT_TRUE(preferences.flush());
    const QJsonObject disk = onDisk();
    EXPECT_EQ(disk.value(u"weeklyMinutes"), QJsonValue(90));
    EXPECT_EQ(disk.value(u"notifyReminder"), QJsonValue(true));
    EXPECT_TRUE(disk.value(u"keptApps").isArray());
    EXPECT_EQ(disk.value(u"schedule").toObject().value(u"hour"), QJsonValue(7));
    EXPECT_EQ(disk.value(u"reflexesSince"), QJsonValue(QStringLiteral("2026-11-02T08:00:00Z")));
    const QByteArray copy = readFile(file);
    EXPECT_EQ(read(copy), preferences.settings());

    file = dir.filePath(QStringLiteral("sub/settings.json"));
    preferences.change(&Settings::job, std::nullopt);
    ASSERT_TRUE(preferences.flush());
    EXPECT_FALSE(read(readFile(dir.filePath(QStringLiteral("sub/settings.json")))).job);
}

TEST_F(PreferencesTest, a_models_name_is_one_an_agent_may_be_given_and_goes_with_its_agent) {
    Preferences preferences = open();
    preferences.change(&Settings::agent, QStringLiteral("claude"));
    for (const char *name : {"opus", "claude-opus-4-1[1m]", "openrouter/x@2:free", "gpt-5.1_a"}) {
        EXPECT_FALSE(preferences.change(&Settings::agentModel, QString::fromLatin1(name))) << name;
    }
    for (const char *name : {"-x", "--model=x", "a b", "a;b", "$(id)", "é", "a\n"}) {
        EXPECT_TRUE(preferences.change(&Settings::agentModel, QString::fromUtf8(name))) << name;
    }
    EXPECT_TRUE(preferences.change(&Settings::agentModel, QString(101, u'a')));
    EXPECT_EQ(preferences.settings().agentModel, QStringLiteral("gpt-5.1_a"));
    EXPECT_FALSE(preferences.changeSetting(QStringLiteral("agentModel"), QStringLiteral("")));
    EXPECT_EQ(preferences.settings().agentModel, std::nullopt) << "none is no name";
    EXPECT_FALSE(read(R"({"agentModel":"--dangerous"})").agentModel);

    preferences.change(&Settings::agentModel, QStringLiteral("opus"));
    preferences.change(&Settings::agent, QStringLiteral("claude"));
    EXPECT_EQ(preferences.settings().agentModel, QStringLiteral("opus"));
    preferences.change(&Settings::agent, QStringLiteral("codex"));
    EXPECT_EQ(preferences.settings().agentModel, std::nullopt);
    ASSERT_TRUE(preferences.flush());
    EXPECT_FALSE(open().settings().agentModel);
}

TEST_F(PreferencesTest, reads_what_does_not_fit_as_the_default) {
    const Settings settings = read(R"({"weeklyMinutes":"90","schedule":{"weekdays":[2,9],"hour":8,
        "minute":0},"appearance":"Fluo","accent":3,"notifyReminder":1,"reminder":{"hour":25,
        "minute":0},"captureShortcut":{"keyCode":0,"modifiers":512,"key":"a"},"accessMode":"all",
        "calibrationStart":"hier","job":7,"interests":["a",4,"b"],"keptApps":"x",
        "interestWeights":{"a":5,"b":9,"c":"2"},"radiusLevel2":-1,"agent":"gpt",
        "prioritySites":[{"address":"x"},{"site":"y"}],"lastReport":{"added":3}})");
    Settings expected;
    expected.interests = {QStringLiteral("a"), QStringLiteral("b")};
    expected.interestWeights = {{QStringLiteral("a"), 5}};
    expected.prioritySites = {{QStringLiteral("x"), {}, {}}};
    expected.radiusLevel = 0;
    EXPECT_EQ(settings, expected);
    EXPECT_EQ(read(R"({"weeklyMinutes":-5})").weeklyMinutes, 0);
    EXPECT_EQ(read(R"({"weeklyMinutes":1e300,"radiusLevel2":7})").weeklyMinutes, 10'080);
    EXPECT_EQ(read(R"({"weeklyMinutes":90.5,"radiusLevel2":7})").weeklyMinutes, 180);
    EXPECT_EQ(read(R"({"radiusLevel2":7})").radiusLevel, 6);
    EXPECT_EQ(read(R"({"accessMode":"allExcept"})").accessMode, AccessMode::AllExcept);
    EXPECT_EQ(read(R"({"schedule":"{\"weekdays\":[4],\"hour\":9,\"minute\":5}"})").schedule,
              (Schedule{{4}, 9, 5}))
        << "a record may also be a JSON text";
}

TEST_F(PreferencesTest, keeps_what_a_later_version_wrote_of_a_trusted_site) {
    read(R"({"prioritySites":[{"address":"x","since":[1,2]},{"address":"y"}],"future":{"a":1}})");
    Preferences preferences = open();
    auto sites = preferences.settings().prioritySites;
    sites[0].feed = QStringLiteral("f");
    preferences.change(&Settings::prioritySites, sites);
    ASSERT_TRUE(preferences.flush());
    EXPECT_EQ(onDisk(), QJsonDocument::fromJson(R"({"prioritySites":[{"address":"x","feed":"f",
        "since":[1,2]},{"address":"y"}],"future":{"a":1}})")
                            .object());
}

TEST_F(PreferencesTest, carries_old_settings_over) {
    EXPECT_EQ(read(R"({"radiusLevel":9})").radiusLevel, 6);
    EXPECT_EQ(read(R"({"radiusLevel":4})").radiusLevel, 3);
    EXPECT_EQ(read(R"({"radiusLevel":0})").radiusLevel, 0);
    EXPECT_EQ(read(R"({"radiusLevel":4000})").radiusLevel, 6);
    EXPECT_EQ(read(R"({"radiusLevel":-3})").radiusLevel, 0);
    EXPECT_EQ(read(R"({"radiusLevel":4.5})").radiusLevel, 2);
    EXPECT_EQ(read(R"({"radiusLevel":9,"radiusLevel2":1})").radiusLevel, 1);
    EXPECT_TRUE(read(R"({"onboarded":true})").calibrated);
    EXPECT_FALSE(read(R"({"onboarded":true,"calibrated":false})").calibrated);
    EXPECT_FALSE(read(R"({})").calibrated);
}

TEST_F(PreferencesTest, derives_weight_radius_and_scope) {
    Preferences preferences = open();
    preferences.change(&Settings::interestWeights, {{QStringLiteral("rust"), 5}});
    EXPECT_EQ(preferences.weightOf(QStringLiteral("rust")), 5);
    EXPECT_EQ(preferences.weightOf(QStringLiteral("go")), 3);
    preferences.change(&Settings::radiusLevel, 6);
    EXPECT_EQ(preferences.radius(), 2);
    preferences.change(&Settings::radiusLevel, 0);
    EXPECT_EQ(preferences.radius(), 0);
    preferences.change(&Settings::keptApps, {QStringLiteral("Figma")});
    preferences.change(&Settings::excludedApps, {QStringLiteral("Mail")});
    const auto scope = [&] {
        return QList<bool>{preferences.appInScope(QStringLiteral("Figma")),
                           preferences.appInScope(QStringLiteral("Mail")),
                           preferences.appInScope(QStringLiteral("Notes"))};
    };
    EXPECT_EQ(scope(), (QList<bool>{true, false, false}));
    preferences.change(&Settings::accessMode, AccessMode::AllExcept);
    EXPECT_EQ(scope(), (QList<bool>{true, false, true}));
}

TEST_F(PreferencesTest, reads_and_changes_settings_by_key) {
    Preferences preferences = open();
    QStringList told;
    QObject::connect(&preferences, &Preferences::changed, [&](const QString &key) { told += key; });
    const struct {
        QStringView key;
        const char *value; // in a list, so that it may be anything
        bool fits;
    } cases[] = {
        {u"weeklyMinutes", "[240]", true},
        {u"weeklyMinutes", "[240]", true},
        {u"weeklyMinutes", "[-1]", false},
        {u"weeklyMinutes", "[1.5]", false},
        {u"weeklyMinutes", "[null]", false},
        {u"accent", "[\"Lagune\"]", true},
        {u"accent", "[\"Rose\"]", false},
        {u"job", "[\"x\"]", true},
        {u"job", "[null]", true},
        {u"agent", "[\"gpt\"]", false},
        {u"interests", "[[\"a\",\"b\"]]", true},
        {u"interests", "[[\"a\",1]]", false},
        {u"interestWeights", "[{\"a\":6}]", false},
        {u"schedule", "[{\"weekdays\":[2],\"hour\":24,\"minute\":0}]", false},
        {u"lastSearch", "[\"2026-11-02T08:00:00Z\"]", true},
        {u"lastSearch", "[\"lundi\"]", false},
        {u"captureShortcut", "[{\"keyCode\":0,\"modifiers\":4608,\"key\":\"A\"}]", true},
        {u"captureShortcut", "[{\"keyCode\":-1,\"modifiers\":0,\"key\":\"\"}]", true},
        {u"captureShortcut", "[{\"keyCode\":0,\"modifiers\":512,\"key\":\"A\"}]", false},
        {u"captureShortcut", "[{\"keyCode\":999,\"modifiers\":256,\"key\":\"A\"}]", false},
        {u"captureShortcut", "[{\"keyCode\":0,\"modifiers\":256,\"key\":\"\"}]", false},
        {u"nope", "[1]", false},
    };
    for (const auto &[key, text, fits] : cases) {
        const QJsonValue before = preferences.setting(key.toString());
        const QJsonValue value = QJsonDocument::fromJson(text).array().at(0);
        const auto error = preferences.changeSetting(key.toString(), value);
        EXPECT_EQ(!error, fits) << text;
        EXPECT_EQ(preferences.setting(key.toString()), fits ? value : before) << text;
    }
    EXPECT_EQ(told,
              (QStringList{QStringLiteral("weeklyMinutes"), QStringLiteral("accent"),
                           QStringLiteral("job"), QStringLiteral("job"),
                           QStringLiteral("interests"), QStringLiteral("lastSearch"),
                           QStringLiteral("captureShortcut"), QStringLiteral("captureShortcut")}));
    EXPECT_EQ(preferences.changeSetting(QStringLiteral("radiusLevel2"), 7),
              QStringLiteral("« radiusLevel2 » attend un nombre entier de 0 à 6."));
    EXPECT_EQ(preferences.changeSetting(QStringLiteral("nope"), 7),
              QStringLiteral("Réglage inconnu : « nope »."));
    EXPECT_EQ(preferences.setting(QStringLiteral("job")), QJsonValue(QJsonValue::Null));
    EXPECT_EQ(Preferences::settingKeys().size(), 39);
}

} // namespace
} // namespace vorle
