// Pictures that came from strangers' sites, as the screens show them.

#include "app/window/pictures/SourcePictures.h"
#include "app/window/pictures/PictureFile.h"
#include "search/web/ImageBody.h"
#include "search/web/SourceImage.h"
#include "tests/support/Settle.h"
#include "tests/support/Wait.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QThread>
#include <QtEndian>

#include <gtest/gtest.h>

#include <memory>

#include <sys/stat.h>

namespace vorle {
namespace {

QByteArray file(int width, int height, const char *format = "PNG", QColor colour = Qt::red) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer out(&bytes);
    image.save(&out, format);
    return bytes;
}

QByteArray sized(QByteArray png, quint32 width, quint32 height) {
    qToBigEndian(width, png.data() + 16);
    qToBigEndian(height, png.data() + 20);
    return png;
}

const PictureLook look{
    .size = {240, 152}, .radius = 24, .ground = QColor(0, 255, 0), .veil = QColor()};

TEST(PictureFile, is_an_icon_or_fills_its_place_by_its_sides) {
    const struct {
        ImageSize size;
        bool ico;
        PictureSort sort;
    } cases[] = {
        {{1200, 630}, false, PictureSort::Banner},
        {{1200, 1200}, false, PictureSort::Banner},
        {{640, 360}, false, PictureSort::Banner},
        {{500, 300}, false, PictureSort::Drawing},
        {{1200, 160}, false, PictureSort::Drawing}, // a strip
        {{300, 900}, false, PictureSort::Drawing},
        {{180, 180}, false, PictureSort::Icon}, // what telephones show
        {{512, 480}, false, PictureSort::Icon},
        {{1200, 40}, false, PictureSort::Icon},
        {{150, 110}, false, PictureSort::Icon},
        {{256, 200}, true, PictureSort::Icon},
    };
    for (const auto &each : cases) {
        EXPECT_EQ(pictureSort(each.size, each.ico), each.sort)
            << each.size.width << " × " << each.size.height;
    }
}

TEST(PictureFile, is_set_in_its_place_whatever_form_it_has) {
    const struct {
        const char *what;
        QByteArray bytes;
        QColor middle;
        QColor edge;
    } cases[] = {
        {"a drawing", file(1200, 630), Qt::red, Qt::red},
        {"one that is as wide as can be", file(8192, 110), Qt::red, Qt::red},
        {"one that is as high as can be", file(200, 8192), Qt::red, Qt::red},
        {"an icon", file(64, 64), Qt::red, look.ground},
    };
    for (const auto &each : cases) {
        const QImage set = setPicture(each.bytes, look);
        ASSERT_EQ(set.size(), look.size) << each.what;
        EXPECT_EQ(set.pixelColor(120, 76), each.middle) << each.what;
        EXPECT_EQ(set.pixelColor(2, 76), each.edge) << each.what;
        EXPECT_EQ(set.pixelColor(0, 0).alpha(), 0) << "the corner is cut: " << each.what;
        EXPECT_EQ(set.pixelColor(239, 151).alpha(), 0) << each.what;
    }
    // Its middle is what is kept of it.
    QImage halves(1200, 630, QImage::Format_RGB32);
    halves.fill(Qt::blue);
    for (int x = 0; x < 1200; ++x) {
        halves.setPixelColor(x, 0, Qt::white);
        halves.setPixelColor(x, 629, Qt::white);
    }
    QByteArray bytes;
    QBuffer out(&bytes);
    halves.save(&out, "PNG");
    PictureLook banner = look;
    banner.size = {720, 240};
    EXPECT_EQ(setPicture(bytes, banner).pixelColor(360, 0), QColor(Qt::blue));

    // Few colours stay what they are: nothing is dithered.
    QImage few(1200, 630, QImage::Format_Indexed8);
    few.setColorTable({qRgb(40, 31, 63), qRgb(255, 255, 255)});
    few.fill(0);
    QByteArray indexed;
    QBuffer into(&indexed);
    few.save(&into, "PNG");
    EXPECT_EQ(setPicture(indexed, look).pixelColor(99, 77), QColor(40, 31, 63));

    PictureLook dark = look;
    dark.veil = QColor(0, 0, 0);
    EXPECT_NEAR(setPicture(file(1200, 630), dark).pixelColor(120, 76).red(), 219, 2);
}

/// A chunk as a PNG has it.
QByteArray chunk(const QByteArray &name, const QByteArray &data) {
    QByteArray bytes(4, 0);
    qToBigEndian(static_cast<quint32>(data.size()), bytes.data());
    QByteArray sum(4, 0);
    quint32 crc = 0xFFFFFFFF;
    for (const char c : name + data) {
        crc ^= static_cast<quint8>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320U : 0U);
        }
    }
    qToBigEndian(~crc, sum.data());
    return bytes + name + data + sum;
}

