#include "search/discovery/Version.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(Version, reads_what_registries_write_and_nothing_else) {
    for (const char *text : {"1", "v1.2.3", " 1.2.3 ", "1.2.3-rc.1", "1.2.3+build.7", "2024.10.1",
                             "1.0rc1", "1.0.dev3", "2.31.0.post1", "3.2.0.Final", "33.0.0-jre"}) {
        EXPECT_TRUE(parseVersion(QString::fromUtf8(text))) << text;
    }
    for (const char *text :
         {"", "v", "latest", "^1.2", "1.x", "1.2.*", "1..2", "1.2.3-", "1.2 3", "1.2.3-a..b",
          "99999999999999999999999.1", "-1", "1.2.3foo", "１.２"}) {
        EXPECT_FALSE(parseVersion(QString::fromUtf8(text))) << text;
    }
}

TEST(Version, is_found_in_a_text_in_order) {
    const auto found = [](const QString &text) {
        QStringList versions;
        for (const auto &[begin, end] : versionSpans(text)) {
            versions += text.sliced(begin, end - begin);
        }
        return versions.join(u' ').toStdString();
    };
    EXPECT_EQ(
        found(QStringLiteral("Qt 6.4.2, v1.2-rc1 and 10.0.19045.3 – not 7 nor 8. nor .9; 1.2.3-")),
        "6.4.2 1.2-rc1 10.0.19045 1.2.3");
    EXPECT_EQ(found({}), "");
}

TEST(Version, orders_releases_and_pre_releases) {
    // Each comes after the one before it.
    const QStringList rising{QStringLiteral("0.9.12"),
                             QStringLiteral("1.0.0-alpha"),
                             QStringLiteral("1.0.0-alpha.1"),
                             QStringLiteral("1.0.0-alpha.beta"),
                             QStringLiteral("1.0.0-beta"),
                             QStringLiteral("1.0.0-beta.2"),
                             QStringLiteral("1.0.0-beta.11"),
                             QStringLiteral("1.0.0-rc.1"),
                             QStringLiteral("1.0.0"),
                             QStringLiteral("1.0.0.post1"),
                             QStringLiteral("1.0.1"),
                             QStringLiteral("1.2"),
                             QStringLiteral("1.10b2"),
                             QStringLiteral("v1.10"),
                             QStringLiteral("2")};
    for (qsizetype a = 0; a < rising.size(); ++a) {
        for (qsizetype b = 0; b < rising.size(); ++b) {
            EXPECT_EQ(isNewer(rising[a], rising[b]), a > b)
                << rising[a].toStdString() << " and " << rising[b].toStdString();
        }
    }
    EXPECT_TRUE(std::is_eq(compareVersions(*parseVersion(u"1.2"), *parseVersion(u"v1.2.0+7"))));
    EXPECT_TRUE(
        std::is_eq(compareVersions(*parseVersion(u"1.2.0-RC1"), *parseVersion(u"1.2-rc1"))));
    EXPECT_FALSE(isNewer(u"latest", u"1.0"));
    EXPECT_FALSE(isNewer(u"2.0", u"main"));
}

struct NewsCase {
    const char *dependency;
    const char *inUse;
    const char *title;
    const char *text;
    const char *newVersion; ///< empty: none
    bool notNewer = false;
};

