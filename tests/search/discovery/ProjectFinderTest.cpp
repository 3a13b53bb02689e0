#include "search/discovery/ProjectFinder.h"

#include "search/discovery/DiscoveryApps.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace discovery;

class ProjectFinderTest : public testing::Test {
protected:
    /// A dependency file that changed so many days ago.
    void put(const QString &name, int daysAgo = 1) {
        const QString path = home.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.write("{\"dependencies\": {\"react\": \"19\"}}");
        ASSERT_TRUE(file.flush());
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTimeUtc().addDays(-daysAgo),
                                     QFileDevice::FileModificationTime));
    }
    QStringList found(PersonalFolders personal = PersonalFolders::Included,
                      const FinderLimits &limits = {}) const {
        QStringList names;
        for (const Project &project : findProjects(home.path(), personal, limits)) {
            names += QDir(home.path()).relativeFilePath(project.folder);
        }
        return names;
    }
    using Names = QStringList;

    QTemporaryDir home;
};

TEST_F(ProjectFinderTest, finds_what_changed_last_first_and_goes_by_what_is_no_project) {
    put(QStringLiteral("Projets/tiravue/package.json"), 9);
    put(QStringLiteral("Projets/client/2026/site/package.json"), 2);
    put(QStringLiteral("dev/potager/requirements.txt"), 30);
    put(QStringLiteral("Documents/essai/package.json"), 1);
    // In a project, too deep, of packages and builds, hidden, beside a home with usual places.
    put(QStringLiteral("Projets/tiravue/packages/app/package.json"));
    put(QStringLiteral("Projets/a/b/c/d/package.json"));
    for (const char *folder : {"node_modules/x", "build", ".cache/y", "vendor/z"}) {
        put(QStringLiteral("Projets/%1/package.json").arg(QString::fromLatin1(folder)));
    }
    put(QStringLiteral("ailleurs/package.json"));
    // A link to a folder leads round in circles, or out of the home.
    ASSERT_TRUE(QFile::link(home.filePath(QStringLiteral("Projets")),
                            home.filePath(QStringLiteral("Projets/encore"))));
    ASSERT_TRUE(QFile::link(home.filePath(QStringLiteral("ailleurs")),
                            home.filePath(QStringLiteral("code"))));
    const Names all{QStringLiteral("Documents/essai"), QStringLiteral("Projets/client/2026/site"),
                    QStringLiteral("Projets/tiravue"), QStringLiteral("dev/potager")};
    EXPECT_EQ(found(), all);
    EXPECT_EQ(found(PersonalFolders::LeftOut), all.sliced(1));
    FinderLimits two;
    two.projects = 2;
    EXPECT_EQ(found(PersonalFolders::Included, two), all.first(2));
    EXPECT_EQ(findProjects(home.path(), PersonalFolders::Included).at(2).labels,
              Names{QStringLiteral("React")});
}

TEST_F(ProjectFinderTest, a_home_without_the_usual_places_is_looked_at_one_level_deep) {
    EXPECT_EQ(found(), Names());
    put(QStringLiteral("tiravue/package.json"));
    put(QStringLiteral("clients/site/package.json"));
    put(QStringLiteral("Library/x/package.json"));
    EXPECT_EQ(found(), Names{QStringLiteral("tiravue")});
}

TEST_F(ProjectFinderTest, is_content_with_what_it_has_when_there_is_too_much) {
    for (int i = 0; i < 40; ++i) {
        put(QStringLiteral("dev/p%1/package.json").arg(i, 2, 10, QLatin1Char('0')));
    }
    FinderLimits few;
    few.entries = 10;
    EXPECT_EQ(found(PersonalFolders::Included, few).size(), 10);
    EXPECT_EQ(found().size(), 12);
    few.time = std::chrono::milliseconds(0);
    EXPECT_TRUE(found(PersonalFolders::Included, few).isEmpty());
}

TEST(JobEvidence, is_what_the_job_was_proposed_for) {
    const auto names = [](const char *text) {
        return QString::fromUtf8(text).split(u',', Qt::SkipEmptyParts);
    };
    const struct {
        const char *labels;
        const char *apps;
        const char *job;
        const char *evidence;
    } cases[] = {
        {"React Native,React", "Figma,Android Studio,Xcode", "Développeur mobile",
         "React Native,Xcode,Android Studio"},
        {"React,Python", "Figma", "Développeur web", "React"},
        {"Python", "Figma", "Développeur Python", "Python"},
        {"MCP", "Figma", "Designer produit", "Figma"},
        {"MCP", "", "Développeur", ""},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(jobTitle(names(one.labels), names(one.apps)), QString::fromUtf8(one.job));
        EXPECT_EQ(jobEvidence(names(one.labels), names(one.apps)), names(one.evidence)) << one.job;
    }
}

} // namespace
} // namespace vorle
