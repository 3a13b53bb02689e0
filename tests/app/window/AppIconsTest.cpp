// Pictures that anybody may have put on the machine.

#include "app/window/AppIcons.h"
#include "tests/support/Settle.h"
#include "tests/support/Wait.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <sys/stat.h>

namespace vorle {
namespace {

QByteArray png(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer out(&bytes);
    image.save(&out, "PNG");
    return bytes;
}

QByteArray number(quint32 value) {
    QByteArray bytes(4, 0);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray entry(const char *type, const QByteArray &data) {
    return type + number(static_cast<quint32>(data.size()) + 8) + data;
}

QByteArray icns(const QByteArray &entries) { return entry("icns", entries); }

TEST(AppIcons, small_pictures_are_taken_and_nothing_else) {
    QByteArray enormous = png(8, 8);
    enormous.replace(16, 8, number(60'000) + number(60'000));
    const QByteArray several = icns(entry("ic08", png(256, 256)) + entry("TOC ", "x") +
                                    entry("ic12", png(64, 64)) + entry("icp4", png(16, 16)));
    const struct {
        const char *what;
        QByteArray file;
        QSize size;
    } cases[] = {
        {"a picture", png(256, 256), {64, 64}},
        {"not a square", png(128, 32), {64, 16}},
        {"a line", png(1000, 1), {64, 1}},
        {"several sizes", several, {64, 64}},
        {"the largest of small ones",
         icns(entry("icp4", png(16, 16)) + entry("ic11", png(32, 32))),
         {64, 64}},
        {"an ICNS cut short", several.first(500), {0, 0}},
        {"one whose entry has no length", icns("ic08" + number(0)), {0, 0}},
        {"one that goes on past its end", icns("ic08" + number(0x7fffffff) + png(8, 8)), {0, 0}},
        {"a picture too large to be an icon", png(1100, 20), {0, 0}},
        {"one that says so only", enormous, {0, 0}},
        {"a picture cut short", png(64, 64).first(30), {0, 0}},
        {"no picture", "#!/bin/sh", {0, 0}},
        {"another format", "GIF89a\x01\0\x01\0", {0, 0}},
        {"a drawing that grows",
         "<!DOCTYPE svg [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><svg>&b;</svg>",
         {0, 0}},
        {"nothing", "", {0, 0}},
    };
    for (const auto &one : cases) {
        EXPECT_EQ(iconPicture(one.file, 64).size(), one.size) << one.what;
    }
}

/// Whose icons are paths.
class Paths final : public InstalledApps {
public:
    QList<InstalledApp> list() const override { return {}; }
    QString iconFile(const QString &icon, const QString &, int) const override { return icon; }
};

TEST(AppIcons, what_is_no_file_of_an_icon_is_one_pixel_that_nobody_sees) {
    const QTemporaryDir folder;
    const auto at = [&](const char *name) { return folder.filePath(QString::fromUtf8(name)); };
    QFile good(at("été & co.png"));
    ASSERT_TRUE(good.open(QIODevice::WriteOnly));
    good.write(png(48, 48));
    good.close();
    ASSERT_EQ(::mkfifo(QFile::encodeName(at("pipe.png")).constData(), 0600), 0);
    QFile huge(at("huge.png"));
    ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
    huge.write(png(48, 48));
    ASSERT_TRUE(huge.resize(10 * 1024 * 1024));
    const Paths paths;
    AppIcons icons(paths, {});
    const auto sizeOf = [&](const QString &icon) {
        const std::unique_ptr<QQuickImageResponse> response(icons.requestImageResponse(
            QString::fromLatin1(QUrl::toPercentEncoding(icon)), {64, 64}));
        bool answered = false;
        QObject::connect(response.get(), &QQuickImageResponse::finished, [&] { answered = true; });
        test::spinUntil([&] { return answered; });
        return std::unique_ptr<QQuickTextureFactory>(response->textureFactory())->textureSize();
    };
    EXPECT_EQ(sizeOf(at("été & co.png")), QSize(64, 64));
    for (const QString &none : {at("pipe.png"), at("huge.png"), at("absent.png"), folder.path(),
                                QStringLiteral("/dev/zero"), QString()}) {
        EXPECT_EQ(sizeOf(none), QSize(1, 1)) << none.toStdString();
    }
    // The engine may take a response down before it was answered.
    delete icons.requestImageResponse(QString(), {64, 64});
    test::settle();
}

/// Whose disk takes its time with every icon.
class SlowPaths final : public InstalledApps {
public:
    QList<InstalledApp> list() const override { return {}; }
    QString iconFile(const QString &icon, const QString &, int) const override {
        std::this_thread::sleep_for(std::chrono::milliseconds(120));
        return icon;
    }
};

TEST(AppIcons, a_slow_disk_shows_every_icon_of_a_long_list) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("icon.png"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(png(48, 48));
    file.close();
    const SlowPaths paths;
    AppIcons icons(paths, {});
    std::vector<std::unique_ptr<QQuickImageResponse>> responses;
    int answered = 0;
    for (int i = 0; i < 40; ++i) {
        responses.emplace_back(icons.requestImageResponse(path, {64, 64}));
        QObject::connect(responses.back().get(), &QQuickImageResponse::finished,
                         [&] { ++answered; });
    }
    test::spinUntil([&] { return answered == 40; });
    for (const auto &response : responses) {
        const std::unique_ptr<QQuickTextureFactory> shown(response->textureFactory());
        EXPECT_EQ(shown->textureSize(), QSize(64, 64));
    }
}

} // namespace
} // namespace vorle
