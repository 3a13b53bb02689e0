#include "desktop/ProjectNames.h"

#include "core/Preferences.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(ProjectNamesTest, they_are_whole_whenever_they_change) {
    const QTemporaryDir folder;
    const auto path = [&](const char *name) { return folder.filePath(QString::fromUtf8(name)); };
    Preferences preferences(
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json"))));
    const QString file = path("shared/projects.json");
    test::writeFile(path("own"), "mine");
    QDir().mkpath(path("shared"));
    ASSERT_TRUE(QFile::link(path("own"), file)) << "by whoever";
    {
        ProjectNames names(file, preferences);
        test::waitFor(names.written());
        EXPECT_EQ(json::decode<QList<QString>>(test::readFile(file)), QList<QString>());
        const QString hostile = QStringLiteral("\"],[\n$(pwned)\u202E");
        preferences.change(&Settings::projects,
                           {{QStringLiteral("Tiravue"), QString()}, {hostile, QString()}});
        preferences.change(&Settings::job, QStringLiteral("jardinier"));
        test::waitFor(names.written());
        EXPECT_EQ(json::decode<QList<QString>>(test::readFile(file)),
                  QList<QString>({hostile, QStringLiteral("Tiravue")}));
    }
    EXPECT_EQ(QDir(path("shared")).entryList(QDir::Files | QDir::Hidden).size(), 1);
    EXPECT_EQ(test::readFile(path("own")), "mine");
}

} // namespace
} // namespace vorle
