#include "search/web/PageReader.h"
#include "search/web/Links.h"
#include "search/web/PageTwin.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::TestReply;
using test::TestServer;

QByteArray page(const QByteArray &title) {
    return "<title>" + title + "</title><article>" + QByteArray("word ").repeated(200) +
           "</article>";
}

TEST(PageReader, reads_a_page_as_a_browser_would_ask_for_it) {
    TestServer server;
    server.serve("/a", TestReply::redirect("/b"));
    server.serve("/b", TestReply::page(page("Bonjour")));
    HttpClient http(true);
    PageReader reader(http);
    const ReadPage read = test::waitFor(reader.read(server.link("/a?utm_source=x")));
    EXPECT_EQ(read.title, QStringLiteral("Bonjour"));
    EXPECT_EQ(read.level, ReadLevel::Full);
    EXPECT_TRUE(read.text.startsWith("word word"));
    EXPECT_EQ(read.finalUrl, server.link("/b"));
    EXPECT_EQ(read.status, 200);

    const auto &asked = server.requests().first();
    EXPECT_EQ(asked.target, "/a");
    EXPECT_EQ(asked.headers.value("user-agent"),
              "Mozilla/5.0 (Macintosh; Intel Mac OS X 15_0) AppleWebKit/605.1.15 (KHTML, like "
              "Gecko) Version/18.0 Safari/605.1.15");
    EXPECT_EQ(asked.headers.value("accept-language"), "en");

    // What is short and plain has no title to be known by, but it says what it says.
    TestReply note = TestReply::page("Release 2.0 fixes the crash.");
    note.contentType = "text/plain; charset=utf-8";
    server.serve("/note", note);
    EXPECT_EQ(test::waitFor(reader.read(server.link("/note"))).text,
              "Release 2.0 fixes the crash.");
}

TEST(PageReader, what_cannot_be_read_is_no_error) {
    TestServer server;
    for (const int status : {204, 403, 404, 500, 503}) {
        TestReply reply = TestReply::page(status == 204 ? QByteArray() : page("error page"));
        reply.status = status;
        server.serve('/' + QByteArray::number(status), reply);
    }
    TestReply picture = TestReply::page("\x89PNG");
    picture.contentType = "image/png";
    server.serve("/picture", picture);
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    server.serve("/empty", TestReply::page({}));
    server.serve("/inside", TestReply::redirect("http://10.0.0.1/"));
    HttpClient http(true);
    PageReader reader(http, 150ms);

    const std::pair<QString, int> cases[] = {
        {server.link("/204"), 204},       {server.link("/403"), 403},
        {server.link("/404"), 404},       {server.link("/500"), 500},
        {server.link("/503"), 503},       {server.link("/picture"), 200},
        {server.link("/empty"), 200},     {server.link("/silent"), 0},
        {server.link("/inside"), 0},      {QStringLiteral("not a link"), 0},
        {QStringLiteral("http://0/"), 0}, {QStringLiteral("http://127.0.0.1:1/"), 0},
    };
    for (const auto &[link, status] : cases) {
        const ReadPage read = test::waitFor(reader.read(link));
        EXPECT_EQ(read.level, ReadLevel::None) << link.toStdString();
        EXPECT_EQ(read.status, status) << link.toStdString();
        EXPECT_EQ(static_cast<const PageText &>(read), PageText()) << link.toStdString();
    }
}

