#include "app/territory/TerritoryEdit.h"
#include "tests/storage/SettingsFixture.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QString text(const char *utf8) { return QString::fromUtf8(utf8); }

class TerritoryEditTest : public test::SettingsFixture {
protected:
    const Settings &settings() const { return preferences.settings(); }
    QList<QString> sites() const {
        QList<QString> addresses;
        for (const PrioritySite &site : settings().prioritySites) {
            addresses += site.address;
        }
        return addresses;
    }

    Preferences preferences = open();
};

TEST_F(TerritoryEditTest, a_name_is_taken_once_on_one_line_and_not_too_long) {
    const std::pair<const char *, const char *> cases[] = {
        {"  modèles d’IA\n en local ", nullptr},
        {"Modèles d’ia EN LOCAL", "C’est déjà dans tes domaines."},
        {" \t", ""},
        {"rust", nullptr},
    };
    for (const auto &[name, refusal] : cases) {
        const auto told = territory::addName(preferences, &Settings::interests, text(name));
        EXPECT_EQ(told.has_value(), refusal != nullptr) << name;
        EXPECT_EQ(told.value_or(QString()), text(refusal == nullptr ? "" : refusal)) << name;
    }
    EXPECT_TRUE(territory::addName(preferences, &Settings::interests,
                                   QString(territory::maxNameLength + 1, u'a')));
    EXPECT_EQ(settings().interests, (QList<QString>{text("modèles d’IA en local"), text("rust")}));
}

TEST_F(TerritoryEditTest, what_was_removed_comes_back_where_it_stood_unless_it_is_there_again) {
    preferences.change(&Settings::interests, {text("a"), text("b"), text("c")});
    territory::setWeight(preferences, text("b"), 9);
    territory::setWeight(preferences, text("nowhere"), 2);
    EXPECT_EQ(settings().interestWeights, (QMap<QString, int>{{text("b"), 5}}));
    const auto back = territory::removeName(preferences, &Settings::interests, text("b"));
    ASSERT_TRUE(back);
    EXPECT_FALSE(territory::removeName(preferences, &Settings::interests, text("b")));
    EXPECT_TRUE(settings().interestWeights.isEmpty()) << "no weight without its name";
    // Meanwhile another process took the first away and added one.
    preferences.change(&Settings::interests, {text("c"), text("d")});
    (*back)(preferences);
    EXPECT_EQ(settings().interests, (QList<QString>{text("c"), text("b"), text("d")}));
    EXPECT_EQ(preferences.weightOf(text("b")), 5);
    (*back)(preferences);
    EXPECT_EQ(settings().interests.count(text("b")), 1);

    EXPECT_EQ(territory::renameInterest(preferences, text("b"), text("C")),
              text("C’est déjà dans tes domaines."));
    EXPECT_FALSE(territory::renameInterest(preferences, text("b"), text(" B ")));
    EXPECT_EQ(settings().interests[1], text("B"));
    EXPECT_EQ(preferences.weightOf(text("B")), 5);
    EXPECT_FALSE(settings().interestWeights.contains(text("b")));
}

