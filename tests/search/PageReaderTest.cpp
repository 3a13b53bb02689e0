#include "search/PageReader.h"
#include "search/TopicDraft.h"
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

    // What is short and plain has no title to be judged by, but it says what it says.
    TestReply note = TestReply::page("Release 2.0 fixes the crash.");
    note.contentType = "text/plain; charset=utf-8";
    server.serve("/note", note);
    EXPECT_EQ(judgedContent(test::waitFor(reader.read(server.link("/note")))),
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
    EXPECT_EQ(read.text.size(), keptCharacters);
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
    EXPECT_EQ(slow.mostAtOnce(), 4);
    EXPECT_EQ(quick.mostAtOnce(), 4);

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
    EXPECT_LE(server.mostAtOnce(), 16);
    EXPECT_GE(server.mostAtOnce(), 8);
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

} // namespace
} // namespace vorle