TEST(PageReader, a_page_past_the_limit_is_seen_in_part) {
    TestServer server;
    server.serve("/endless", TestReply::shaped(TestReply::Shape::Endless,
                                               QByteArray("word ").repeated(20'000)));
    HttpClient http(true);
    PageReader reader(http);
    const ReadPage read = test::waitFor(reader.read(server.link("/endless")));
    EXPECT_EQ(read.level, ReadLevel::Seen);
    EXPECT_EQ(read.text.size(), maxBodyCharacters);
}

TEST(PageReader, only_a_link_the_user_typed_reaches_this_machine) {
    TestServer server;
    server.serve("/a", TestReply::page(page("A")));
    HttpClient http;
    PageReader reader(http);
    EXPECT_EQ(test::waitFor(reader.read(server.link("/a"))).level, ReadLevel::None);
    EXPECT_EQ(server.requests().size(), 0);
    EXPECT_EQ(test::waitFor(reader.read(server.link("/a"), {}, Reach::Anywhere)).level,
              ReadLevel::Full);
}

TEST(PageReader, a_slow_host_leaves_places_to_the_others) {
    TestServer slow;
    slow.serve("/slow", TestReply::shaped(TestReply::Shape::Silent));
    TestServer quick;
    TestReply reply = TestReply::page(page("Q"));
    reply.delay = 20ms;
    quick.serve("/q", reply);
    HttpClient http(true);
    PageReader reader(http);

    CancelSource source;
    std::vector<Task<ReadPage>> stuck;
    for (int i = 0; i < 40; ++i) {
        stuck.push_back(reader.read(slow.link("/slow"), source.token()));
    }
    std::vector<Task<ReadPage>> tasks;
    for (int i = 0; i < 50; ++i) {
        tasks.push_back(reader.read(quick.link("/q", QStringLiteral("localhost"))));
    }
    for (auto &task : tasks) {
        EXPECT_EQ(test::waitFor(std::move(task)).level, ReadLevel::Full);
    }
    EXPECT_EQ(slow.maxConcurrent(), 4);
    EXPECT_EQ(quick.maxConcurrent(), 4);

    source.cancel();
    for (auto &task : stuck) {
        EXPECT_THROW(test::waitFor(std::move(task)), Cancelled);
    }
    EXPECT_EQ(slow.requests().size(), 4) << "those that waited never asked";
    test::spinUntil([&] { return slow.connectionsOpen() == 0; });
}

TEST(PageReader, sixteen_pages_are_read_at_once_over_many_hosts) {
    TestServer server;
    TestReply reply = TestReply::page(page("Q"));
    reply.delay = 30ms;
    server.serve("/q", reply);
    HttpClient http(true);
    PageReader reader(http);
    std::vector<Task<ReadPage>> tasks;
    for (int i = 0; i < 64; ++i) { // the whole of 127.0.0.0/8 is this machine on Linux only
        const QStringList names{QStringLiteral("127.0.0.1"), QStringLiteral("localhost"),
                                QStringLiteral("localhost."), QStringLiteral("[::ffff:7f00:1]"),
                                QStringLiteral("[::ffff:127.0.0.1]")};
        tasks.push_back(reader.read(server.link("/q", names[i % names.size()])));
    }
    qsizetype readWhole = 0;
    for (auto &task : tasks) {
        readWhole += test::waitFor(std::move(task)).level == ReadLevel::Full ? 1 : 0;
    }
    EXPECT_GE(readWhole, 24);
    EXPECT_LE(server.maxConcurrent(), 16);
    EXPECT_GE(server.maxConcurrent(), 8);
}

TEST(PageReader, a_stop_ends_reads_wherever_they_are) {
    TestServer server;
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    server.serve("/a", TestReply::page(page("A").repeated(500)));
    HttpClient http(true);
    PageReader reader(http);
    for (const auto delay : {0ms, 1ms, 3ms, 10ms, 50ms}) {
        CancelSource source;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] { source.cancel(); });
        timer.start(delay);
        // Being fetched, waiting for the pool or done: the stop, or the page.
        try {
            EXPECT_EQ(test::waitFor(reader.read(server.link("/a"), source.token())).level,
                      ReadLevel::Full);
        } catch (const Cancelled &) {
            EXPECT_TRUE(source.token().isCancelled());
        }
        EXPECT_THROW(test::waitFor(reader.read(server.link("/silent"), source.token())), Cancelled);
    }
}

TEST(PageReader, reader_and_client_may_go_first) {
    TestServer server;
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    auto http = std::make_unique<HttpClient>(true);
    auto reader = std::make_unique<PageReader>(*http);
    std::vector<Task<ReadPage>> tasks;
    for (int i = 0; i < 6; ++i) {
        tasks.push_back(reader->read(server.link("/silent")));
    }
    test::spinUntil([&] { return server.requests().size() == 4; });
    reader.reset();
    http.reset();
    for (auto &task : tasks) {
        EXPECT_EQ(test::waitFor(std::move(task)).level, ReadLevel::None);
    }
    EXPECT_EQ(server.requests().size(), 4);
}

/// Sends every address to one server of this machine: "/" + host + path.
PageReader::Route to(TestServer &server) {
    return [&server](const QUrl &url) {
        QUrl routed = server.url('/' + url.host().toUtf8() + url.path(QUrl::FullyEncoded).toUtf8());
        routed.setQuery(url.query(QUrl::FullyEncoded));
        return routed;
    };
}

/// Where the server is asked for the twin of that page.
QByteArray twin(const char *link) {
    const auto twin = twinOf(QUrl(QString::fromUtf8(link)));
    return twin ? '/' + twin->address.host().toUtf8() +
                      twin->address.path(QUrl::FullyEncoded).toUtf8()
                : QByteArray();
}

TestReply json(const QByteArray &body) {
    TestReply reply = TestReply::page(body);
    reply.contentType = "application/json; charset=utf-8";
    return reply;
}

// Where a site offers the same thing as JSON, that is read, under the page's own address.
TEST(PageReader, reads_what_a_site_publishes_for_programs) {
    TestServer server;
    HttpClient http(true);
    PageReader reader(http, 2s, to(server));
    const QByteArray words = QByteArray("mots ").repeated(200);
    const QByteArray scoped = twin("https://www.npmjs.com/package/@scope/kit");
    EXPECT_TRUE(scoped.endsWith("/@scope%2Fkit")) << scoped.constData();
    server.serve(
        scoped,
        json(R"({"name":"@scope/kit","description":"Un outil.","dist-tags":{"latest":"2.1.0"},
                      "time":{"created":"2020-01-01T00:00:00Z","2.1.0":"2026-11-19T08:00:00Z",
                      "2.0.0":"2026-10-01T08:00:00Z"},"readme":"# Kit\n)" +
             words + R"("})"));
    const QByteArray versioned = twin("https://www.npmjs.com/package/kit/v/1.0.0");
    EXPECT_TRUE(versioned.endsWith("/kit/1.0.0")) << versioned.constData();
    server.serve(
        versioned,
        json(R"({"name":"kit","version":"1.0.0","description":"D.","deprecated":"use x"})"));
    server.serve("/www.reddit.com/r/rust/comments/1abc.json",
                 json(R"([{"data":{"children":[{"data":{"title":"Rust 2","selftext":")" + words +
                      R"(","is_self":true,"subreddit_name_prefixed":"r/rust"}}]}},
                      {"data":{"children":[{"data":{"body":"Bien vu","score":12}}]}}])"));
    server.serve("/api.github.com/repos/o/r/releases/tags/v2",
                 json(R"({"tag_name":"v2","name":"Deux","published_at":"2026-11-19T08:00:00Z",
                      "body":"## Breaking\r\n\r\n)" +
                      words + R"("})"));
    server.serve(
        "/api.github.com/repos/o/r/releases",
        json(R"([{"tag_name":"v2","name":"","body":")" + words + R"("},{"tag_name":"v1"}])"));
    struct Case {
        const char *link;
        const char *title;
        ReadLevel level;
        const char *holds;
    };
    const Case cases[] = {
        {"https://www.npmjs.com/package/@scope/kit", "@scope/kit 2.1.0", ReadLevel::Full,
         "2.1.0 (2026-11-19), 2.0.0 (2026-10-01)"},
        {"https://npmjs.com/package/kit/v/1.0.0?utm_source=x", "kit 1.0.0", ReadLevel::Meta,
         "Deprecated: use x"},
        {"https://old.reddit.com/r/rust/comments/1abc/rust_2/", "Rust 2", ReadLevel::Full,
         "Comment (12 points): Bien vu"},
        {"https://github.com/o/r/releases/tag/v2", "Deux (v2)", ReadLevel::Full, "## Breaking"},
        {"https://github.com/o/r/releases", "v2", ReadLevel::Full, "mots"},
    };
    for (const Case &one : cases) {
        const ReadPage page = test::waitFor(reader.read(QString::fromUtf8(one.link)));
        EXPECT_EQ(page.title.value_or(QString()), QString::fromUtf8(one.title)) << one.link;
        EXPECT_EQ(page.level, one.level) << one.link;
        EXPECT_TRUE(page.text.contains(one.holds)) << one.link << page.text.constData();
        EXPECT_EQ(page.finalUrl, readableLink(QString::fromUtf8(one.link)).toString()) << one.link;
    }
}

