// Lists of feeds as readers write them, and as somebody who means harm would.

#include "search/feeds/Opml.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QByteArray list(const QByteArray &outlines) {
    return "<?xml version=\"1.0\"?><opml version=\"1.0\"><head><title>x</title></head><body>" +
           outlines + "</body></opml>";
}

/// "page feed title" of each site, a line each; "none" for what is no list.
std::string told(const QByteArray &bytes) {
    const auto read = readOpml(bytes);
    if (!read) {
        return "none";
    }
    QStringList lines;
    for (const OpmlSite &site : read->sites) {
        lines += QStringList{site.page, site.feed, site.title}.join(u'|');
    }
    if (read->unreadable > 0) {
        lines += QStringLiteral("+%1").arg(read->unreadable);
    }
    return lines.join(u'\n').toStdString();
}

TEST(Opml, reads_what_readers_write_and_nothing_else) {
    const std::pair<QByteArray, const char *> cases[] = {
        // Folders, attributes in any case, a title for a text, entities.
        {list("<outline text=\"Web\"><outline title=\"A &amp; B\" text=\"x\" "
              "htmlUrl=\"https://a.example/\" xmlUrl=\"https://a.example/f?a=1&amp;b=2\"/>"
              "</outline><outline text=\"C\" XMLURL=\"http://c.example/feed\"/>"),
         "https://a.example/|https://a.example/f?a=1&b=2|A & B\n|http://c.example/feed|C"},
        {list("<outline text=\"Un dossier vide\"/>"), ""},
        // No web address, or one that leads elsewhere than it says.
        {list("<outline xmlUrl=\"javascript:alert(1)\"/><outline xmlUrl=\"file:///etc/passwd\"/>"
              "<outline xmlUrl=\"/feed\"/><outline htmlUrl=\"https://u:p@d.example/\"/>"),
         "https://d.example/||\n+3"},
        // Malformed: as far as it goes. A title is one line without hidden signs.
        {list("<outline text=\"a\nb\xE2\x80\xAE c\" xmlUrl=\"https://e.example/f\"><p>&nope;<"),
         "|https://e.example/f|a b c"},
        {"<opml><body><outline xmlUrl=\"https://f.example/f\"/>", "|https://f.example/f|"},
        {"", "none"},
        {"<rss><channel/></rss>", "none"},
        {"{\"opml\": 1}", "none"},
        {QByteArray("\0\1\2", 3), "none"},
        // Entities that would take a machine's memory, or read its files.
        {"<?xml version=\"1.0\"?><!DOCTYPE opml [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b "
         "\"&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY f SYSTEM \"file:///etc/passwd\">]>"
         "<opml><outline text=\"&b;&f;\" xmlUrl=\"https://g.example/f\"/></opml>",
         "|https://g.example/f|&b;&f;"},
    };
    for (const auto &[bytes, expected] : cases) {
        EXPECT_EQ(told(bytes), expected) << bytes.constData();
    }
}

TEST(Opml, is_bounded) {
    QByteArray many;
    for (int i = 0; i < maxOpmlSites + 1; ++i) {
        many += "<outline xmlUrl=\"https://s" + QByteArray::number(i) + ".example/\"/>";
    }
    const auto read = readOpml(list(many));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->sites.size(), maxOpmlSites);
    EXPECT_TRUE(read->cut);
    const auto deep = readOpml(list(QByteArray("<outline text=\"x\">").repeated(200'000)));
    EXPECT_TRUE(!deep || deep->sites.isEmpty());
    EXPECT_FALSE(readOpml(QByteArray(maxOpmlBytes + 1, ' ')));
}

TEST(Opml, what_is_written_is_read_again) {
    const QList<OpmlSite> sites{
        {QStringLiteral("Un \"carnet\" <web> & co"), QStringLiteral("https://a.example/b"),
         QStringLiteral("https://a.example/feed?x=1&y=2")},
        {QStringLiteral("jardins"), QStringLiteral("https://jardins.example/"), {}},
    };
    const auto read = readOpml(writeOpml(sites, QDateTime::currentDateTimeUtc()));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->sites.size(), 2);
    EXPECT_EQ(read->sites[0], sites[0]);
    EXPECT_EQ(read->sites[1].feed, sites[1].page) << "readers look there themselves";
}

} // namespace
} // namespace vorle
