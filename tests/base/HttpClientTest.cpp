#include "base/HttpClient.h"
#include "base/AddressRules.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QHostInfo>
#include <QTcpServer>
#include <QTimer>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;
using test::TestReply;
using test::TestServer;
using Outcome = HttpResponse::Outcome;

HttpRequest request(const QUrl &url) {
    HttpRequest request;
    request.url = url;
    request.userAgent = "vorle-test";
    return request;
}

HttpResponse get(HttpClient &client, const HttpRequest &request) {
    return test::waitFor(client.get(request));
}

/// Gives `size` zero bytes in gzip form: the stored size is a thousandth of it.
QByteArray gzippedZeros(qsizetype size) {
    // qCompress gives a 4-byte length, then a zlib stream, which "deflate" names in HTTP.
    return qCompress(QByteArray(size, 'a'), 9).sliced(4);
}

TEST(AddressRules, only_the_internet_at_large_is_public) {
    const auto kinds = [](AddressKind kind, const QStringList &addresses) {
        for (const QString &address : addresses) {
            EXPECT_EQ(addressKind(QHostAddress(address)), kind) << address.toStdString();
        }
    };
    const auto list = [](const char *words) { return QString::fromLatin1(words).split(u' '); };
    kinds(AddressKind::Public,
          list("1.1.1.1 11.0.0.0 100.63.255.255 100.128.0.0 172.15.255.255 172.32.0.0 192.0.1.0 "
               "192.167.255.255 198.17.255.255 198.20.0.0 223.255.255.255 2606:4700::1111 "
               "2001:200::1 2a00::1 ::ffff:8.8.8.8 64:ff9b::808:808 2002:808:808::1"));
    kinds(AddressKind::Loopback, list("127.0.0.1 127.255.255.254 ::1 ::ffff:127.0.0.1 "
                                      "64:ff9b::7f00:1 2002:7f00:1::"));
    kinds(AddressKind::Reserved,
          list("0.0.0.0 0.1.2.3 10.1.2.3 100.64.0.1 169.254.169.254 172.16.0.1 172.31.255.255 "
               "192.0.0.1 192.0.2.1 192.88.99.1 192.168.1.1 198.18.0.1 198.19.255.255 198.51.100.7 "
               "203.0.113.9 224.0.0.1 240.0.0.1 255.255.255.255 :: fc00::1 fd12::1 fe80::1 fec0::1 "
               "ff02::1 2001:db8::1 2001::1 2001:2::1 3fff::1 100::1 5f00::1 64:ff9b:1::808:808 "
               "::ffff:10.0.0.1 ::ffff:0.0.0.0 64:ff9b::a00:1 2002:c0a8:101::1 ::8.8.8.8"));
    EXPECT_EQ(addressKind(QHostAddress()), AddressKind::Reserved);
}

