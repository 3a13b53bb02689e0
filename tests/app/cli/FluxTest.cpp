// `vorle flux`, run as a person runs it.

#include "tests/support/Program.h"
#include "tests/support/TestServer.h"

#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;

TEST(Flux, finds_and_reads_the_feed_of_an_address) {
    Program vorle;
    const auto flux = [&](const QStringList &words) {
        return vorle.run(QStringList{QStringLiteral("flux")} + words);
    };
    test::TestServer server;
    server.serve("/", test::TestReply::page("<link rel=alternate><link rel=\"alternate\" "
                                            "type=\"application/atom+xml\" href=\"/a.atom\">"));
    server.serve("/a.atom",
                 test::TestReply::page("<feed xmlns='http://www.w3.org/2005/Atom'><entry>"
                                       "<title>Un &amp; deux</title><link href='/1'/>"
                                       "<updated>2026-11-19T18:05:09+01:00</updated></entry>"
                                       "<entry><link href='/2'/></entry></feed>"));
    server.serve("/nothing", test::TestReply::page("<title>Rien</title>"));
    server.serve("/elsewhere",
                 test::TestReply::page(
                     "<link rel='alternate' type='application/rss+xml' href='" +
                     server.url("/a.atom", QStringLiteral("localhost")).toEncoded() + "'>"));

    const QString root = server.link("/");
    const QString atom = server.link("/a.atom");
    for (const QStringList &arguments :
         {QStringList{root}, QStringList{atom, QStringLiteral("--direct")}}) {
        const Program::Outcome read = flux(arguments + QStringList{QStringLiteral("--json")});
        ASSERT_EQ(read.status, 0) << read.err;
        const QJsonObject shown = read.object();
        EXPECT_EQ(shown[u"feed"].toString(), atom);
        const QJsonArray items = shown[u"items"].toArray();
        ASSERT_EQ(items.size(), 2);
        EXPECT_EQ(items[0].toObject(),
                  (QJsonObject{{QStringLiteral("site"), arguments.first()},
                               {QStringLiteral("title"), QStringLiteral("Un & deux")},
                               {QStringLiteral("link"), server.link("/1")},
                               {QStringLiteral("date"), QStringLiteral("2026-11-19T17:05:09Z")}}));
        EXPECT_FALSE(items[1].toObject().contains(u"date"));
        EXPECT_THAT(read.err, testing::HasSubstr("2 articles"));
    }
    EXPECT_THAT(flux({root}).out, testing::HasSubstr("Un & deux"));

    const std::tuple<QStringList, int, const char *> failures[] = {
        {{server.link("/nothing")}, 1, "n’annonce aucun flux"},
        {{root, QStringLiteral("--direct")}, 1, "Ce n’est pas un flux RSS ou Atom"},
        {{server.link("/none"), QStringLiteral("--direct")}, 1, "Le flux ne répond pas"},
        {{server.link("/elsewhere")}, 1, "Le flux ne répond pas"}, // a page's word, another host
        {{QStringLiteral("ftp://example.org")}, 1, "n’est pas une adresse web"},
        {{}, 2, "Usage : vorle flux ADRESSE [--direct]"},
    };
    for (const auto &[arguments, status, message] : failures) {
        const Program::Outcome failed = flux(arguments);
        EXPECT_EQ(failed.status, status) << message;
        EXPECT_THAT(failed.err, testing::HasSubstr(message));
    }
}

} // namespace
} // namespace vorle
