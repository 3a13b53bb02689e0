// Feeds to items, dates included: each kind of feed in turns with libxml2's events alone (the
// floor: the same bytes and options, handlers that do nothing), then beside two parsers of the npm
// registry (the peers, in a warm process of their own). Then the reading of one date.

#include "search/feeds/FeedDate.h"
#include "search/feeds/FeedParser.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <libxml/parser.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace vorle;

constexpr int turns = 200;

double milliseconds(const std::function<void()> &work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// What a feed costs by itself: the least of the turns, for others share the machine.
double least(const std::vector<double> &times) {
    return *std::min_element(times.begin(), times.end());
}

qsizetype events = 0;

void bareEvents(const QByteArray &bytes) {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void *, const xmlChar *, const xmlChar *, const xmlChar *, int,
                                const xmlChar **, int, int, const xmlChar **) { ++events; };
    handler.endElementNs = [](void *, const xmlChar *, const xmlChar *, const xmlChar *) {};
    handler.characters = [](void *, const xmlChar *, int) {};
    handler.cdataBlock = handler.characters;
    handler.serror = [](void *, auto) {};
    xmlParserCtxtPtr parser = xmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, nullptr);
    xmlCtxtUseOptions(parser, XML_PARSE_RECOVER | XML_PARSE_NONET);
    xmlParseChunk(parser, bytes.constData(), static_cast<int>(bytes.size()), 1);
    xmlFreeParserCtxt(parser);
}

QByteArray prose(qsizetype size) {
    const QByteArray paragraph =
        "<p class=\"texte\">Une phrase avec <b>du gras</b> &amp; une <a "
        "href=\"https://site.example/suite?x=1&amp;y=2\">suite</a> d’accents été à l’ombre, et "
        "quelques mots encore pour finir la phrase comme il faut.</p>\n";
    return paragraph.repeated(size / paragraph.size() + 1);
}

QByteArray escaped(QByteArray html) {
    return html.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;");
}

QByteArray items(int count, const char *element, const std::function<QByteArray(int)> &inside) {
    QByteArray all;
    for (int i = 0; i < count; ++i) {
        all += QByteArray("  <") + element + ">\n" + inside(i) + "  </" + element + ">\n";
    }
    return all;
}

QByteArray head(int i) {
    const QByteArray number = QByteArray::number(i);
    return "    <title>La version " + number +
           " apporte l’essentiel &amp; le reste</title>\n"
           "    <link>https://site.example/blog/2026/11/version-" +
           number +
           "</link>\n"
           "    <guid isPermaLink=\"false\">https://site.example/?p=" +
           number +
           "</guid>\n"
           "    <pubDate>Thu, " +
           QByteArray::number(i % 28 + 1) + " Nov 2026 18:05:09 +0100</pubDate>\n";
}

QByteArray rss(const QByteArray &inside) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<rss version=\"2.0\" "
           "xmlns:content=\"http://purl.org/rss/1.0/modules/content/\" "
           "xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
           "xmlns:itunes=\"http://www.itunes.com/dtds/podcast-1.0.dtd\">\n<channel>\n  <title>Le "
           "site</title>\n  <link>https://site.example/</link>\n" +
           inside + "</channel>\n</rss>\n";
}

struct Feed {
    const char *name;
    QByteArray bytes;
};

