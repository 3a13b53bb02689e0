#include "search/discovery/LockFile.h"

#include "search/discovery/DeclaredVersions.h"
#include "search/discovery/Toml.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace vorle {
namespace {

using Versions = QMap<QString, QString>;

discovery::Manifest manifestOf(const QString &folder, const QString &name) {
    QFile file(QDir(folder).filePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return {name, QString::fromUtf8(file.readAll())};
}

/// "react 18.3.1, typescript 5.4.5"
std::string written(const Versions &versions) {
    QStringList parts;
    for (auto it = versions.begin(); it != versions.end(); ++it) {
        parts += it.key() + u' ' + it.value();
    }
    return parts.join(QStringLiteral(", ")).toStdString();
}

void write(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(LockFile, the_lock_beside_the_manifest_says_what_is_in_use) {
    const struct {
        const char *folder;
        const char *manifest;
        const char *versions;
    } cases[] = {
        {"npm3", "package.json",
         "@tanstack/react-query 5.59.0, left 1.1, react 18.3.1, typescript 5.4.5"},
        {"npm1", "package.json",
         "@tanstack/react-query 5.0.0, left 1.1, react 18.2.0, typescript 5.4.2"},
        {"pnpm5", "package.json",
         "@tanstack/react-query 5.8.4, left 1.1, react 18.2.0, typescript 5.4.3"},
        {"pnpm9", "package.json",
         "@tanstack/react-query 5.59.0, left 1.1, react 18.3.1, typescript 5.4.5"},
        {"yarn1", "package.json",
         "@tanstack/react-query 5.28.4, left 1.1, react 18.2.0, typescript 5.4.5"},
        {"berry", "package.json",
         "@tanstack/react-query 5.28.4, left 1.1, react 18.3.1, typescript 5.4.5"},
        {"poetry", "pyproject.toml", "Django 4.2.11, pytest 8.1.1, ruamel.yaml 0.18.6"},
        {"uv", "pyproject.toml", "fastapi 0.115.0, pydantic 2.7.4, pytest 8.1.0, ruff 0.3"},
        {"swift1", "Package.swift", "Vapor 4.92.1, fixed 3.1.4, old-thing 1.2.0, swift-nio 2.60.0"},
        {"swift3", "Package.swift", "Vapor 4.90.0, fixed 3.1.4, old-thing 1.2.0, swift-nio 2.65.0"},
        {"gradle", "gradle/libs.versions.toml",
         "androidx.compose.ui:ui 1.6.1, androidx.compose:compose-bom 2024.02.00, "
         "com.google.devtools.ksp 1.9.22-1.0.17, com.squareup.okio:okio 3.8.0, "
         "io.ktor:ktor-client-core 2.3.9, org.jetbrains.kotlin.android 1.9.23"},
        {"gradle", "app/build.gradle.kts",
         "androidx.compose:compose-bom 2024.02.00, com.android.application 8.2.2, "
         "com.squareup.okio:okio 3.8.0, io.ktor:ktor-client-core 2.3.9, "
         "org.jetbrains.kotlin.android 1.9.22"},
    };
    for (const auto &c : cases) {
        const QString folder =
            QStringLiteral(VORLE_SAMPLES "/locks/") + QString::fromUtf8(c.folder);
        EXPECT_EQ(written(versionsInUse(folder, manifestOf(folder, QString::fromUtf8(c.manifest)))),
                  c.versions)
            << c.folder;
    }
}

TEST(LockFile, a_lock_that_cannot_be_read_leaves_the_manifest) {
    const QTemporaryDir folder;
    const discovery::Manifest manifest{QStringLiteral("package.json"),
                                       QStringLiteral(R"({"dependencies":{"react":"^18.2.0"}})")};
    const Versions declared{{QStringLiteral("react"), QStringLiteral("18.2.0")}};
    const QByteArray sound(R"({"packages":{"node_modules/react":{"version":"18.3.1"}}})");
    const QString npm = folder.filePath(QStringLiteral("package-lock.json"));
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("null"), QByteArray("[1]"), sound.chopped(3),
          QByteArray(R"({"packages":{"node_modules/react":{"version":7}}})"),
          QByteArray("[").repeated(100'000), sound + QByteArray(20'000'000, ' ')}) {
        write(npm, bytes);
        EXPECT_EQ(versionsInUse(folder.path(), manifest), declared) << bytes.left(60).constData();
    }
    write(npm, sound);
    EXPECT_EQ(versionsInUse(folder.path(), manifest).first(), QStringLiteral("18.3.1"));

    const QString pnpm = folder.filePath(QStringLiteral("pnpm-lock.yaml"));
    for (const char *text : {"\"", ":", "dependencies:\n  react:\n  version", "'\n: '", "\xFF\xFE",
                             "importers:\n  .:\n    dependencies:\n      react:"}) {
        write(pnpm, text);
        EXPECT_EQ(versionsInUse(folder.path(), manifest), declared) << text;
    }
    QFile::remove(pnpm);
    const QString yarn = folder.filePath(QStringLiteral("yarn.lock"));
    for (const char *text :
         {"\"", "react@^18.2.0", "react@^18.2.0:\n  version", ",\n  version \""}) {
        write(yarn, text);
        EXPECT_EQ(versionsInUse(folder.path(), manifest), declared) << text;
    }
    QFile::remove(yarn);
    ASSERT_EQ(mkfifo(QFile::encodeName(yarn).constData(), 0600), 0);
    EXPECT_EQ(versionsInUse(folder.path(), manifest).first(), QStringLiteral("18.3.1"));
}

TEST(LockFile, the_lowest_version_a_requirement_names) {
    const std::pair<const char *, const char *> cases[] = {
        {"^1.2.3", "1.2.3"},
        {"~1.2", "1.2"},
        {"18.x", "18"},
        {"1.*", "1"},
        {">=4.2,<5", "4.2"},
        {"== 4.2.1", "4.2.1"},
        {"1.2 - 2.3", "1.2"},
        {"^2.0 || ^1.4", "1.4"},
        {"npm:other@^3.1", "3.1"},
        {"[1.0,2.0)", "1.0"},
        {"(,2.0)", ""},
        {"<2", ""},
        {"!=1.5", ""},
        {"*", ""},
        {"latest", ""},
        {"workspace:^1.0", ""},
        {"file:../a-1.2", ""},
        {"owner/repo#v1.2", ""},
        {"git+ssh://x#1.2", ""},
        {"v1.2.0-beta.1", "1.2.0-beta.1"},
        {"1.+", "1"},
    };
    for (const auto &[requirement, lowest] : cases) {
        EXPECT_EQ(lowestVersion(QString::fromUtf8(requirement)).toStdString(), lowest)
            << requirement;
    }
}

TEST(LockFile, requirements_and_unknown_manifests) {
    const auto names = [](const char *file, const char *text) {
        QStringList found;
        for (const auto &d :
             declaredDependencies({QString::fromUtf8(file), QString::fromUtf8(text)})) {
            found += d.name + u'=' + d.version;
        }
        return found.join(u' ').toStdString();
    };
    EXPECT_EQ(names("requirements.txt",
                    "# comment\r\nDjango==4.2.1 \\\n  --hash=sha256:1f2.3\r\n-r base.txt\n"
                    "requests[socks] >= 2.31, < 3 ; python_version > '3.8'\n"
                    "numpy\nlocal @ file:///x-1.2\nDjango==1.0\nuvicorn~=0.27  # fast 9.9\n"
                    "git+https://example.org/x.git@v1.0#egg=x"),
              "Django=4.2.1 requests=2.31 numpy= local= uvicorn=0.27");
    EXPECT_EQ(names("package.json", "[]"), "");
    EXPECT_EQ(names("Cargo.toml", "[dependencies]\nserde = \"1.0\""), "");
}

TEST(LockFile, toml_that_never_closes_is_no_trouble) {
    for (const char *text :
         {"a = [", "a = \"", "a = \"\"\"", "[", "a", "=", "a = {b = 'c", "]]]=1", "a = \"\\"}) {
        toml::entries(text);
        toml::strings(text);
        toml::inlineTable(text);
    }
    const auto entries =
        toml::entries("a . \"b\" = 'x' # no\n[[ t ]]\nc = [ \"1\", # no\n '2' ]]\nd=1");
    ASSERT_EQ(entries.size(), 3);
    EXPECT_EQ(entries[0].key, QStringLiteral("a.b"));
    EXPECT_EQ(entries[0].value, "'x'");
    EXPECT_EQ(toml::strings(entries[1].value),
              QStringList({QStringLiteral("1"), QStringLiteral("2")}));
    EXPECT_EQ(entries[2].table, QStringLiteral("t"));
    EXPECT_EQ(entries[2].block, 1);
}

} // namespace
} // namespace vorle
