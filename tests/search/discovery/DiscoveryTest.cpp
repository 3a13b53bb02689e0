#include "search/discovery/Discovery.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

using discovery::Project;

void put(const QTemporaryDir &folder, const QString &name, const QByteArray &bytes) {
    const QString path = folder.filePath(name);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(TechnologyLabels, follow_the_table_and_keep_three) {
    const struct {
        const char16_t *text;
        const char16_t *file;
        QStringList labels;
    } cases[] = {
        {u"{\"description\":\"we react to next events\"}", u"package.json", {}},
        {u"{\"React\":1,\"next\":2}",
         u"package.json",
         {QStringLiteral("Next.js"), QStringLiteral("React")}},
        {u"Django==5\nfastapi",
         u"requirements.txt",
         {QStringLiteral("Python"), QStringLiteral("Django"), QStringLiteral("FastAPI")}},
        {u"kotlin compose firebase typescript supabase",
         u"pyproject.toml",
         {QStringLiteral("Python"), QStringLiteral("Kotlin"), QStringLiteral("Compose")}},
        {u"bpy blender", u"x", {QStringLiteral("Blender")}},
        {u"swiftui", u"Package.swift", {QStringLiteral("Swift"), QStringLiteral("SwiftUI")}},
        {u"", u"sub/requirements.txt", {}},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(
            discovery::technologyLabels(QString::fromUtf16(one.text), QString::fromUtf16(one.file)),
            one.labels);
    }
}

TEST(DependencyCount, counts_by_the_kind_of_file) {
    const auto count = [](const char *text, const char *file) {
        return discovery::dependencyCount(QString::fromUtf8(text), QString::fromUtf8(file));
    };
    EXPECT_EQ(count("[versions]\na=1\nb=2\nc=3\n[libraries]\nd={}\n# x=1\n\ne=1\n[bundles]\nf=1\n"
                    "[plugins]\ng=1",
                    "gradle/libs.versions.toml"),
              4);
    EXPECT_EQ(count("[versions]\na=1\nb=1\nc=1\n[libraries]\nx = 1\ny = 2", "libs.versions.toml"),
              2);
    EXPECT_EQ(count(R"({"dependencies":{"a":1,"b":2},"devDependencies":{"c":3}})", "package.json"),
              3);
    EXPECT_EQ(count(R"({"dependencies":[1,2]})", "package.json"), 0);
    EXPECT_EQ(count("[1]", "package.json"), 0);
    EXPECT_EQ(count("not json", "package.json"), 0);
    EXPECT_EQ(count("# c\n\n a==1 \n\tb\r\n", "requirements.txt"), 2);
}

TEST(ReadProject, takes_the_first_known_file_and_names_what_is_wrong) {
    QTemporaryDir folder;
    EXPECT_EQ(discovery::readProject(folder.path()).problem, Project::Problem::NoManifest);
    EXPECT_EQ(discovery::readProject(folder.filePath(QStringLiteral("gone"))).problem,
              Project::Problem::NoFolder);
    EXPECT_EQ(discovery::readProject({}).problem, Project::Problem::NoFolder);

    put(folder, QStringLiteral("gradle/libs.versions.toml"), "[libraries]\na=1\nkotlin=1");
    Project found = discovery::readProject(folder.path());
    EXPECT_EQ(found.manifest->name, u"gradle/libs.versions.toml");
    EXPECT_EQ(found.dependencies, 2);

    put(folder, QStringLiteral("package.json"), "\xEF\xBB\xBF{\"dependencies\":{\"next\":\"16\"}}");
    found = discovery::readProject(folder.path());
    EXPECT_EQ(found.manifest->name, u"package.json");
    EXPECT_EQ(found.dependencies, 1);
    EXPECT_EQ(found.labels, QStringList{QStringLiteral("Next.js")});

    put(folder, QStringLiteral("package.json"), "{ \"dependencies\": ");
    found = discovery::readProject(folder.path());
    EXPECT_EQ(found.problem, Project::Problem::MalformedManifest);
    EXPECT_TRUE(found.labels.isEmpty());
    EXPECT_FALSE(discovery::problemText(found).isEmpty());

    for (const QByteArray &bytes :
         {QByteArray("\xFF\xFE\x00{", 4), QByteArray("a\0b", 3), QByteArray(2'000'001, ' ')}) {
        put(folder, QStringLiteral("package.json"), bytes);
        found = discovery::readProject(folder.path());
        EXPECT_EQ(found.problem, Project::Problem::UnreadableManifest);
        EXPECT_EQ(found.dependencies, 0);
        EXPECT_FALSE(found.manifest);
    }
}

// Opening a pipe nobody writes to would never come back.
TEST(ReadProject, does_not_wait_on_a_pipe_named_like_a_manifest) {
    QTemporaryDir folder;
    ASSERT_EQ(
        mkfifo(folder.filePath(QStringLiteral("package.json")).toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(discovery::readProject(folder.path()).problem, Project::Problem::UnreadableManifest);
}

} // namespace
} // namespace vorle
