#include "platform/macos/BundleApps.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

const QString ours = QStringLiteral("org.example.vorle.");

QVariantMap dictionary(const QString &key = {}, const QVariant &value = {}) {
    QVariantMap information{
        {QStringLiteral("CFBundleIdentifier"), QStringLiteral("com.maker.app")}};
    if (!key.isEmpty()) {
        information[key] = value;
    }
    return information;
}

TEST(BundleApps, a_bundle_is_an_app_unless_nobody_works_in_it) {
    const QString path = QStringLiteral("/Applications/Some App 2.1.app");
    const InstalledApp plain{QStringLiteral("Some App 2.1"), path, QStringLiteral("com.maker.app"),
                             std::nullopt};
    EXPECT_EQ(appOfBundle(path, dictionary(), ours), plain);

    for (const QVariant &yes : {QVariant(true), QVariant(1), QVariant(QStringLiteral("1")),
                                QVariant(QStringLiteral("YES"))}) {
        for (const char *key : {"LSUIElement", "LSBackgroundOnly"}) {
            EXPECT_FALSE(appOfBundle(path, dictionary(QString::fromLatin1(key), yes), ours)) << key;
        }
    }
    for (const QVariant &no : {QVariant(false), QVariant(0), QVariant(QStringLiteral("NO")),
                               QVariant(QStringLiteral("0")), QVariant(QVariantList())}) {
        EXPECT_EQ(appOfBundle(path, dictionary(QStringLiteral("LSUIElement"), no), ours), plain);
    }

    for (const auto &[icon, file] : {std::pair("App", "App.icns"),
                                     std::pair("App.icns", "App.icns"), std::pair("../../a", "")}) {
        const auto app = appOfBundle(
            path, dictionary(QStringLiteral("CFBundleIconFile"), QString::fromLatin1(icon)), ours);
        const QString folder = path + QStringLiteral("/Contents/Resources/");
        EXPECT_EQ(app->icon, *file == 0 ? QString() : folder + QString::fromLatin1(file)) << icon;
    }

    const auto named = [&](const char *identifier) {
        return appOfBundle(
            path, dictionary(QStringLiteral("CFBundleIdentifier"), QString::fromLatin1(identifier)),
            ours);
    };
    EXPECT_TRUE(named("com.apple.dt.Xcode"));
    EXPECT_FALSE(named("org.example.vorle.widget"));
    EXPECT_FALSE(appOfBundle(path, {}, ours)) << "its dictionary cannot be read";

    const QString key = QStringLiteral("LSApplicationCategoryType");
    EXPECT_EQ(appOfBundle(path, dictionary(key, QStringLiteral("public.app-category.music")), ours)
                  ->category,
              QStringLiteral("public.app-category.music"));
    EXPECT_FALSE(appOfBundle(path, dictionary(key, 7), ours)->category) << "no text";
}

TEST(BundleApps, the_bundles_of_every_folder_are_listed) {
    const QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("a/One.app/Contents"));
    QDir(folder.path()).mkpath(QStringLiteral("a/Utilities/Deep.app"));
    QDir(folder.path()).mkpath(QStringLiteral("b/Two.app"));
    QStringList asked;
    const BundleApps bundles({folder.filePath(QStringLiteral("a")),
                              folder.filePath(QStringLiteral("absent")),
                              folder.filePath(QStringLiteral("b"))},
                             ours, [&](const QString &path) {
                                 asked += path;
                                 return dictionary();
                             });
    const auto apps = bundles.list();
    ASSERT_EQ(apps.size(), 2);
    EXPECT_EQ(apps[0].name, QStringLiteral("One"));
    EXPECT_EQ(apps[1].location, folder.filePath(QStringLiteral("b/Two.app")));
    EXPECT_EQ(asked.first(), folder.filePath(QStringLiteral("a/One.app/Contents/Info.plist")));
}

} // namespace
} // namespace vorle
