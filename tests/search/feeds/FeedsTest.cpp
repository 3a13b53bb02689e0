#include "search/feeds/Feeds.h"
#include "search/web/Links.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::TestReply;
using test::TestServer;

const QDateTime today(QDate(2026, 11, 21), QTime(8, 0), Qt::UTC);

class FixedClock final : public Clock {
public:
    QDateTime now() const override { return today; }
};

TestReply page(const QByteArray &head) {
    return TestReply::page("<!doctype html><html><head>" + head + "</head></html>");
}

QByteArray item(const QByteArray &link, const QByteArray &date = {}) {
    return "<item><title>t</title><link>" + link + "</link>" +
           (date.isEmpty() ? QByteArray() : "<pubDate>" + date + "</pubDate>") + "</item>";
}

TestReply feed(const QByteArray &items) {
    TestReply reply = TestReply::page("<rss><channel>" + items + "</channel></rss>");
    reply.contentType = "application/rss+xml";
    return reply;
}

constexpr auto announcement = R"(<link rel="alternate" type="application/rss+xml" href="/feed">)";

class FeedsTest : public testing::Test {
protected:
    PrioritySite site(const QByteArray &path = "/", std::optional<QString> known = {},
                      std::optional<QDateTime> checked = {}) {
        return {server.link(path), std::move(known), std::move(checked)};
    }

    FeedsForRun run(QList<PrioritySite> sites, QSet<QString> known = {}) {
        return test::waitFor(feeds.itemsForRun(std::move(sites), std::move(known)));
    }

    TestServer server;
    HttpClient http{true};
    FixedClock clock;
    Feeds feeds{http, clock};
};

