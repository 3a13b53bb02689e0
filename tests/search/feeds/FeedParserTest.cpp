// Feeds as they are in the wild, one sample a defect (tests/samples/feeds).

#include "search/feeds/FeedParser.h"

#include "base/WebLink.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

namespace vorle {
namespace {

std::optional<QList<FeedItem>> parse(const QByteArray &bytes, const char *type = "text/xml") {
    return parseFeed(bytes, type, QUrl(QStringLiteral("https://site.example/feed/index.xml")),
                     QStringLiteral("site.example"));
}

QByteArray sample(const char *name) {
    QFile file(QStringLiteral(VORLE_SAMPLES "/feeds/") + QString::fromLatin1(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

/// One line an item: what it has of title, link, date, summary.
std::string told(const std::optional<QList<FeedItem>> &items) {
    if (!items) {
        return "no feed";
    }
    QStringList lines;
    for (const FeedItem &item : *items) {
        EXPECT_EQ(item.site, QStringLiteral("site.example"));
        QStringList parts{item.title, item.link};
        parts += item.date ? QStringList(item.date->toString(Qt::ISODate)) : QStringList();
        parts += item.summary.isEmpty() ? QStringList() : QStringList(item.summary);
        lines += parts.join(QStringLiteral(" | "));
    }
    return lines.join(u'\n').toStdString();
}

struct Case {
    const char *file;
    const char *expected;
    const char *type = "text/xml";
};

void check(std::initializer_list<Case> cases) {
    for (const Case &one : cases) {
        EXPECT_EQ(told(parse(sample(one.file), one.type)), one.expected) << one.file;
    }
}

TEST(FeedParser, reads_every_format) {
    check({
        {"rss-0.91-doctype.xml", "Anémomètre libre | http://vent.example/anemometre.html | Plans "
                                 "et micrologiciel publiés."},
        {"rss-0.92.xml",
         " | http://carnet.example/2002/09/10 | Un billet sans titre, comme il s’en faisait."},
        {"rss-1.0-rdf.xml", "Un bac à sable pour processus | https://sable.example/un | "
                            "2026-11-18T22:30:00Z | Résumé court."},
        {"rss-2.0.xml", "Forge 3.2 & ses outils | https://forge.example/3-2?utm_source=rss&v=2 | "
                        "2026-11-19T17:05:00Z | La forge chauffe plus vite : 20 % de mieux. "
                        "Suite.\n"
                        "Une enclume | https://forge.example/enclume | 2026-11-01T08:00:00Z | "
                        "Lourde. Solide. a < b"},
        {"atom-0.3.xml", "Les vieux formats | http://ancien.example/1 | 2026-11-02T09:00:00Z | "
                         "Tient toujours."},
        {"atom-1.0.xml",
         "Pourquoi Vec<T> et <em> restent tels quels | https://notes.example/vec?a=1&b=2 | "
         "2026-11-19T07:08:09Z | Des génériques écrits.\n"
         "Un titre, mis en forme | https://notes.example/forme | 2026-11-18T11:00:00Z | Forme et "
         "fond"},
    });
}

TEST(FeedParser, reads_the_bytes_as_what_they_are) {
    const char *work = "L’œuvre à 5 € | https://cafe.example/a";
    const char *coffee = "Le goût du café à Orléans | https://cafe.example/a";
    check({
        {"latin1-declared.xml", coffee},
        {"latin1-undeclared.xml", coffee},
        {"latin1-undeclared.xml", coffee, "application/rss+xml; charset=ISO-8859-1"},
        {"latin1-declared.xml", coffee, "text/xml; charset=utf-8"},
        {"windows-1252-as-latin1.xml", work},
        {"windows-1252-as-utf8.xml", work},
        {"utf8-as-latin1.xml", work},
        {"utf8-as-latin1.xml", work, "text/xml; charset=us-ascii"},
        {"utf8-as-utf16.xml", work},
        {"utf16.xml", work},
        {"utf16-no-mark.xml", work},
        {"shift-jis.xml", "日本語の見出し | https://cafe.example/a"},
        {"byte-order-mark.xml", "Marqué | https://cafe.example/a"},
        {"leading-blanks.xml", "Après des blancs | https://cafe.example/a"},
        {"server-warning.xml", "Après une plainte | https://cafe.example/a"},
    });
}

TEST(FeedParser, reads_past_what_is_broken) {
    check({
        {"html-entities.xml", "Café : l’œuvre à 5 €… — “dit-on” ’ | "
                              "https://entites.example/?a=1%C2%A0&copy=2 | &inconnue; \uFFFD "
                              "\uFFFD gras 1 < 2"},
        {"bare-ampersands.xml",
         "AT&T & Co & amis; a&b; | https://esperluette.example/?id=1&page=2&copy=3&lt=4 | R&D & "
         "essais & fin <"},
        {"cdata.xml", "Le titre & sa suite, Vec<T> continue | https://cdata.example/?a=1&b=2 | "
                      "2026-11-19T18:05:00Z | Un deux ]] > trois"},
        {"escaped-twice.xml", "L’heure d’hiver arrive : Vec<T> <3 | https://double.example/1"},
        {"truncated.xml", "Entier | https://coupe.example/un"},
        {"unclosed-tags.xml", "Premier & fils | https://ouvert.example/1 | Un deuxphoto.jpg>\n"
                              "Second & filles | https://ouvert.example/2?a=1&b=2 | Reste lisible\n"
                              "Troisième | https://ouvert.example/3"},
        {"stray-angle.xml", "a < b et c <3 | https://angle.example/1\n"
                            "Suivant | https://angle.example/2"},
        {"control-characters.xml", "Un deux trois \uFFFD | https://controle.example/1 | a b\n"
                                   "Suivant | https://controle.example/2"},
        {"items-outside-channel.xml", "Dehors | https://dehors.example/1"},
        {"upper-case.xml", "Crié | https://cri.example/ | 2026-11-19T23:05:00Z"},
        {"odd-prefixes.xml", "Masqué | https://prefixe.example/1 | 2026-11-20T00:00:00Z"},
        {"undeclared-prefixes.xml",
         "Jamais déclarés | https://prefixe.example/2 | 2026-11-20T00:00:00Z | Le texte & la "
         "suite\n"
         "D’Atom | https://prefixe.example/3 | 2026-11-20T00:00:00Z"},
        {"several-dates.xml", "Illisible puis bonne | https://dates.example/1 | "
                              "2026-11-20T00:00:00Z\n"
                              "Aucune lisible | https://dates.example/2"},
    });
}

TEST(FeedParser, chooses_the_link_of_an_item) {
    check({
        {"several-links-rss.xml", "Le sien d’abord | https://liens.example/un\n"
                                  "Celui d’Atom à défaut | https://liens.example/deux\n"
                                  "Une adresse en attribut | https://liens.example/quatre"},
        {"several-links-atom.xml", "Le principal | https://liens.example/1\n"
                                   "À défaut, un autre | https://liens.example/2\n"
                                   "En texte | https://liens.example/4"},
        {"xml-base.xml", "Deux bases | https://base.example/blog/2026/un.html\n"
                         "Une base | https://base.example/x/deux.html?a=1&b=2\n"
                         "La racine | https://base.example/trois"},
        {"relative-links.xml", "Chemin | https://site.example/articles/un\n"
                               "Sans protocole | https://cdn.example/deux\n"
                               "Majuscules et espace | https://relatif.example/trois%20quatre\n"
                               "Coupée en deux lignes | https://relatif.example/long/chemin"},
    });
}

TEST(FeedParser, what_is_no_feed_is_none) {
    check({{"html-page.html", "no feed", "text/html"},
           {"json-feed.json", "no feed"},
           {"sitemap.xml", "no feed"},
           {"empty.xml", "no feed"}});
    EXPECT_EQ(told(parse("<rss/>")), "");
    EXPECT_EQ(told(parse("\x89PNG\r\n\x1a\n")), "no feed");
}

TEST(FeedParser, no_entity_of_the_document_is_read) {
    check({{"entity-bomb.xml", "Rien &i; ne &file; gonfle | https://bombe.example/&i;"}});
}

QByteArray feedOf(const QByteArray &inside) {
    return "<rss><channel><item><link>https://a.example/1</link></item>" + inside +
           "<item><link>https://a.example/2</link></item></channel></rss>";
}

// What libxml2 or a careless reader would take minutes or the whole memory for. Without a bound
// these tests do not end.
TEST(FeedParser, hostile_feeds_end_and_keep_what_came_before) {
    constexpr qsizetype size = 8'000'000;
    const auto repeated = [](const QByteArray &part) { return part.repeated(size / part.size()); };
    QByteArray attributes = "<a";
    QByteArray namespaces;
    for (int i = 0; attributes.size() < size; ++i) {
        attributes += " a" + QByteArray::number(i) + "='>'";
    }
    for (int i = 0; i < 250; ++i) {
        namespaces += "<a";
        for (int j = 0; j < 250; ++j) {
            namespaces += " xmlns:n" + QByteArray::number(i * 250 + j) + "='u'";
        }
        namespaces += '>';
    }
    const auto numbered = [](const std::function<QByteArray(const QByteArray &)> &part) {
        QByteArray all;
        for (int i = 0; all.size() < size; ++i) {
            all += part(QByteArray::number(i));
        }
        return all;
    };
    const QByteArray longBase = "https://a.example/" + QByteArray("a/").repeated(240);
    const QByteArray cases[] = {
        repeated("<a>"),
        attributes + ">",
        namespaces + repeated("<z:a/>"),
        repeated("<![CDATA["),
        repeated("<!--"),
        repeated("<!-"),
        repeated("&"),
        repeated("]]>"),
        repeated("<"),
        "<item><title>" + repeated("x") + "</title>",
        "<item><link>https://a.example/" + repeated("x") + "</link></item>",
        repeated("<a xml:base='b/'>"),
        repeated("<item><title>t</title><link>x</link>"),
        "<" + repeated("x"),
        "<a b='" + repeated("<a b='"),
        numbered([](const QByteArray &n) { return "<x" + n + "/>"; }),
        numbered([](const QByteArray &n) { return "<a x" + n + "=''/>"; }),
        numbered([](const QByteArray &n) { return "<a xmlns='u" + n + "'/>"; }),
        repeated("<item xml:base='" + longBase + "'><link>:</link></item>"),
        repeated("<item><link href='x'/><link href=':'/></item>"),
    };
    int number = 0;
    for (const QByteArray &inside : cases) {
        const auto items = parse(feedOf(inside));
        ASSERT_TRUE(items.has_value()) << number;
        ASSERT_FALSE(items->isEmpty()) << number;
        ASSERT_LE(items->size(), 2'000) << number;
        EXPECT_EQ(items->first().link, QStringLiteral("https://a.example/1")) << number;
        for (const FeedItem &item : *items) {
            ASSERT_LE(item.title.size(), 300) << number;
            ASSERT_LE(item.link.size(), WebLink::longest(WebLink::Giver::Stranger)) << number;
        }
        ++number;
    }
}

TEST(FeedParser, texts_and_sizes_are_bounded) {
    const QByteArray accents = QByteArray("é").repeated(5'000);
    const auto items =
        parse("<rss><item><title>x" + accents + "</title><link>https://a.example/</link>" +
              "<description>&lt;p class=&quot;" + QByteArray("y").repeated(10'000) +
              "&quot;>texte</description></item></rss>");
    ASSERT_TRUE(items && items->size() == 1);
    EXPECT_EQ(items->first().title, u'x' + QString(299, u'é'));
    EXPECT_EQ(items->first().summary, QString()); // nothing but the beginning of a tag

    // A link is whole or none, whatever makes it too long; so is a base.
    const auto long1 = QByteArray("é").repeated(1'500);
    const auto links =
        parse("<rss><item><link>https://a.example/" + long1 + "</link></item><item>" + "<link>" +
              QByteArray("é").repeated(400) + "</link></item><item>" + "<link>https://a.example/" +
              QByteArray("x").repeated(1'982) + "</link></item><channel xml:base='" +
              QByteArray("b/").repeated(250) + "'><item><link>1</link></item></channel></rss>");
    ASSERT_TRUE(links && links->size() == 2);
    EXPECT_EQ(links->first().link.size(), WebLink::longest(WebLink::Giver::Stranger));
    EXPECT_EQ(links->last().link, QStringLiteral("https://site.example/feed/1"));
    // Names and passwords, with which one site looks like another, are left out.
    for (const char *link : {"https://bank.example@a.example", "https://u:p@a.example/@x",
                             "https://a.example/@x", "HTTPS://u@a.example/@x"}) {
        const auto plain = parse("<rss><item><link>" + QByteArray(link) + "</link></item></rss>");
        ASSERT_TRUE(plain && plain->size() == 1) << link;
        EXPECT_TRUE(plain->first().link.startsWith(u"https://a.example")) << link;
    }

    const QByteArray one = "<item><link>https://a.example/1</link>" +
                           QByteArray("<x>&#233;</x>").repeated(100'000) + "</item>";
    const auto cut = parse("<rss>" + one.repeated(9) + "</rss>"); // more than 10 MB
    ASSERT_TRUE(cut.has_value());
    EXPECT_EQ(cut->size(), maxFeedBytes / one.size());
}

} // namespace
} // namespace vorle