std::vector<Feed> feeds() {
    const QByteArray news = rss(items(120, "item", [](int i) {
        return head(i) + "    <description>Une phrase ou deux sur ce qui change, sans plus de "
                         "détails qu’il n’en faut.</description>\n    "
                         "<category>technique</category>\n";
    }));
    QByteArray latin = QString::fromUtf8(news).toLatin1();
    latin.replace("UTF-8", "ISO-8859-1");
    QByteArray broken = news;
    broken.replace("d’accents", "d&rsquo;accents").replace("é", "&eacute;").replace("&amp;", "&");
    return {
        {"blog, CDATA",
         rss(items(30, "item",
                   [](int i) {
                       return head(i) +
                              "    <dc:creator>Inès</dc:creator>\n    <description><![CDATA[" +
                              prose(300) + "]]></description>\n    <content:encoded><![CDATA[" +
                              prose(6'000) + "]]></content:encoded>\n";
                   }))},
        {"releases, Atom",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<feed "
         "xmlns=\"http://www.w3.org/2005/Atom\">\n<title>Versions</title>\n" +
             items(
                 20, "entry",
                 [](int i) {
                     const QByteArray number = QByteArray::number(i);
                     return "    <id>tag:site.example,2026:" + number +
                            "</id>\n    <updated>2026-11-" + QByteArray::number(i % 18 + 10) +
                            "T18:05:09Z</updated>\n    <link rel=\"alternate\" type=\"text/html\" "
                            "href=\"https://site.example/v" +
                            number + "\"/>\n    <title>v" + number +
                            "</title>\n    <content type=\"html\">" + escaped(prose(4'000)) +
                            "</content>\n";
                 }) +
             "</feed>\n"},
        {"news, short", news},
        {"news, Latin-1", latin},
        {"news, broken", broken},
        {"podcast",
         rss(items(250, "item",
                   [](int i) {
                       return head(i) + "    <description>" + escaped(prose(400)) +
                              "</description>\n    <enclosure url=\"https://site.example/son.mp3\" "
                              "length=\"48000000\" type=\"audio/mpeg\"/>\n    "
                              "<itunes:duration>3600</itunes:duration>\n    <itunes:image "
                              "href=\"https://site.example/i.jpg\"/>\n    "
                              "<itunes:explicit>no</itunes:explicit>\n";
                   }))},
    };
}

/// Four figures a feed: milliseconds and items of each peer. Empty, with a word, without npm.
std::vector<QList<double>> peers(const std::vector<Feed> &all) {
    const QString npm = QStandardPaths::findExecutable(QStringLiteral("npm"));
    const QString node = QStandardPaths::findExecutable(QStringLiteral("node"));
    if (npm.isEmpty() || node.isEmpty()) {
        std::printf("peers skipped: node and npm are not there\n");
        return {};
    }
    const QString folder = QStringLiteral(VORLE_SOURCE "/.cache/bench-peers");
    QDir().mkpath(folder);
    if (!QDir(folder + QStringLiteral("/node_modules/fast-xml-parser")).exists()) {
        QProcess::execute(npm,
                          {QStringLiteral("install"), QStringLiteral("--silent"),
                           QStringLiteral("--no-audit"), QStringLiteral("--no-fund"),
                           QStringLiteral("--prefix"), folder, QStringLiteral("rss-parser@3.13.0"),
                           QStringLiteral("fast-xml-parser@5.12.1")});
    }
    const QTemporaryDir files;
    QStringList arguments{QStringLiteral(VORLE_SOURCE "/bench/feed-peer.mjs"), folder,
                          QString::number(turns)};
    for (std::size_t i = 0; i < all.size(); ++i) {
        QFile file(files.filePath(QString::number(i)));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(all[i].bytes);
        }
        arguments += file.fileName();
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(node, arguments);
    process.waitForFinished(-1);
    std::vector<QList<double>> figures;
    for (const QByteArray &line : process.readAllStandardOutput().trimmed().split('\n')) {
        QList<double> one;
        for (const QByteArray &word : line.split(' ')) {
            one += word.toDouble();
        }
        figures.push_back(one);
    }
    if (figures.size() != all.size() || figures.front().size() != 4) {
        std::printf("peers skipped: npm did not install them\n");
        return {};
    }
    return figures;
}

void compareFeeds() {
    const std::vector<Feed> all = feeds();
    const std::vector<QList<double>> others = peers(all);
    std::printf("%-24s %9s %9s %10s %12s %14s  (goal: 0.60 of the floor's speed)\n", "feed",
                "vorle", "floor", "of floor", "rss-parser", "fast-xml");
    double total = 0;
    double totalFloor = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const QByteArray &bytes = all[i].bytes;
        std::vector<double> ours;
        std::vector<double> floor;
        qsizetype found = 0;
        for (int turn = 0; turn < turns; ++turn) {
            floor.push_back(milliseconds([&] { bareEvents(bytes); }));
            ours.push_back(milliseconds([&] {
                found = parseFeed(bytes, "application/xml", QUrl(), QString())
                            .value_or(QList<FeedItem>())
                            .size();
            }));
        }
        std::printf("%-24s %6.3f ms %6.3f ms %9.2f ", all[i].name, least(ours), least(floor),
                    least(floor) / least(ours));
        total += least(ours);
        totalFloor += least(floor);
        for (const qsizetype peer : {0, 2}) {
            if (others.empty()) {
                std::printf("%13s", "-");
            } else if (others[i][peer + 1] < 0) {
                std::printf("%13s", "fails");
            } else {
                std::printf("%9.1f ms%s", others[i][peer],
                            others[i][peer + 1] == static_cast<double>(found) ? " " : "*");
            }
        }
        std::printf("  %lld items, %lld KB\n", static_cast<long long>(found),
                    static_cast<long long>(bytes.size() / 1000));
    }
    std::printf("%-24s %6.3f ms %6.3f ms %9.2f\n* another number of items\n", "all", total,
                totalFloor, totalFloor / total);
}

void dates() {
    for (const char *text :
         {"Thu, 19 Nov 2026 18:05:09 +0100", "Thu, 19 Nov 2026 18:05 GMT", "2026-11-19T18:05:09Z",
          "2026-11-19T18:05:09.123+01:00", "jeu., 19 nov. 2026 18:05:09 +0100"}) {
        constexpr int count = 200'000;
        std::vector<double> times;
        qint64 sum = 0;
        for (int turn = 0; turn < 9; ++turn) {
            times.push_back(milliseconds([&] {
                for (int i = 0; i < count; ++i) {
                    const auto date = parseFeedDate(text);
                    sum += date ? date->toMSecsSinceEpoch() : 1;
                }
            }));
        }
        std::printf("%-36s %6.0f ns a date (goal: under 1000)%s\n", text,
                    least(times) * 1e6 / count, sum == 0 ? "?" : "");
    }
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication app(argc, argv);
    compareFeeds();
    dates();
    return events == 0 ? 1 : 0;
}
