#include "app/demo/DemoSite.h"
#include "search/web/PageReader.h"
#include "search/web/SourceImage.h"
#include "tests/support/Wait.h"

#include <QTcpSocket>
#include <QTemporaryDir>
#include <QUrl>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using testing::StartsWith;

class DemoSiteTest : public testing::Test {
protected:
    /// Sends raw bytes on a connection of its own; gives what came until the site hung up or
    /// `answers` of them came.
    QByteArray exchange(const QByteArray &sent, int answers = 1) {
        QByteArray came;
        bool gone = false;
        QTcpSocket socket; // last: it tells the flag above when it goes
        socket.connectToHost(QStringLiteral("127.0.0.1"),
                             static_cast<quint16>(QUrl(site->address()).port()));
        QObject::connect(&socket, &QTcpSocket::disconnected, &socket, [&] { gone = true; });
        QObject::connect(&socket, &QTcpSocket::connected, &socket, [&] { socket.write(sent); });
        test::spinUntil([&] {
            came += socket.readAll();
            return gone || came.count("HTTP/1.1 ") >= answers;
        });
        return came + socket.readAll();
    }

    DemoCatalogue catalogue{QDate(2026, 11, 21)};
    std::unique_ptr<DemoSite> site = std::make_unique<DemoSite>(catalogue, 0);
};

TEST_F(DemoSiteTest, serves_every_page_as_the_page_reader_expects_its_shape) {
    HttpClient http(true);
    PageReader reader(http);
    QList<DemoPage> pages = catalogue.pages() + catalogue.madeFor(QStringLiteral("échecs & C#/?"));
    EXPECT_GE(pages.size(), 24);
    QMap<DemoPage::Shape, int> shapes;
    const QTemporaryDir cache;
    SourceImage images(http, cache.path());
    int pictured = 0;
    for (const DemoPage &page : pages) {
        const ReadPage read = test::waitFor(reader.read(site->address() + page.path));
        SCOPED_TRACE(page.path.toStdString());
        ++shapes[page.shape];
        if (page.shape == DemoPage::Shape::Article || page.shape == DemoPage::Shape::Og) {
            const auto picture = test::waitFor(images.picture(site->address() + page.path));
            EXPECT_EQ(picture.has_value(), !page.picture.isEmpty());
            pictured += picture ? 1 : 0;
        }
        EXPECT_FALSE(QString::fromUtf8(read.text).contains(u'{')) << "a date was not filled in";
        if (page.shape == DemoPage::Shape::Dead) {
            EXPECT_EQ(read.level, ReadLevel::None);
            continue;
        }
        const bool whole = page.shape != DemoPage::Shape::Og;
        EXPECT_EQ(read.level, whole ? ReadLevel::Full : ReadLevel::Meta);
        if (page.shape != DemoPage::Shape::Plain && page.shape != DemoPage::Shape::Markdown) {
            EXPECT_EQ(read.title, page.title);
        }
        if (page.shape == DemoPage::Shape::Article || page.shape == DemoPage::Shape::Main) {
            EXPECT_EQ(read.description.value_or(QString()), page.description);
            EXPECT_FALSE(QString::fromUtf8(read.text).contains(QStringLiteral("Accueil")));
        }
    }
    EXPECT_GT(pictured, 5);
    EXPECT_EQ(shapes.size(), 7) << "a shape is not shown any more";
    EXPECT_EQ(shapes.value(DemoPage::Shape::Dead), 1);
}

TEST_F(DemoSiteTest, answers_requests_of_every_sort_and_lives_on) {
    const std::pair<QByteArray, const char *> cases[] = {
        {"GET /../../etc/passwd HTTP/1.1\r\n\r\n", "HTTP/1.1 404"},
        {"GET /%2e%2e%2fetc/passwd HTTP/1.1\r\n\r\n", "HTTP/1.1 404"},
        {"GET /sujets//guide HTTP/1.1\r\n\r\n", "HTTP/1.1 404"},
        {"GET /sujets/x/../../retour HTTP/1.1\r\n\r\n", "HTTP/1.1 404"},
        {"GET / HTTP/1.1\r\nConnection: close\r\n\r\n", "HTTP/1.1 404"},
        {"GET /forum/t/limaces-sans-granules/88?utm_source=a HTTP/1.0\r\n\r\n", "HTTP/1.1 200"},
        {"GET http://example.org/ HTTP/1.1\r\n\r\n", "HTTP/1.1 400"},
        {"GET / HTTP/1.1\r\nContent-Length: 3\r\n\r\nabc", "HTTP/1.1 400"},
        {"POST / HTTP/1.1\r\n\r\n", "HTTP/1.1 405"},
        {"\r\n\r\n", "HTTP/1.1 400"},
        {QByteArray("\x16\x03\x01\x02\x00\x01\xff\r\n\r\n", 11), "HTTP/1.1 400"},
        {"GET /" + QByteArray(20'000, 'a'), "HTTP/1.1 431"},
    };
    for (const auto &[sent, status] : cases) {
        EXPECT_THAT(exchange(sent).toStdString(), StartsWith(status))
            << sent.left(60).toStdString();
    }
    const QByteArray head = exchange("HEAD /blog/typescript-6-2 HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(head.startsWith("HTTP/1.1 200") && head.endsWith("\r\n\r\n"));
    const QByteArray get = "GET /blog/typescript-6-2 HTTP/1.1\r\nHost: x\r\n\r\n";
    EXPECT_EQ(exchange(get + get + get, 3).count("HTTP/1.1 200"), 3);
}

TEST_F(DemoSiteTest, goes_while_clients_are_waiting_and_survives_theirs_going) {
    site = std::make_unique<DemoSite>(catalogue, 50);
    const auto port = static_cast<quint16>(QUrl(site->address()).port());
    QTcpSocket stays;
    {
        QTcpSocket leaves;
        for (QTcpSocket *socket : {&stays, &leaves}) {
            socket->connectToHost(QStringLiteral("127.0.0.1"), port);
            test::spinUntil([&] { return socket->state() == QTcpSocket::ConnectedState; });
            socket->write("GET /blog/typescript-6-2 HTTP/1.1\r\n\r\n");
        }
    }
    test::spinUntil([&] { return stays.bytesAvailable() > 0; });
    stays.write("GET /blog/typescript-6-2 HTTP/1.1\r\n\r\n");
    site.reset();
    test::spinUntil([&] { return stays.state() == QTcpSocket::UnconnectedState; });
}

} // namespace
} // namespace vorle