TEST(PageReader, reads_the_page_itself_where_its_twin_says_nothing) {
    TestServer server;
    HttpClient http(true);
    PageReader reader(http, 2s, to(server));
    server.serve("/www.npmjs.com/package/kit", TestReply::page(page("Kit")));
    server.serve("/github.com/o/r/releases/tag/v2", TestReply::page(page("Deux")));
    server.serve("/api.github.com/repos/o/r/releases/tags/v2", json(R"({"message":"Not Found"})"));
    server.serve("/www.youtube.com/watch", TestReply::page(page("Une vidéo")));
    server.serve("/www.youtube.com/oembed", json(R"({"title":"Autre","author_name":"Ada"})"));
    for (const char *link :
         {"https://www.npmjs.com/package/kit", "https://github.com/o/r/releases/tag/v2",
          "https://www.youtube.com/watch?v=abc"}) {
        EXPECT_EQ(test::waitFor(reader.read(QString::fromUtf8(link))).level, ReadLevel::Full)
            << link;
    }
    EXPECT_EQ(server.requestCount("/www.youtube.com/oembed"), 0) << "the page says more";
    // A question about cookies is no page about the video, nor is an error.
    server.serve("/youtu.be/abc", TestReply::redirect("/consent/login"));
    server.serve("/consent/login", TestReply::page(page("Avant d’accéder")));
    for (const char *link : {"https://youtu.be/abc", "https://www.youtube.com/shorts/abc"}) {
        const ReadPage video = test::waitFor(reader.read(QString::fromUtf8(link)));
        EXPECT_EQ(video.title, QStringLiteral("Autre")) << link;
        EXPECT_EQ(video.description, QStringLiteral("A video by Ada on YouTube.")) << link;
        EXPECT_EQ(video.level, ReadLevel::Meta) << link;
        EXPECT_EQ(video.finalUrl, QString::fromUtf8(link));
    }
    // A registry's document too long to be read whole: the newest version's own.
    const QByteArray whole = twin("https://npmjs.com/package/big");
    server.serve(whole,
                 json(R"({"name":"big","readme":")" + QByteArray(maxPageBytes, 'x') + R"("})"));
    server.serve(whole + "/latest", json(R"({"name":"big","version":"9.0.0"})"));
    const ReadPage big =
        test::waitFor(reader.read(QStringLiteral("https://npmjs.com/package/big")));
    EXPECT_EQ(big.title, QStringLiteral("big 9.0.0"));
    // Neither: as any page that cannot be read.
    const ReadPage none =
        test::waitFor(reader.read(QStringLiteral("https://www.reddit.com/r/a/comments/2/b/")));
    EXPECT_EQ(none.level, ReadLevel::None);
    EXPECT_EQ(none.status, 404);
}

TEST(PageReader, keeps_no_sign_that_hides_or_turns_words) {
    TestServer server;
    server.serve("/a", TestReply::page("<title>Mise \u202Eà jour\u202C</title><main>" +
                                       QByteArray("mo\u200Bts ").repeated(200) + "</main>"));
    HttpClient http(true);
    PageReader reader(http);
    const ReadPage read = test::waitFor(reader.read(server.link("/a")));
    EXPECT_EQ(read.title, QStringLiteral("Mise à jour"));
    EXPECT_TRUE(read.text.startsWith("mots mots"));
}

} // namespace
} // namespace vorle