TEST(AnnouncedFeed, is_the_first_link_that_is_one) {
    const std::pair<const char *, const char *> cases[] = {
        {R"(<link rel="alternate" type="application/rss+xml" href="/a?x=1&amp;y=2">)",
         "https://s.example/a?x=1&y=2"},
        {R"(<link href='feed.atom' type='application/atom+xml' rel='alternate'/>)",
         "https://s.example/blog/feed.atom"},
        {R"(<LINK REL="home alternate" TYPE="application/RSS+XML; charset=utf-8"
             HREF = "https://f.example/a">)",
         "https://f.example/a"},
        {R"(<link rel="stylesheet" type="application/rss+xml" href="/a"><link rel="alternate"
             type="text/html" href="/b"><link rel="alternate" type="application/atom+xml"
             href="/c"><link rel="alternate" type="application/rss+xml" href="/d">)",
         "https://s.example/c"},
        {R"(<link rel="alternate" type="application/rss+xml"><link rel="alternate"
             type="application/rss+xml" href="javascript:x"><link rel="alternate"
             type="application/rss+xml" href="//f.example/b">)",
         "https://f.example/b"},
        {R"(<link title="l'actualité" rel="alternate" type="application/rss+xml" href="/l'actu">)",
         "https://s.example/l'actu"},
        {"<link rel=alternate type=application/rss+xml href=/f.xml?a=1&amp;b=2 title=x>",
         "https://s.example/f.xml?a=1&b=2"},
        {"<link rel=stylesheet type=application/rss+xml href=/a>", ""},
        {"<link rel=alternate type=application/rss+xml href=>", ""},
        {R"(<link rel="alternate" data-type="application/rss+xml" href="/a">)", ""},
        {R"(<linked rel="alternate" type="application/rss+xml" href="/a">)", ""},
        {R"(<a rel="alternate" type="application/rss+xml" href="/a">)", ""},
        {R"(<link rel="alternate" type="application/rss+xml" href="/a")", ""},
        {"", ""},
    };
    for (const auto &[html, expected] : cases) {
        const auto found = announcedFeed(html, QUrl(QStringLiteral("https://s.example/blog/")));
        EXPECT_EQ(found.value_or(QString()).toStdString(), expected) << html;
    }
    // Linear, or this never ends.
    EXPECT_FALSE(announcedFeed(QByteArray("<link rel='a").repeated(250'000), QUrl()).has_value());
    EXPECT_FALSE(announcedFeed("<link " + QByteArray("rel=\"").repeated(600'000) + '>', QUrl()));
}

TEST_F(FeedsTest, discovers_and_reads_as_a_browser_would_ask) {
    server.serve("/", TestReply::redirect("/accueil/"));
    server.serve("/accueil/", page(R"(<link type="application/atom+xml" rel="alternate"
                                       href="flux?a=1&amp;b=2">)"));
    server.serve("/accueil/flux", TestReply::redirect("/flux/nouveau.xml", 301));
    server.serve("/flux/nouveau.xml", feed(item("/un", "Thu, 19 Nov 2026 18:05:00 GMT")));
    const auto address = test::waitFor(feeds.discover(server.link("/")));
    ASSERT_EQ(address, server.link("/accueil/flux") + QStringLiteral("?a=1&b=2"));
    const FeedReading reading = test::waitFor(feeds.read(*address, QStringLiteral("le site")));
    ASSERT_EQ(reading.outcome, FeedOutcome::Read);
    ASSERT_EQ(reading.items.size(), 1);
    EXPECT_EQ(reading.items.first().link, server.link("/un"));
    EXPECT_EQ(reading.items.first().site, QStringLiteral("le site"));
    for (const auto &request : server.requests()) {
        EXPECT_EQ(request.headers.value("user-agent"),
                  "Mozilla/5.0 (Macintosh; Intel Mac OS X 15_0) AppleWebKit/605.1.15 (KHTML, like "
                  "Gecko) Version/18.0 Safari/605.1.15");
    }
}

TEST_F(FeedsTest, what_cannot_be_read_is_told_and_is_no_error) {
    TestReply gone = TestReply::page("gone");
    gone.status = 410;
    server.serve("/gone", gone);
    server.serve("/page", page(announcement));
    server.serve("/broken", TestReply::shaped(TestReply::Shape::Raw, "no HTTP"));
    server.serve("/endless", TestReply::shaped(TestReply::Shape::Endless,
                                               "<rss>" + item("https://a.example/").repeated(999)));
    const std::pair<QString, FeedOutcome> cases[] = {
        {server.link("/gone"), FeedOutcome::Unreachable},
        {server.link("/broken"), FeedOutcome::Unreachable},
        {QStringLiteral("http://10.0.0.1/feed"), FeedOutcome::Unreachable},
        {QStringLiteral("file:///etc/passwd"), FeedOutcome::Unreachable},
        {server.link("/page"), FeedOutcome::NoFeed},
        // What a person types may be long, not endless, and holds no control signs.
        {server.link("/page?") + QString(3'000, u'x'), FeedOutcome::NoFeed},
        {server.link("/page?") + QString(4'000, u'x'), FeedOutcome::Unreachable},
        {server.link("/page?") + QStringLiteral("a\nb"), FeedOutcome::Unreachable},
        {server.link("/endless"), FeedOutcome::Read},
    };
    for (const auto &[address, outcome] : cases) {
        const FeedReading reading = test::waitFor(feeds.read(address, {}));
        EXPECT_EQ(reading.outcome, outcome) << address.toStdString();
        EXPECT_EQ(reading.items.isEmpty(), outcome != FeedOutcome::Read) << address.toStdString();
    }
    EXPECT_EQ(test::waitFor(feeds.discover(server.link("/gone"))), std::nullopt);

    HttpClient guarded;
    Feeds strangers(guarded, clock);
    EXPECT_EQ(test::waitFor(strangers.discover(server.link("/page"))), std::nullopt);
    EXPECT_EQ(test::waitFor(strangers.discover(server.link("/page"), {}, Reach::Anywhere)),
              server.link("/feed"));
}

TEST_F(FeedsTest, a_run_takes_the_newest_of_the_last_month) {
    QByteArray items;
    for (int i = 1; i <= 20; ++i) { // oldest first
        items += item("https://a.example/" + QByteArray::number(i),
                      QDate(2026, 10, 31).addDays(i).toString(Qt::ISODate).toUtf8() + "T00:00:00Z");
    }
    server.serve("/", page(announcement));
    server.serve("/feed", feed(items));
    server.serve("/b", page(R"(<link rel="alternate" type="application/rss+xml" href="/bf">)"));
    server.serve("/bf",
                 feed(item("https://b.example/undated-known/?utm_source=rss") +
                      item("https://b.example/undated") + item("https://b.example/undated#x") +
                      item("https://b.example/31-days", "2026-10-21T08:00:00Z") +
                      item("https://b.example/older", "2026-10-21T07:59:59Z") +
                      item("https://b.example/years-ahead", "2036-11-21T00:00:00Z") +
                      item("https://b.example/tonight", "2026-11-21T20:00:00Z") +
                      item("https://b.example/dated-known", "2026-11-20T00:00:00Z")));
    const FeedsForRun got = run({site("/"), site("/b")},
                                {canonicalLink(QStringLiteral("https://b.example/undated-known")),
                                 canonicalLink(QStringLiteral("https://b.example/dated-known"))});
    QStringList links;
    for (const FeedItem &one : got.items) {
        links += one.link.section(u'/', 3);
    }
    QStringList expected;
    for (int i = 20; i > 5; --i) {
        expected += QString::number(i);
    }
    expected += {QStringLiteral("tonight"), QStringLiteral("31-days"), QStringLiteral("undated"),
                 QStringLiteral("years-ahead")};
    EXPECT_EQ(links, expected);
    EXPECT_FALSE(got.items.last().date) << "a date that cannot be is none";
    EXPECT_EQ(got.reports, (QList<SiteFeedResult>{{server.link("/"), FeedOutcome::Read, 15},
                                                  {server.link("/b"), FeedOutcome::Read, 4}}));
    EXPECT_EQ(got.sites, (QList<PrioritySite>{{server.link("/"), server.link("/feed"), today},
                                              {server.link("/b"), server.link("/bf"), today}}));
}

TEST_F(FeedsTest, searches_a_site_again_when_it_is_due) {
    server.serve("/", page(announcement));
    server.serve("/feed", feed(item("https://a.example/1")));
    server.serve("/none", page({}));
    server.serve("/moved", page(announcement)); // its old feed is gone
    server.serve("/b", page(R"(<link rel="alternate" type="application/rss+xml" href="/gone">)"));
    TestReply busy = TestReply::page("busy");
    busy.status = 503;
    server.serve("/busy", busy);
    const QString failing = server.link("/busy");
    const QString gone = server.link("/gone");
    const QString good = server.link("/feed");
    const QDateTime recent = today.addDays(-6);
    const QDateTime old = today.addDays(-7);
    struct Due {
        PrioritySite given;
        PrioritySite left;
        FeedOutcome outcome;
        int pagesRead;
    };
    const Due cases[] = {
        {site("/"), site("/", good, today), FeedOutcome::Read, 1},
        {site("/", {}, recent), site("/", {}, recent), FeedOutcome::NoFeed, 0},
        {site("/", {}, old), site("/", good, today), FeedOutcome::Read, 1},
        {site("/", {}, today.addDays(1)), site("/", good, today), FeedOutcome::Read, 1},
        {site("/", good, recent), site("/", good, recent), FeedOutcome::Read, 0},
        {site("/", good, old), site("/", good, today), FeedOutcome::Read, 1},
        {site("/none", good, old), site("/none", good, today), FeedOutcome::Read, 1},
        {site("/b", good, old), site("/b", good, today), FeedOutcome::Read, 1},
        {site("/dead", good, old), site("/dead", good, old), FeedOutcome::Read, 1},
        {site("/none", failing, recent), site("/none", failing, today), FeedOutcome::Unreachable,
         1},
        {site("/moved", failing, recent), site("/moved", good, today), FeedOutcome::Read, 1},
        {site("/none", server.link("/none"), recent), site("/none", {}, today), FeedOutcome::NoFeed,
         2},
        {site("/none"), site("/none", {}, today), FeedOutcome::NoFeed, 1},
        // The address of a feed, typed as a site's: looked at once, then read.
        {site("/feed"), site("/feed", good, today), FeedOutcome::Read, 2},
        {site("/none", gone, recent), site("/none", {}, today), FeedOutcome::NoFeed, 1},
        {site("/moved", gone, recent), site("/moved", good, today), FeedOutcome::Read, 1},
        {site("/dead"), site("/dead"), FeedOutcome::Unreachable, 1},
        {site("/dead", gone, recent), site("/dead", gone, recent), FeedOutcome::Unreachable, 1},
    };
    for (const Due &due : cases) {
        const QByteArray path = QUrl(due.given.address).path().toUtf8();
        const qsizetype before = server.requestCount(path);
        const FeedsForRun got = run({due.given});
        const auto what = json::encode(due.given);
        EXPECT_EQ(got.sites, QList<PrioritySite>{due.left}) << what.constData();
        EXPECT_EQ(got.reports.first().outcome, due.outcome) << what.constData();
        EXPECT_EQ(got.items.size(), due.outcome == FeedOutcome::Read ? 1 : 0) << what.constData();
        EXPECT_EQ(server.requestCount(path) - before, due.pagesRead) << what.constData();
    }
    EXPECT_EQ(run({}).reports.size(), 0);
}

TEST_F(FeedsTest, reads_all_sites_at_once_and_stops_when_told) {
    QList<PrioritySite> sites;
    for (int i = 0; i < 8; ++i) {
        const QByteArray path = "/" + QByteArray::number(i);
        TestReply slow = feed(item("https://a.example" + path));
        slow.delay = 30ms;
        server.serve(path, slow);
        sites += site(path, server.link(path));
    }
    EXPECT_EQ(run(sites).items.size(), 8);
    EXPECT_EQ(server.maxConcurrent(), 8);

    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    sites += site("/silent", server.link("/silent"));
    CancelSource source;
    auto task = feeds.itemsForRun(sites, {}, source.token());
    test::spinUntil([&] { return server.requestCount("/silent") == 1; });
    source.cancel();
    EXPECT_THROW(test::waitFor(std::move(task)), Cancelled);
    EXPECT_THROW(test::waitFor(feeds.read(server.link("/0"), {}, source.token())), Cancelled);
}

} // namespace
} // namespace vorle