TEST(HttpClient, a_sink_takes_the_body_as_it_was_sent_and_may_end_it) {
    TestServer server;
    TestReply reply = TestReply::page(gzippedZeros(100'000));
    reply.headers = {"Content-Encoding: deflate"};
    server.serve("/packed", reply);
    server.serve("/endless", TestReply::shaped(TestReply::Shape::Endless, "x"));
    HttpClient client(true);
    auto asked = request(server.url("/packed"));
    QByteArray taken;
    qint64 announced = 0;
    asked.sink = [&](QByteArrayView piece) {
        taken += piece;
        return true;
    };
    asked.announced = [&](qint64 bytes) { announced = bytes; };
    const auto response = get(client, asked);
    EXPECT_TRUE(response.ok());
    EXPECT_TRUE(response.body.isEmpty());
    EXPECT_EQ(taken, reply.body) << "a signature is of what was sent";
    EXPECT_EQ(announced, reply.body.size());

    asked.url = server.url("/none");
    taken.clear();
    EXPECT_EQ(get(client, asked).status, 404);
    EXPECT_TRUE(taken.isEmpty()) << "a page that says why is no such body";
    TestReply no = TestReply::shaped(TestReply::Shape::Endless, "x");
    no.status = 403;
    server.serve("/no", no);
    asked.url = server.url("/no");
    EXPECT_LE(get(client, asked).body.size(), 64 * 1024);
    asked.url = server.url("/endless");
    asked.maxBytes = 5000;
    EXPECT_TRUE(get(client, asked).truncated);
    EXPECT_EQ(taken.size(), 5000);
    asked.sink = [](QByteArrayView) { return false; };
    EXPECT_EQ(get(client, asked).outcome, Outcome::Failed);
}

TEST(HttpClient, asked_to_be_safe_it_takes_no_plain_http_but_of_this_machine) {
    TestServer server;
    server.serve("/a", TestReply::page("bonjour"));
    server.serve("/away", TestReply::redirect("http://192.0.2.1/a"));
    HttpClient client(true);
    for (const auto &[url, outcome] :
         {std::pair(server.url("/a"), Outcome::Answered),
          std::pair(server.url("/a", QStringLiteral("localhost")), Outcome::Answered),
          std::pair(server.url("/away"), Outcome::Refused),
          std::pair(QUrl(QStringLiteral("http://example.invalid/a")), Outcome::Refused)}) {
        auto asked = request(url);
        asked.secureOnly = true;
        asked.reach = Reach::Anywhere;
        EXPECT_EQ(get(client, asked).outcome, outcome) << url.toString().toStdString();
    }
}

TEST(HttpClient, gives_status_headers_and_body) {
    TestServer server;
    TestReply reply;
    reply.body = "bonjour";
    reply.contentType = "text/plain; charset=utf-8";
    server.serve("/a", reply);
    HttpClient client(true);

    auto asked = request(server.url("/a?x=1#part"));
    asked.url.setUserInfo(QStringLiteral("me:secret"));
    asked.acceptLanguage = "en";
    const auto response = get(client, asked);
    EXPECT_TRUE(response.ok());
    EXPECT_EQ(response.body, "bonjour");
    EXPECT_EQ(response.contentType, "text/plain; charset=utf-8");
    EXPECT_EQ(response.url, server.url("/a?x=1#part"));
    EXPECT_FALSE(response.truncated);

    const auto &seen = server.requests().first();
    EXPECT_EQ(seen.target, "/a?x=1");
    EXPECT_EQ(seen.headers.value("user-agent"), "vorle-test");
    EXPECT_EQ(seen.headers.value("accept-language"), "en");
    EXPECT_TRUE(seen.headers.value("accept-encoding").contains("gzip"));
    EXPECT_FALSE(seen.headers.contains("authorization"));
    EXPECT_FALSE(seen.headers.contains("cookie"));

    const auto missing = get(client, request(server.url("/none")));
    EXPECT_EQ(missing.outcome, Outcome::Answered);
    EXPECT_EQ(missing.status, 404);
    EXPECT_FALSE(missing.ok());
    EXPECT_EQ(server.connectionsMade(), 1) << "the connection is kept and used again";
}

TEST(HttpClient, no_cookie_comes_back) {
    TestServer server;
    TestReply reply = TestReply::redirect("/b");
    reply.headers.append("Set-Cookie: a=b; Path=/");
    server.serve("/a", reply);
    server.serve("/b", TestReply{});
    HttpClient client(true);
    EXPECT_TRUE(get(client, request(server.url("/a"))).ok());
    EXPECT_FALSE(server.requests().last().headers.contains("cookie"));
}

TEST(HttpClient, follows_five_redirects_and_no_more) {
    TestServer server;
    for (int i = 0; i < 6; ++i) {
        server.serve("/" + QByteArray::number(i), TestReply::redirect(QByteArray::number(i + 1)));
    }
    server.serve("/6", TestReply{});
    server.serve("/loop", TestReply::redirect("/loop", 307));
    TestReply bare;
    bare.status = 302;
    server.serve("/bare", bare);
    HttpClient client(true);

    const auto five = get(client, request(server.url("/1")));
    EXPECT_TRUE(five.ok());
    EXPECT_EQ(five.url, server.url("/6"));
    EXPECT_EQ(get(client, request(server.url("/0"))).outcome, Outcome::Refused);
    EXPECT_EQ(get(client, request(server.url("/loop"))).outcome, Outcome::Refused);
    EXPECT_EQ(server.requestCount("/loop"), 6);
    EXPECT_EQ(get(client, request(server.url("/bare"))).status, 302);
}

TEST(HttpClient, refuses_what_leads_to_this_machine_or_its_network) {
    TestServer server;
    server.serve("/", TestReply{});
    HttpClient client;
    const QString port = QString::number(server.port());
    QStringList hosts = QString::fromLatin1("127.0.0.1 localhost LOCALHOST. a.localhost 2130706433 "
                                            "0x7f.1 0177.0.0.1 127.1 [::1] [::ffff:127.0.0.1] "
                                            "[::ffff:7f00:1] 0.0.0.0 printer.local 10.0.0.1 "
                                            "169.254.169.254 [fe80::1] [::] 192.168.1.1")
                            .split(u' ');
    hosts.append(QStringLiteral("１２７.0.0.1")); // full-width digits
    hosts.append(QStringLiteral("ｌocalhost"));
    // The machine's own name leads to it without looking like it.
    if (addressKind(QHostInfo::fromName(QHostInfo::localHostName()).addresses().value(0)) !=
        AddressKind::Public) {
        hosts.append(QHostInfo::localHostName());
    }
    for (const QString &host : hosts) {
        const QUrl url(QStringLiteral("http://") + host + u':' + port + u'/');
        const auto outcome = get(client, request(url)).outcome;
        EXPECT_TRUE(outcome == Outcome::Refused) << host.toStdString() << int(outcome);
    }
    for (const char *link : {"file:///etc/passwd", "ftp://example.com/", "/relative", "http://", "",
                             "gopher://127.0.0.1/", "javascript:alert(1)", "http:///path"}) {
        EXPECT_EQ(get(client, request(QUrl(QString::fromLatin1(link)))).outcome, Outcome::Refused)
            << link;
    }
    EXPECT_EQ(server.connectionsMade(), 0);

    auto typed = request(server.url("/"));
    typed.reach = Reach::Anywhere;
    EXPECT_TRUE(get(client, typed).ok());
    // The connection just made is still open; it serves none but those who may go anywhere.
    EXPECT_EQ(get(client, request(server.url("/"))).outcome, Outcome::Refused);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST(HttpClient, a_redirect_is_checked_like_the_first_address) {
    TestServer server;
    HttpClient client(true);
    for (const char *target : {"http://10.0.0.1/", "http://printer.local/", "http://0.0.0.0/",
                               "file:///etc/passwd", "ftp://127.0.0.1/", "http://[fe80::1]/"}) {
        server.serve("/a", TestReply::redirect(target));
        EXPECT_EQ(get(client, request(server.url("/a"))).outcome, Outcome::Refused) << target;
    }
    // What the user typed may lead on within its own host; elsewhere it is a stranger's word.
    HttpClient guarded;
    server.serve("/end", TestReply{});
    server.serve("/back", TestReply::redirect(server.link("/end").toUtf8()));
    const QByteArray elsewhere = server.link("/back", QStringLiteral("localhost")).toUtf8();
    for (const auto &[target, outcome] :
         {std::pair(QByteArray("/end"), Outcome::Answered), {elsewhere, Outcome::Refused}}) {
        server.serve("/a", TestReply::redirect(target));
        auto typed = request(server.url("/a"));
        typed.reach = Reach::Anywhere;
        EXPECT_EQ(get(guarded, typed).outcome, outcome) << target.constData();
    }
    EXPECT_EQ(server.requestCount("/back"), 0);
}

TEST(HttpClient, the_cap_holds_for_the_decompressed_body) {
    TestServer server;
    TestReply bomb;
    bomb.body = gzippedZeros(50'000'000);
    bomb.headers = {"Content-Encoding: deflate"};
    server.serve("/bomb", bomb);
    TestReply endless;
    endless.body = QByteArray(65'536, 'x');
    endless.shape = TestReply::Shape::Endless;
    server.serve("/endless", endless);
    TestReply exact;
    exact.body = QByteArray(100'000, 'x');
    server.serve("/exact", exact);
    TestReply small;
    small.body = gzippedZeros(1000);
    small.headers = bomb.headers;
    server.serve("/small", small);
    TestReply elsewhere = endless;
    elsewhere.status = 301;
    elsewhere.headers = {"Location: /exact"};
    server.serve("/elsewhere", elsewhere);
    HttpClient client(true);

    for (const char *path : {"/bomb", "/endless", "/exact", "/small"}) {
        auto asked = request(server.url(path));
        asked.maxBytes = 100'000;
        const auto response = get(client, asked);
        const bool cut = path[1] == 'b' || path[2] == 'n';
        EXPECT_TRUE(response.ok()) << path;
        EXPECT_EQ(response.truncated, cut) << path;
        EXPECT_EQ(response.body.size(), path[1] == 's' ? 1000 : 100'000) << path;
    }
    EXPECT_EQ(get(client, request(server.url("/elsewhere"))).outcome, Outcome::Failed);
    // Those that were cut are closed, not read to their end.
    test::spinUntil([&] { return server.connectionsOpen() <= 1; });
}

TEST(HttpClient, one_deadline_covers_the_whole_exchange) {
    TestServer server;
    TestReply drip;
    drip.body = QByteArray(10'000, 'x');
    drip.shape = TestReply::Shape::Dripping;
    server.serve("/drip", drip);
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    TestReply slow = TestReply::redirect("/slow");
    slow.delay = 80ms;
    server.serve("/slow", slow);
    HttpClient client(true);
    for (const char *path : {"/drip", "/silent", "/slow"}) {
        auto asked = request(server.url(path));
        asked.deadline = 200ms;
        const auto response = get(client, asked);
        EXPECT_EQ(response.outcome, Outcome::TimedOut) << path;
        EXPECT_EQ(response.body, QByteArray()) << path;
    }
}

TEST(HttpClient, a_broken_exchange_is_a_failure) {
    TestServer server;
    const QByteArray cases[] = {
        "",
        "nonsense\r\n\r\n",
        "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nshort",
        "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 5\r\n\r\nplain",
        "HTTP/1.1 200 OK\r\nContent-Encoding: unheard-of\r\nContent-Length: 5\r\n\r\nplain",
        "HTTP/1.1 200 OK\r\n" + QByteArray("X: " + QByteArray(1000, 'y') + "\r\n").repeated(2000)};
    HttpClient client(true);
    for (const QByteArray &raw : cases) {
        server.serve("/raw", TestReply::shaped(TestReply::Shape::Raw, raw));
        EXPECT_EQ(get(client, request(server.url("/raw"))).outcome, Outcome::Failed)
            << raw.left(80).constData();
    }
    QUrl dead;
    {
        QTcpServer gone;
        ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
        dead.setUrl(QStringLiteral("http://127.0.0.1:%1/").arg(gone.serverPort()));
    }
    EXPECT_EQ(get(client, request(dead)).outcome, Outcome::Failed);
}

TEST(HttpClient, a_stop_ends_the_request_at_once) {
    TestServer server;
    TestReply drip;
    drip.body = QByteArray(10'000, 'x');
    drip.shape = TestReply::Shape::Dripping;
    server.serve("/drip", drip);
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    HttpClient client(true);

    // Before the start, before the connection, while it answers nothing, while it answers.
    CancelSource before;
    before.cancel();
    EXPECT_THROW(test::waitFor(client.get(request(server.url("/drip")), before.token())),
                 Cancelled);
    EXPECT_EQ(server.connectionsMade(), 0);
    for (const char *path : {"/drip", "/silent"}) {
        for (const auto delay : {0ms, 1ms, 100ms}) {
            CancelSource source;
            if (delay == 0ms) {
                auto task = client.get(request(server.url(path)), source.token());
                source.cancel();
                EXPECT_THROW(test::waitFor(std::move(task)), Cancelled);
            } else {
                QTimer::singleShot(delay, [&] { source.cancel(); });
                EXPECT_THROW(test::waitFor(client.get(request(server.url(path)), source.token())),
                             Cancelled);
            }
        }
    }
    test::spinUntil([&] { return server.connectionsOpen() == 0; });
}

TEST(HttpClient, may_go_while_requests_are_under_way) {
    TestServer server;
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    auto client = std::make_unique<HttpClient>(true);
    CancelSource source;
    auto first = client->get(request(server.url("/silent")), source.token());
    auto second = client->get(request(server.url("/silent")));
    test::spinUntil([&] { return server.requests().size() == 2; });
    client.reset();
    EXPECT_EQ(test::waitFor(std::move(second)).outcome, Outcome::Failed);
    source.cancel(); // the request it would stop is gone
    EXPECT_EQ(test::waitFor(std::move(first)).outcome, Outcome::Failed);
    test::spinUntil([&] { return server.connectionsOpen() == 0; });
}

TEST(HttpClient, serves_two_hundred_at_once) {
    TestServer server;
    TestReply reply;
    reply.body = QByteArray(20'000, 'x');
    reply.delay = 50ms;
    server.serve("/a", reply);
    HttpClient client(true);
    std::vector<Task<HttpResponse>> tasks;
    for (int i = 0; i < 200; ++i) {
        tasks.push_back(client.get(request(server.url("/a"))));
    }
    for (auto &task : tasks) {
        EXPECT_TRUE(test::waitFor(std::move(task)).ok());
    }
    EXPECT_GT(server.maxConcurrent(), 100);
}

} // namespace
} // namespace vorle
