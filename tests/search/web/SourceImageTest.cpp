#include "search/web/SourceImage.h"

#include "search/web/ImageHeader.h"
#include "search/web/PicturePage.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>
#include <QtEndian>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::TestReply;
using test::TestServer;

template <class Number>
QByteArray big(Number value) {
    QByteArray bytes(sizeof value, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

template <class Number>
QByteArray little(Number value) {
    QByteArray bytes(sizeof value, 0);
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray zeros(int count) { return QByteArray(count, '\0'); }

QByteArray png(quint32 width, quint32 height) {
    return "\x89PNG\r\n\x1A\n" + big<quint32>(13) + "IHDR" + big(width) + big(height) + zeros(9);
}

QByteArray jpeg(quint16 width, quint16 height) {
    const QByteArray exif = "\xFF\xE1" + big<quint16>(12) + "Exif\xFF\xC0pic!";
    return "\xFF\xD8" + exif + "\xFF\xFF\xC2" + big<quint16>(17) + "\x08" + big(height) +
           big(width) + zeros(10);
}

QByteArray gif(quint16 width, quint16 height) {
    return "GIF89a" + little(width) + little(height) + zeros(3);
}

QByteArray webp(const QByteArray &form, const QByteArray &header) {
    return "RIFF" + little<quint32>(40) + "WEBP" + form + little<quint32>(20) + header + zeros(12);
}

QByteArray ico(const QByteArray &sides, const QByteArray &picture = "data") { // a byte a picture
    const int count = static_cast<int>(sides.size());
    QByteArray bytes = zeros(2) + little<quint16>(1) + little(static_cast<quint16>(count));
    for (const char side : sides) {
        bytes += QByteArray(2, side) + zeros(6) + little(static_cast<quint32>(picture.size())) +
                 little(static_cast<quint32>(6 + 16 * count));
    }
    return bytes + picture;
}

TEST(SourceImage, sizes_are_read_from_headers_alone) {
    const std::pair<QByteArray, ImageSize> cases[] = {
        {png(1200, 630), {1200, 630}},
        {jpeg(640, 480), {640, 480}},
        {gif(16, 32), {16, 32}},
        {webp("VP8 ",
              zeros(3) + "\x9D\x01\x2A" + little<quint16>(0x4000 | 300) + little<quint16>(200)),
         {300, 200}},
        {webp("VP8L", "\x2F" + little<quint32>(299 | 199 << 14)), {300, 200}},
        {webp("VP8X", zeros(4) + QByteArray("\x2B\x01\x00\xC7\x00\x00", 6)), {300, 200}},
        {ico(QByteArray("\x10\x00\x20", 3)), {256, 256}},
        // What an ICO's list says of a picture is not what its picture is.
        {ico("\x10", png(9'000, 20)), {9'000, 20}},
        {ico("\x10", little<quint32>(40) + little<quint32>(9'000) + little<quint32>(40)),
         {9'000, 20}},
    };
    for (const auto &[bytes, size] : cases) {
        EXPECT_EQ(imageSize(bytes), size) << bytes.left(16).toPercentEncoding().constData();
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            imageSize(QByteArray(bytes.constData(), length)); // cut anywhere: no reading past it
        }
    }
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>"),
          QByteArray("<html>"), png(1, 1).first(20), png(0xFFFFFFFF, 5), zeros(100),
          QByteArray("\xFF\xD8\xFF\xDA\x00\x08 scan first, then", 24), ico({}),
          ico("\x10").chopped(1), webp("ALPH", zeros(20)), QByteArray("\xFF\xD8\xFF\xE0\0\0", 6)}) {
        EXPECT_FALSE(imageSize(bytes)) << bytes.left(16).toPercentEncoding().constData();
    }
}

TEST(SourceImage, the_picture_a_page_names) {
    const std::pair<std::string, std::string> cases[] = {
        {R"(<meta name="twitter:image" content="t"><META Property='OG:Image' CONTENT='o'>)", "o"},
        {R"(<meta content="o" property="og:image">)", "o"},
        {R"(<meta property="og:image" content=""><meta property="og:image" content="two">)", "two"},
        {R"(<meta property="og:image:width" content="9"><meta content="t" name="twitter:image">)",
         "t"},
        {R"(<link rel="icon" href="i"><link rel="apple-touch-icon" sizes="180x180" href="a">)",
         "a"},
        {R"(<link href='s' type="x" rel='shortcut ICON'>)", "s"},
        {R"(<link rel="stylesheet" href="c"><link rel="icon" href=""><link rel="icon" href="i">)",
         "i"},
        {R"(<link rel=icon href="u"><linkrel="icon"><link rel="icon"><a rel="icon" href="x">)", ""},
        {R"(<link rel="icon" href="never closed>)", ""},
        {R"(<meta property="og:image" content="l'image">)", "l'image"},
        {R"(<link title="l'icône" rel="icon" href="l'icone">)", "l'icone"},
        {std::string(300'000, 'x') + R"(<meta property="og:image" content="o">)", ""},
        // Characters count, not bytes.
        {[] {
             std::string text;
             for (int i = 0; i < 299'000; ++i) {
                 text += "é";
             }
             return text + R"(<meta property="og:image" content="o">)";
         }(),
         "o"},
    };
    for (const auto &[page, picture] : cases) {
        const auto found = html::announcedPictures(page);
        EXPECT_EQ(found.empty() ? "" : found.front(), picture) << page.substr(0, 200);
    }
    EXPECT_EQ(html::announcedPictures(R"(<link rel="icon" href="i"><meta name="twitter:image"
        content="o"><meta content="o" property="og:image"><link rel="apple-touch-icon" href="a">)"),
              (std::vector<std::string_view>{"o", "a", "i"}));
    // Linear whatever the page holds; a quadratic reading would take minutes.
    for (const char *piece : {"<link ", "<link rel=\"", "<meta content='\"", "<link rel='icon'>",
                              "<meta property=\"og:image\" content=\"\">", "<", "<link rel=\"a>"}) {
        std::string page;
        while (page.size() < 1'200'000) {
            page += piece;
        }
        EXPECT_TRUE(html::announcedPictures(page).empty()) << piece;
    }
}

class SourceImageTest : public testing::Test {
protected:
    SourceImageTest() {
        server.serve("/pic.png", image(png(600, 400)));
        server.serve("/favicon.ico", image(ico("\x20")));
    }

    static TestReply image(const QByteArray &bytes) {
        TestReply reply = TestReply::page(bytes);
        reply.contentType = "application/octet-stream";
        return reply;
    }

    QByteArray kept(const std::optional<Picture> &picture) {
        QFile file(picture ? source->path(*picture) : QString());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    TestServer server;
    HttpClient http{true};
    SourceImage::Locations locations{folder.filePath(QStringLiteral("a/pictures")),
                                     QStringLiteral("http://127.0.0.1:%1").arg(server.port())};
    std::unique_ptr<SourceImage> source = std::make_unique<SourceImage>(http, locations);
};

TEST_F(SourceImageTest, each_picture_is_fetched_once) {
    server.serve("/p", TestReply::redirect("/sub/p"));
    server.serve("/sub/p",
                 TestReply::page("<meta property='og:image' content='../pic.png?a&amp;b'>"));
    const QString link = server.link("/p");
    // Together, one after the other, and in another life of the program.
    auto first = source->picture(link + QStringLiteral("?utm_source=x"));
    auto second = source->picture(link);
    const auto picture = test::waitFor(std::move(first));
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->url, link + QStringLiteral("?utm_source=x"));
    EXPECT_TRUE(
        QRegularExpression(QStringLiteral("^[0-9a-f]{64}\\.img$")).match(picture->file).hasMatch());
    EXPECT_EQ(kept(picture), png(600, 400));
    EXPECT_EQ(test::waitFor(std::move(second))->file, picture->file);
    source = std::make_unique<SourceImage>(http, locations);
    EXPECT_EQ(test::waitFor(source->picture(link))->url, link);
    ASSERT_EQ(server.requests().size(), 3);
    EXPECT_EQ(server.requests()[0].headers.value("user-agent"), "Mozilla/5.0 (Macintosh) vorle");
    EXPECT_EQ(server.requests()[2].target, "/pic.png?a&b");
    EXPECT_EQ(QDir(locations.cacheFolder).entryList(QDir::Files).size(), 1);
}

TEST_F(SourceImageTest, a_repository_has_its_card_and_no_page_is_asked) {
    server.serve("/1/Owner/Repo", image(png(1200, 600)));
    const auto a = test::waitFor(source->picture(QStringLiteral("https://github.com/Owner/Repo")));
    const auto b = test::waitFor(
        source->picture(QStringLiteral("https://github.com/owner/repo/releases/tag/v1")));
    ASSERT_TRUE(a && b);
    EXPECT_EQ(a->file, b->file);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(SourceImageTest, what_is_no_picture_leaves_the_card_without_or_with_the_favicon) {
    TestReply large = image(png(600, 400) + QByteArray(5'000'000, 'x'));
    server.serve("/large", large);
    server.serve("/tiny", image(png(7, 100)));
    server.serve("/huge", image(png(8'193, 100)));
    server.serve("/vast", image(png(8'000, 8'000)));
    server.serve("/svg", image("<svg xmlns='http://www.w3.org/2000/svg' width='90' height='90'/>"));
    TestReply lying = TestReply::page("<html>no</html>");
    lying.contentType = "image/png";
    server.serve("/lying", lying);
    for (const QByteArray &named :
         {"/large", "/tiny", "/huge", "/vast", "/svg", "/lying", "/absent", "http://10.0.0.1/x.png",
          "data:image/png;base64,iVBORw0KGgo=", "file:///etc/passwd", ""}) {
        const QByteArray path = "/page" + named.toHex();
        server.serve(path, TestReply::page("<meta property='og:image' content='" + named + "'>"));
        EXPECT_EQ(kept(test::waitFor(source->picture(server.link(path)))), ico("\x20"))
            << named.constData();
    }
    server.serve("/next", TestReply::page("<link rel='icon' href='/pic.png'><meta "
                                          "property='og:image' content='/svg'>"));
    EXPECT_EQ(kept(test::waitFor(source->picture(server.link("/next")))), png(600, 400));
    server.serve("/favicon.ico", TestReply::page("<html>"));
    server.serve("/bare", TestReply::page("nothing named"));
    EXPECT_FALSE(test::waitFor(source->picture(server.link("/bare"))));
    const auto asked = server.requests().size();
    EXPECT_FALSE(test::waitFor(source->picture(server.link("/bare")))) << "remembered";
    EXPECT_EQ(server.requests().size(), asked);
    // What gave no answer may give one later.
    server.serve("/late", TestReply::shaped(TestReply::Shape::Raw, "no HTTP"));
    EXPECT_FALSE(test::waitFor(source->picture(server.link("/late"))));
    server.serve("/late", TestReply::page("<meta property='og:image' content='/pic.png'>"));
    EXPECT_EQ(kept(test::waitFor(source->picture(server.link("/late")))), png(600, 400));
    EXPECT_FALSE(test::waitFor(source->picture(QStringLiteral("ftp://a/b"))));
    EXPECT_FALSE(test::waitFor(source->picture(QStringLiteral("http://127.0.0.1:1/"))));
    EXPECT_FALSE(test::waitFor(source->picture(QStringLiteral("http://192.168.0.1/"))));
}

TEST_F(SourceImageTest, the_oldest_pictures_go_where_there_are_too_many) {
    const QDateTime now = QDateTime::currentDateTime();
    const auto put = [&](const char *name, qint64 bytes, int days) {
        QFile file(folder.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(bytes));
        ASSERT_TRUE(file.setFileTime(now.addDays(-days), QFileDevice::FileModificationTime));
    };
    put("new.img", SourceImage::maxCacheBytes / 2, 1);
    put("middle.img", SourceImage::maxCacheBytes / 2, 2);
    put("old.img", 100, 3);
    put("notes.txt", 100, 400);
    HttpClient client(true);
    const SourceImage another(client, folder.path());
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files, QDir::Name),
              QStringList({QStringLiteral("middle.img"), QStringLiteral("new.img"),
                           QStringLiteral("notes.txt")}));
}

TEST_F(SourceImageTest, a_folder_that_cannot_be_written_is_no_error) {
    QFile inTheWay(folder.filePath(QStringLiteral("a")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    server.serve("/p", TestReply::page("<meta property='og:image' content='/pic.png'>"));
    EXPECT_FALSE(test::waitFor(source->picture(server.link("/p"))));
}

TEST_F(SourceImageTest, a_stop_and_an_end_at_any_moment) {
    server.serve("/silent", TestReply::shaped(TestReply::Shape::Silent));
    CancelSource stop;
    auto leader = source->picture(server.link("/silent"), stop.token());
    auto stopped = source->picture(server.link("/silent"), stop.token());
    CancelSource end;
    auto follower = source->picture(server.link("/silent"), end.token());
    test::spinUntil([&] { return server.requestCount("/silent") == 1; });
    stop.cancel();
    EXPECT_THROW(test::waitFor(std::move(leader)), Cancelled);
    EXPECT_THROW(test::waitFor(std::move(stopped)), Cancelled);
    // A stop is no failure: who still wants the picture asks for it itself.
    test::spinUntil([&] { return server.requestCount("/silent") == 2; });
    source.reset();
    auto other = std::make_unique<HttpClient>(true);
    auto late = SourceImage(*other, locations).picture(server.link("/silent"));
    test::spinUntil([&] { return server.requestCount("/silent") == 3; });
    other.reset();
    EXPECT_FALSE(test::waitFor(std::move(late)));
    end.cancel();
    EXPECT_THROW(test::waitFor(std::move(follower)), Cancelled);
}

} // namespace
} // namespace vorle
