#include "search/web/Links.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QString q(const char *text) { return QString::fromUtf8(text); }

TEST(Links, only_absolute_http_addresses_are_read) {
    for (const char *link : {"http://a.fr", "HTTPS://a.fr/é?x#y", " https://a.fr/ "}) {
        EXPECT_TRUE(readableLink(q(link)).isValid()) << link;
    }
    for (const char *link : {"", "a.fr", "//a.fr/", "ftp://a.fr/", "file:///etc/passwd", "http://",
                             "http:///x", "javascript:alert(1)", "mailto:a@b.c", "http://a b/"}) {
        EXPECT_FALSE(readableLink(q(link)).isValid()) << link;
    }
}

TEST(Links, a_link_is_prepared_for_reading) {
    const std::pair<const char *, const char *> cases[] = {
        {"https://a.fr/p?utm_source=x&id=1&utm_medium=y", "https://a.fr/p?id=1"},
        {"https://a.fr/p?utm_source=x", "https://a.fr/p"},
        {"https://a.fr/p?autm_x=1&q=a%26b%3Dc+d", "https://a.fr/p?autm_x=1&q=a%26b%3Dc+d"},
        {"https://github.com/o/r/blob/main/docs/a%20b.md",
         "https://raw.githubusercontent.com/o/r/main/docs/a%20b.md"},
        {"https://www.github.com/o/r/blob/v1/README.md?utm_source=x",
         "https://raw.githubusercontent.com/o/r/v1/README.md"},
        {"https://github.com/o/r/blob", "https://github.com/o/r/blob"},
        {"https://github.com/o/r/tree/main/blob/x", "https://github.com/o/r/tree/main/blob/x"},
        {"https://a.fr/o/r/blob/main/x", "https://a.fr/o/r/blob/main/x"},
    };
    for (const auto &[link, prepared] : cases) {
        EXPECT_EQ(readableLink(q(link)).toString(QUrl::FullyEncoded), q(prepared)) << link;
    }
}

TEST(Links, spellings_of_one_link_are_one) {
    const QString link = q("https://example.com/a/B?id=1");
    for (const char *spelling :
         {"https://example.com/a/B?id=1", "HTTPS://EXAMPLE.com:443/a/B/?id=1#part",
          " https://me:pw@example.com/a/B//?utm_source=x&id=1&fbclid=2 "}) {
        EXPECT_EQ(canonicalLink(q(spelling)), link) << spelling;
    }
    EXPECT_EQ(canonicalLink(q("http://a.fr:80/")), canonicalLink(q("http://a.fr")));
    for (const char *other : {"https://example.com/a/b?id=1", "https://example.com/a/B?id=2",
                              "https://example.com:8443/a/B?id=1", "https://example.com/a/B"}) {
        EXPECT_NE(canonicalLink(q(other)), link) << other;
    }
    EXPECT_EQ(canonicalLink(q(" not a link ")), q("not a link"));
}

// Where many links end is not what one of them is about.
TEST(Links, doors_and_front_pages_name_no_page) {
    const std::pair<bool, const char *> cases[] = {
        {true, "https://a.fr/post"},
        {true, "https://a.fr/?p=12"},
        {true, "https://a.fr/authors/login-form-news"},
        {false, "https://a.fr"},
        {false, "https://a.fr/"},
        {false, "https://a.fr/Login?next=/post"},
        {false, "https://accounts.a.fr/v3/choose?continue=x"},
        {false, "https://consent.a.fr/m?continue=x"},
        {false, "not a link"},
    };
    for (const auto &[expected, link] : cases) {
        EXPECT_EQ(namesOnePage(q(link)), expected) << link;
    }
}

TEST(Links, the_kind_is_guessed_from_the_address) {
    const std::pair<ItemKind, const char *> cases[] = {
        {ItemKind::Video, "https://www.youtube.com/watch?v=x"},
        {ItemKind::Video, "https://youtu.be/x"},
        {ItemKind::Video, "https://vimeo.com/1"},
        {ItemKind::Video, "https://www.instagram.com/reel/x/"},
        {ItemKind::Article, "https://www.instagram.com/p/x/"},
        {ItemKind::Article, "https://notyoutube.com/watch"},
        {ItemKind::Package, "https://www.npmjs.com/package/vite"},
        {ItemKind::Package, "https://pypi.org/project/x/"},
        {ItemKind::Package, "https://crates.io/crates/serde"},
        {ItemKind::Discussion, "https://old.reddit.com/r/rust/comments/1"},
        {ItemKind::Discussion, "https://news.ycombinator.com/item?id=1"},
        {ItemKind::Discussion, "https://forum.qt.io/topic/1"},
        {ItemKind::Discussion, "https://github.com/o/r/discussions/3"},
        {ItemKind::Discussion, "https://github.com/o/r/issues/3"},
        {ItemKind::Announcement, "https://github.com/o/r/releases/tag/v1"},
        {ItemKind::Announcement, "https://a.fr/docs/CHANGELOG.md"},
        {ItemKind::Announcement, "https://a.fr/release-notes/2"},
        {ItemKind::Security, "https://github.com/o/r/security/advisories/GHSA-1"},
        {ItemKind::Security, "https://github.com/advisories/GHSA-1"},
        {ItemKind::Security, "https://a.fr/security/2026-1"},
        {ItemKind::Tool, "https://github.com/o/r"},
        {ItemKind::Tool, "https://gitlab.com/o/r/"},
        {ItemKind::Tool, "https://github.com/googleapis/release-please"},
        {ItemKind::Tool, "https://github.com/release-it/release-it/tree/main"},
        {ItemKind::Tool, "https://codeberg.org/o/changelog-maker"},
        {ItemKind::Article, "https://github.com/o/release-please/blob/main/README.md"},
        {ItemKind::Announcement, "https://github.com/o/release-please/releases/tag/v17"},
        {ItemKind::Announcement, "https://github.com/o/r/blob/main/CHANGELOG.md"},
        {ItemKind::Announcement, "https://gitlab.com/g/sub/release-tool/-/releases"},
        {ItemKind::Announcement, "https://a.fr/2026/react-20-released"},
        {ItemKind::Article, "https://github.com/features/copilot"},
        {ItemKind::Article, "https://github.com/o"},
        {ItemKind::Article, "https://a.fr/x"},
        {ItemKind::Article, "not a link"},
    };
    for (const auto &[kind, link] : cases) {
        EXPECT_EQ(guessKind(q(link)), kind) << link;
    }
}

TEST(Links, a_repository_is_told_from_github_s_own_pages) {
    const Repository repository{q("o"), q("r")};
    for (const char *link :
         {"https://github.com/o/r", "https://www.github.com/o/r.git",
          "http://github.com/o/r/issues", "https://raw.githubusercontent.com/o/r/main/README.md"}) {
        EXPECT_EQ(gitHubRepository(q(link)), repository) << link;
    }
    for (const char *link : {"https://github.com/o", "https://github.com/topics/cpp",
                             "https://gitlab.com/o/r", "https://a.fr/o/r", ""}) {
        EXPECT_FALSE(gitHubRepository(q(link)).has_value()) << link;
    }
}

} // namespace
} // namespace vorle
