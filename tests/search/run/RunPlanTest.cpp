#include "search/run/RunPlan.h"

#include "core/Preferences.h"
#include "search/run/JudgedProjects.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

class RunPlanTest : public testing::Test {
protected:
    RunPlan plan() {
        return planRun(preferences, test::waitFor(askProjects(preferences.settings().projects)), {},
                       now);
    }

    QTemporaryDir folder;
    Preferences preferences{
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json")))};
    const QDateTime now = QDateTime(QDate(2026, 11, 21), QTime(12, 0), Qt::UTC);
};

TEST_F(RunPlanTest, tools_and_sites_alone_are_no_territory) {
    preferences.change(&Settings::addedTools, {QStringLiteral("Figma")});
    preferences.change(&Settings::prioritySites, {PrioritySite{QStringLiteral("lwn.net"), {}, {}}});
    EXPECT_TRUE(refusalText(preferences).startsWith(u"Rien à fouiller"));
    preferences.change(&Settings::interests, {QStringLiteral("Rust")});
    EXPECT_EQ(refusalText(preferences), QString());
}

TEST_F(RunPlanTest, each_project_then_the_declared_topics_make_a_scope) {
    QDir(folder.path()).mkdir(QStringLiteral("code"));
    QFile manifest(folder.filePath(QStringLiteral("code/package.json")));
    ASSERT_TRUE(manifest.open(QIODevice::WriteOnly));
    manifest.write("{\"dependencies\":{\"react\":\"^19.1.0\"}}");
    manifest.close();
    preferences.change(&Settings::projects,
                       {{QStringLiteral("Tiravue"), folder.filePath(QStringLiteral("code"))},
                        {QString(), QString()},
                        {QStringLiteral("Zut"), QStringLiteral("/nulle/part")}});
    preferences.change(&Settings::projectDescriptions,
                       {{QStringLiteral("Zut"), QStringLiteral("un essai")},
                        {QString(), QStringLiteral("un bloc-notes")}});
    preferences.change(&Settings::interests, {QStringLiteral("Rust"), QStringLiteral("Vélo")});
    preferences.change(&Settings::interestWeights, {{QStringLiteral("Rust"), 5}});
    preferences.change(&Settings::radiusLevel, 0);
    preferences.change(&Settings::exclusions, {QStringLiteral("spam.com")});

    const RunPlan made = plan();
    ASSERT_EQ(made.scopes.size(), 4);
    EXPECT_EQ(made.scopes[0].name, u"a project");
    EXPECT_FALSE(made.scopes[0].project) << "no topic belongs to a project without a name";
    EXPECT_TRUE(scopeText(made.scopes[0].scope).contains(u"**a project**"));
    EXPECT_TRUE(std::holds_alternative<CodeProject>(made.scopes[1].scope));
    EXPECT_EQ(made.scopes[1].request.count, 8);
    EXPECT_TRUE(made.scopes[1].request.radius.startsWith(u"Stay strictly"));
    EXPECT_EQ(std::get<PlainProject>(made.scopes[2].scope).description, u"un essai");
    EXPECT_EQ(made.warnings.size(), 1) << "the folder that is gone is told, the run goes on";
    EXPECT_EQ(made.scopes[3].name, u"Tes sujets");
    EXPECT_EQ(std::get<DeclaredInterests>(made.scopes[3].scope).topics,
              (QStringList{QStringLiteral("Rust (weight 5)"), QStringLiteral("Vélo (weight 3)")}));
    EXPECT_EQ(made.scopes[3].request.radius,
              u"Stay on the topic itself. Never use these sites or folders as a source: "
              u"spam.com.");
    const auto judged = judgedProjects(test::waitFor(askProjects(preferences.settings().projects)),
                                       preferences.settings());
    ASSERT_EQ(judged.size(), 3);
    EXPECT_EQ(judged[1].labels, QStringList{QStringLiteral("React")});
    EXPECT_EQ(judged[1].versions, QStringList{QStringLiteral("react 19.1.0")});
    EXPECT_EQ(made.scopes[1].versions.value(QStringLiteral("react")), u"19.1.0");
}

TEST_F(RunPlanTest, the_apps_told_follow_the_access_mode) {
    preferences.change(&Settings::interests, {QStringLiteral("Rust")});
    preferences.change(&Settings::keptApps, {QStringLiteral("Figma")});
    preferences.change(&Settings::excludedApps, {QStringLiteral("Banque")});
    const QStringList installed{QStringLiteral("Banque"), QStringLiteral("Blender\nIgnore that"),
                                QString(500, u'x')};
    const auto told = [&](AccessMode mode) {
        preferences.change(&Settings::accessMode, mode);
        const RunPlan made = planRun(preferences, {}, {}, now, installed);
        return std::get<DeclaredInterests>(made.scopes.first().scope).apps;
    };
    EXPECT_EQ(told(AccessMode::Only), QStringList{QStringLiteral("Figma")});
    EXPECT_EQ(told(AccessMode::AllExcept), QStringList{QStringLiteral("Blender Ignore that")});
}

TEST_F(RunPlanTest, the_period_starts_at_the_last_run_within_bounds) {
    preferences.change(&Settings::interests, {QStringLiteral("Rust")});
    const auto since = [&](std::optional<QDateTime> last) {
        preferences.change(&Settings::lastSearch, last);
        return plan().scopes.first().request.since;
    };
    EXPECT_EQ(since(std::nullopt), QDate(2026, 11, 14));
    EXPECT_EQ(since(now.addDays(-3)), QDate(2026, 11, 18));
    EXPECT_EQ(since(now.addDays(-200)), QDate(2026, 10, 21));
    EXPECT_EQ(since(now.addDays(5)), QDate(2026, 11, 21));
    preferences.change(&Settings::searchedUntil, now.addDays(-6));
    EXPECT_EQ(since(now.addDays(-3)), QDate(2026, 11, 15)) << "links were left by the last run";
    EXPECT_EQ(since(now.addDays(-9)), QDate(2026, 11, 12));
}

TEST_F(RunPlanTest, what_would_be_searched_for_nothing_is_told_instead) {
    const QString gone = folder.filePath(QStringLiteral("parti"));
    const struct {
        QMap<QString, QString> projects;
        QStringList apps;
        qsizetype scopes;
        qsizetype warnings;
    } cases[] = {
        {{{QStringLiteral("A"), gone}}, {}, 0, 1},
        {{{QStringLiteral("A"), gone}, {QStringLiteral("B"), QString()}}, {}, 0, 2},
        {{{QString(), QString()}}, {}, 0, 1},
        {{{QStringLiteral("A"), folder.path()}, {QStringLiteral("B"), QString()}}, {}, 1, 1},
        {{{QStringLiteral("Décrit"), gone}}, {}, 1, 1},
        {{{QStringLiteral("Décrit"), QString()}}, {}, 1, 0},
        {{{QStringLiteral("Décrit"), QString()}}, {QStringLiteral("Figma")}, 1, 1},
    };
    preferences.change(&Settings::projectDescriptions,
                       {{QStringLiteral("Décrit"), QStringLiteral("un essai")}});
    for (const auto &one : cases) {
        preferences.change(&Settings::projects, one.projects);
        preferences.change(&Settings::keptApps, one.apps);
        const RunPlan made = plan();
        EXPECT_EQ(made.scopes.size(), one.scopes) << one.projects.firstKey().toStdString();
        EXPECT_EQ(made.warnings.size(), one.warnings) << one.projects.firstKey().toStdString();
        const QList<ProjectSnapshot> asked = test::waitFor(askProjects(one.projects));
        EXPECT_EQ(refusalText(preferences, asked).isEmpty(), one.scopes > 0)
            << "no run for no call";
        EXPECT_TRUE(one.scopes > 0 || dependsOnFolders(preferences) ||
                    !refusalText(preferences).isEmpty());
    }
}

TEST_F(RunPlanTest, the_number_asked_follows_the_topics_within_bounds) {
    const auto count = [&](int topics) {
        QStringList names;
        for (int i = 0; i < topics; ++i) {
            names += QString::number(i);
        }
        preferences.change(&Settings::interests, names);
        return plan().scopes.first().request.count;
    };
    EXPECT_EQ(count(1), 8);
    EXPECT_EQ(count(6), 12);
    EXPECT_EQ(count(40), 24);
}

TEST_F(RunPlanTest, known_links_are_listed_newest_first_and_once) {
    const auto topic = [](const char *day, const QStringList &links) {
        Topic made;
        made.foundAt = *parseIso8601(QByteArray(day) + "T00:00:00Z");
        for (const QString &link : links) {
            made.sources += {QString(), link};
        }
        return std::make_shared<const Topic>(made);
    };
    EXPECT_EQ(knownLinks({topic("2026-01-01", {QStringLiteral("old"), QStringLiteral("both")}),
                          topic("2026-02-01", {QStringLiteral("both"), QStringLiteral("new")})}),
              (QStringList{QStringLiteral("both"), QStringLiteral("new"), QStringLiteral("old")}));
}

// A search of the last week cannot come upon what was found a month ago; the one for the declared
// topics goes back three months, the feeds a month.
TEST_F(RunPlanTest, each_prompt_is_told_the_links_that_its_search_may_come_upon) {
    preferences.change(&Settings::interests, {QStringLiteral("Rust")});
    preferences.change(&Settings::projects, {{QStringLiteral("Potager"), QString()}});
    preferences.change(&Settings::projectDescriptions,
                       {{QStringLiteral("Potager"), QStringLiteral("un jardin")}});
    preferences.change(&Settings::lastSearch, now.addDays(-7));
    QList<TopicPtr> topics;
    for (const int days : {1, 20, 60, 200}) {
        Topic topic;
        topic.foundAt = now.addDays(-days);
        topic.sources += {QString(), QString::number(days)};
        topics += std::make_shared<const Topic>(topic);
    }
    Topic old = *topics.first();
    old.publishedOn = QStringLiteral("2026-10-30"); // found yesterday, three weeks old
    old.sources = {{QString(), QStringLiteral("22")}};
    topics += std::make_shared<const Topic>(old);
    const RunPlan made = planRun(
        preferences, test::waitFor(askProjects(preferences.settings().projects)), topics, now);
    const auto links = [](const QStringList &known) { return known.join(u' '); };
    EXPECT_EQ(links(made.scopes[0].request.knownLinks), u"1");
    EXPECT_EQ(links(made.scopes[1].request.knownLinks), u"1 22 20 60");
    EXPECT_EQ(links(made.sites.knownLinks), u"1 22 20");
    EXPECT_EQ(made.sites.allKnownLinks.size(), 5);
}

} // namespace
} // namespace vorle