TEST(Version, a_page_tells_the_version_it_announces_or_none) {
    const NewsCase cases[] = {
        // The title names the dependency and one version of it.
        {"typescript", "5.5.2", "Announcing TypeScript 5.6", "It follows 5.5.", "5.6"},
        {"next", "14.2.1", "Next.js 15.0.3 is out!", "", "15.0.3"},
        {"expo", "50.0.0", "Expo SDK v51.1.0-beta.2.", "", "51.1.0-beta.2"},
        {"react-native", "0.74.1", "React Native 0.76 - New Architecture by default", "", "0.76"},
        {"@tanstack/react-query", "5.1.0", "react-query 5.60.1 - npm", "", "5.60.1"},
        {"Django", "4.2.1", "Django 5.1.2 | PyPI", "", "5.1.2"},
        {"react", "18.3.1", "Release v19.0.0 · facebook/react · GitHub", "", "19.0.0"},
        {"react", "18.3.1", "React 19.1 Upgrade Guide", "", "19.1"},
        // A release that is not newer is told; any other page about that version stays news.
        {"react", "18.3.1", "React 18.2", "", "18.2", true},
        {"react", "18.3.1", "Release 18.3.1 · facebook/react · GitHub", "", "18.3.1", true},
        {"typescript", "5.6.2", "Announcing TypeScript 5.6 - TypeScript", "", "5.6", true},
        {"zod", "4.1.0", "What’s new in Zod 4.0.17", "", "4.0.17", true},
        {"react", "18.3.1", "Seven mistakes with React 18.2 hooks", "", ""},
        {"react", "18.3.1", "Announcing our move to React 18.2", "", ""},
        {"react", "18.3.1", "React 18.2: the complete guide", "", ""},
        // A flaw's versions are those that have it.
        {"next", "15.2.0", "CVE-2025-29927 in Next.js 15.2.0", "", ""},
        {"next", "14.2.0", "Vulnerability in Next.js 15.2.0", "", ""},
        // Another name, several versions, or no version at all.
        {"react", "18.3.1", "React Native 0.76", "", ""},
        {"react", "18.3.1", "Preact 19.5 released", "", ""},
        {"react", "5.0.0", "Release eslint-plugin-react-hooks@5.1.0 · facebook/react", "", ""},
        {"@babel/core", "7.1.0", "Kotlin Core 8.2 released", "", ""},
        {"next", "14.0.0", "From Next.js 14.1 to Next.js 15.0", "", ""},
        {"vite", "5.0.0", "Vite 6.x roadmap", "", ""},
        {"php", "7.4.0", "PHP7.4.1-8.0.2", "", ""},
        {"react", "18.0.0", "Foo a1.2.3-4.5.6 and React 19.1.0", "", "19.1.0"},
        {"zod", "3.22.0", "Validation at the edge", "Zod 4.0 is out", ""},
        {"zod", "main", "Zod 4.0", "", ""},
        // A changelog, newest first.
        {"zod", "3.22.0", "Changelog | Zod", "Changes\n\n## v4.1.2 (2026-01-02)\nfix\n\n4.1.1\n- a",
         "4.1.2"},
        {"zod", "3.22.0", "Changelog | Zod", "3.0.0\nold\n4.1.2\nnew", ""},
        {"zod", "3.22.0", "Changelog | Zod", "16.5 GB less, says node 20.1.1", ""},
        {"zod", "5.0.0", "Changelog | Zod", "4.1.2", ""},
        {"zod", "3.22.0", "Using Zod", "4.1.2", ""},
    };
    for (const NewsCase &c : cases) {
        const VersionNews news =
            versionNews(QString::fromUtf8(c.dependency), QString::fromUtf8(c.inUse),
                        QString::fromUtf8(c.title), QString::fromUtf8(c.text));
        EXPECT_EQ(news.newVersion.value_or(QString()).toStdString(), c.newVersion) << c.title;
        EXPECT_EQ(news.notNewer, c.notNewer) << c.title;
        EXPECT_EQ(news.currentVersion, QString::fromUtf8(c.inUse)) << c.title;
    }
    EXPECT_EQ(versionNews(QStringLiteral("zod"), {}, QStringLiteral("Zod 4.0"), u"4.0"),
              VersionNews());
    // Linear, or this never ends.
    for (const QStringView piece : {u"PHP7.4.1-8.0.2 ", u"1.2.", u"a1.2+", u"zod v"}) {
        const QString title = piece.toString().repeated(2'000'000 / piece.size());
        EXPECT_FALSE(
            versionNews(QStringLiteral("zod"), QStringLiteral("1.0"), title, u"").notNewer);
    }
}

} // namespace
} // namespace vorle