TEST_F(TerritoryEditTest, a_project_keeps_its_name_its_folder_and_its_description_together) {
    EXPECT_FALSE(territory::addProject(preferences, text("Site"), text("/a/site")));
    EXPECT_FALSE(territory::addProject(preferences, text("Site"), text("/a/site"))) << "the same";
    EXPECT_TRUE(territory::addProject(preferences, text("Site"), text("/b/site")));
    const QString followed = text("Ce dossier est déjà suivi, sous le nom «\u202FSite\u202F».");
    EXPECT_EQ(territory::addProject(preferences, text("Autre"), text("/a/site")), followed);
    EXPECT_FALSE(territory::addProject(preferences, text("Autre"), text("/o")));
    EXPECT_EQ(territory::moveProject(preferences, text("Autre"), text("/a/site")), followed);
    EXPECT_FALSE(territory::moveProject(preferences, text("Site"), text("/a/site")));
    territory::removeProject(preferences, text("Autre"));
    EXPECT_EQ(territory::projectAt(settings(), text("/a/site")), text("Site"));
    EXPECT_EQ(territory::freeProjectName(settings(), text(" Site ")), text("Site 2"));
    territory::setDescription(preferences, text("Site"), text(" un\nsite "));
    const auto back = territory::removeProject(preferences, text("Site"));
    ASSERT_TRUE(back);
    EXPECT_TRUE(settings().projectDescriptions.isEmpty());
    (*back)(preferences);
    EXPECT_EQ(settings().projects.value(text("Site")), text("/a/site"));
    EXPECT_EQ(settings().projectDescriptions.value(text("Site")), text("un site"));
    territory::removeProject(preferences, text("Site"));
    territory::addProject(preferences, text("Site"), text("/c/site"));
    (*back)(preferences);
    EXPECT_EQ(settings().projects.value(text("Site")), text("/c/site")) << "added anew: it stays";
    territory::removeProject(preferences, text("Site"));
    territory::addProject(preferences, text("Autre"), text("/a/site"));
    (*back)(preferences);
    EXPECT_EQ(settings().projects, (QMap<QString, QString>{{text("Autre"), text("/a/site")}}))
        << "one folder, one name";
    EXPECT_EQ(settings().projectDescriptions.value(text("Autre")), text("un site"));
}

TEST_F(TerritoryEditTest, one_site_has_one_place_however_it_is_spelled) {
    const std::pair<const char *, bool> cases[] = {
        {"carnet.example.org", true},         {"https://www.carnet.example.org/", false},
        {"http://Carnet.example.org", false}, {"carnet.example.org/blog", true},
        {"carnet.example.org/blog/", false},  {"pas une adresse", false},
        {"javascript:alert(1)", false},       {"carnet.example.org:8080", true},
    };
    for (const auto &[address, taken] : cases) {
        EXPECT_EQ(!territory::addSite(preferences, text(address)), taken) << address;
    }
    EXPECT_EQ(sites(), (QList<QString>{text("carnet.example.org"), text("carnet.example.org/blog"),
                                       text("carnet.example.org:8080")}));
    const auto back = territory::removeSite(preferences, text("carnet.example.org/blog"));
    EXPECT_EQ(territory::changeSite(preferences, text("carnet.example.org:8080"),
                                    text("https://carnet.example.org")),
              text("Ce site est déjà dans ta liste."));
    (*back)(preferences);
    EXPECT_EQ(sites()[1], text("carnet.example.org/blog"));

    QList<PrioritySite> many;
    for (int i = 0; i < territory::maxSites + 5; ++i) {
        many += PrioritySite{QStringLiteral("s%1.example").arg(i / 2), {}, {}};
    }
    many += PrioritySite{text("mailto:a@b.example"), {}, {}};
    const auto came = territory::addSites(preferences, many);
    EXPECT_EQ(came, (territory::SitesAdded{103, 102, 1, 0}));
    for (int i = 0; territory::addSites(
                        preferences, {PrioritySite{QStringLiteral("t%1.example").arg(i), {}, {}}})
                        .added > 0;
         ++i) {
    }
    EXPECT_EQ(settings().prioritySites.size(), territory::maxSites);
    EXPECT_TRUE(territory::addSite(preferences, text("dernier.example")));
}

TEST_F(TerritoryEditTest, an_app_is_told_by_the_list_of_the_mode_that_is_set) {
    for (const AccessMode mode : {AccessMode::Only, AccessMode::AllExcept}) {
        preferences.change(&Settings::accessMode, mode);
        territory::setAppInScope(preferences, text("Xcode"), true);
        EXPECT_TRUE(preferences.appInScope(text("Xcode")));
        territory::setAppInScope(preferences, text("Xcode"), false);
        EXPECT_FALSE(preferences.appInScope(text("Xcode")));
    }
    EXPECT_TRUE(settings().keptApps.isEmpty());
    EXPECT_EQ(settings().excludedApps, QList<QString>{text("Xcode")});
}

} // namespace
} // namespace vorle