/// With texts in it, each a thousand times as large once it is unpacked.
QByteArray swollen(QByteArray png, int texts) {
    const QByteArray packed = qCompress(QByteArray(7'000'000, 'x'), 9).sliced(4);
    const QByteArray text = chunk("zTXt", QByteArray("Comment\0\0", 9) + packed);
    return png.insert(33, text.repeated(texts));
}

/// With each of its scans so many times.
QByteArray rescanned(const QByteArray &jpeg, int scans) {
    const qsizetype at = jpeg.indexOf("\xFF\xDA");
    return jpeg.first(at) + jpeg.sliced(at, jpeg.size() - at - 2).repeated(scans) + jpeg.last(2);
}

TEST(PictureFile, shows_nothing_of_what_is_no_picture_or_too_much_of_one) {
    const QByteArray good = file(1200, 630);
    const struct {
        const char *what;
        QByteArray bytes;
    } cases[] = {
        {"nothing", {}},
        {"a page", "<!doctype html>"},
        {"a drawing program", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"},
        {"one cut short in its head", good.first(30)},
        {"one that says it is enormous", sized(good, 60'000, 60'000)},
        {"one of too many pixels", sized(good, 8'000, 8'000)},
        {"one of no width", sized(good, 0, 630)},
        {"one of a single line", file(400, 1)},
        {"another format", file(400, 300, "BMP")},
        {"a name of another format", "RIFF\x10\0\0\0WEBPVP8 "},
        {"an empty list of icons", QByteArray("\0\0\1\0\0\0", 6)},
        {"a file of five million bytes", good + QByteArray(5'000'000, 'x')},
        {"one that unpacks to gigabytes of text", swollen(good, 600)},
        {"a JPEG of thousands of scans", rescanned(file(1200, 630, "JPEG"), 900)},
    };
    for (const auto &each : cases) {
        EXPECT_TRUE(setPicture(each.bytes, look).isNull()) << each.what;
    }
    // A little of it is usual, and no decoder is given it.
    const QByteArray noted = swollen(good, 3);
    EXPECT_EQ(decodablePart(noted), good.first(33) + good.sliced(good.indexOf("IDAT") - 4));
    EXPECT_FALSE(setPicture(noted, look).isNull());
    EXPECT_FALSE(setPicture(file(1200, 630, "JPEG"), look).isNull());
    int asked = 0;
    EXPECT_TRUE(setPicture(good, look, [&] { return ++asked > 1; }).isNull()) << "nobody waits";
    // A picture whose data is not what its head says ends in nothing, or in a picture.
    for (qsizetype at = 30; at < good.size(); at += 97) {
        QByteArray torn = good;
        torn[at] = static_cast<char>(torn[at] ^ 0x55);
        const QImage set = setPicture(torn, look);
        EXPECT_TRUE(set.isNull() || set.size() == look.size);
        setPicture(good.first(at), look);
    }
}

class SourcePicturesTest : public testing::Test {
protected:
    void keep(const char *name, const QByteArray &bytes) const {
        QFile out(m_folder.filePath(QString::fromUtf8(name)));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }
    /// The size of what is shown; empty for the one pixel that stands for nothing.
    QSize shown(const char *id, QSize size = {240, 152}) {
        const std::unique_ptr<QQuickImageResponse> response(
            pictures().requestImageResponse(QString::fromUtf8(id), size));
        bool answered = false;
        QObject::connect(response.get(), &QQuickImageResponse::finished, [&] { answered = true; });
        EXPECT_FALSE(answered) << "before anybody listens";
        test::spinUntil([&] { return answered; });
        const QSize given =
            std::unique_ptr<QQuickTextureFactory>(response->textureFactory())->textureSize();
        return given == QSize(1, 1) ? QSize() : given;
    }
    SourcePictures &pictures() { return m_pictures; }

    QTemporaryDir m_folder;

private:
    SourcePictures m_pictures{m_folder.path()};
};

TEST_F(SourcePicturesTest, gives_the_files_of_its_folder_and_no_others) {
    keep("a.img", file(1200, 630));
    keep("torn.img", "not a picture");
    ASSERT_EQ(::mkfifo(QFile::encodeName(m_folder.filePath(QStringLiteral("pipe.img"))), 0600), 0);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder.img")));
    ASSERT_EQ(keptPictureSort(m_folder.filePath(QStringLiteral("a.img"))), PictureSort::Banner);
    EXPECT_FALSE(keptPictureSort(m_folder.filePath(QStringLiteral("pipe.img"))));
    EXPECT_FALSE(keptPictureSort(m_folder.filePath(QStringLiteral("torn.img"))));

    EXPECT_EQ(shown("efe8dd/-/12/a.img"), QSize(240, 152));
    ASSERT_TRUE(QFile::remove(m_folder.filePath(QStringLiteral("a.img"))));
    EXPECT_EQ(shown("efe8dd/-/12/a.img"), QSize(240, 152)) << "it is kept ready";
    EXPECT_EQ(shown("efe8dd/-/12/a.img", {120, 76}), QSize()) << "of that size it is not";
    for (const char *id : {"efe8dd/-/12/torn.img", "efe8dd/-/12/pipe.img", "efe8dd/-/12/folder.img",
                           "efe8dd/-/12/absent.img", "efe8dd/-/12/", "efe8dd/-/12/..",
                           "efe8dd/-/12/../a.img", "efe8dd/-/12//etc/passwd", "a.img", ""}) {
        EXPECT_EQ(shown(id), QSize()) << id;
    }
    EXPECT_EQ(shown("efe8dd/-/12/a.img", {0, 0}), QSize());
}

TEST_F(SourcePicturesTest, does_not_try_again_what_it_found_broken) {
    QByteArray torn = file(1200, 630);
    torn.replace(torn.indexOf("IDAT") + 4, 40, QByteArray(40, 'x'));
    keep("b.img", torn);
    const QString path = m_folder.filePath(QStringLiteral("b.img"));
    EXPECT_TRUE(canShowPicture(path)) << "as far as can be told";
    EXPECT_EQ(shown("efe8dd/-/12/b.img"), QSize());
    EXPECT_TRUE(isKnownBroken(path));
    EXPECT_FALSE(canShowPicture(path));
    keep("b.img", file(1300, 630)); // it is another one by now
    EXPECT_TRUE(canShowPicture(path));
    EXPECT_EQ(shown("efe8dd/-/12/b.img"), QSize(240, 152));
}

TEST_F(SourcePicturesTest, the_end_waits_for_no_picture) {
    // As much work as is kept at all: the most pixels there may be, whose colours say nothing.
    QImage noise(4096, 4096, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < noise.height(); y += 16) {
        for (int x = 0; x < noise.width(); ++x) {
            state = state * 1664525 + 1013904223;
            noise.setPixel(x, y, state >> 8);
        }
    }
    QByteArray bytes;
    QBuffer out(&bytes);
    noise.save(&out, "PNG");
    ASSERT_TRUE(SourceImage::keeps(bytes));
    keep("c.img", bytes);
    auto going = std::make_unique<SourcePictures>(m_folder.path());
    const std::unique_ptr<QQuickImageResponse> response(
        going->requestImageResponse(QStringLiteral("efe8dd/-/0/c.img"), {240, 152}));
    QThread::msleep(30); // it is under way
    QElapsedTimer clock;
    clock.start();
    going.reset();
    EXPECT_LT(clock.elapsed(), 400);
    EXPECT_FALSE(isKnownBroken(m_folder.filePath(QStringLiteral("c.img")))) << "it was given up";
    test::settle();
}

TEST_F(SourcePicturesTest, may_be_given_up_or_go_at_any_moment) {
    keep("a.img", file(2000, 1000));
    auto going = std::make_unique<SourcePictures>(m_folder.path());
    for (int i = 0; i < 20; ++i) {
        const QString id = QStringLiteral("efe8dd/-/%1/a.img").arg(i);
        std::unique_ptr<QQuickImageResponse> response(going->requestImageResponse(id, {240, 152}));
        if (i % 2 == 0) {
            response->cancel();
        }
    }
    auto *given = pictures().requestImageResponse(QStringLiteral("efe8dd/-/0/a.img"), {90, 90});
    given->cancel();
    bool answered = false;
    QObject::connect(given, &QQuickImageResponse::finished, [&] { answered = true; });
    test::spinUntil([&] { return answered; }); // the engine takes it down then
    delete given;
    going.reset();
    test::settle();
}

} // namespace
} // namespace vorle
