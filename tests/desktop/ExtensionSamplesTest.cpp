// What passes between the app and its extensions on a Mac, which are written in Swift: the samples
// that both are held to.

#include "desktop/InboxFolder.h"
#include "desktop/WidgetSnapshot.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

QByteArray sample(const char *name) {
    return test::readFile(QStringLiteral(VORLE_EXTENSION_SAMPLES "/") + QString::fromLatin1(name))
        .trimmed();
}

TEST(ExtensionSamples, are_what_the_app_writes_and_reads_to_the_byte) {
    for (const char *name : {"widget.json", "widget-least.json"}) {
        const QByteArray bytes = sample(name);
        ASSERT_FALSE(bytes.isEmpty()) << name;
        EXPECT_EQ(json::encode(json::decode<WidgetSnapshot>(bytes)), bytes) << name;
    }
    for (const char *name : {"drop.json", "drop-least.json"}) {
        const QByteArray bytes = sample(name);
        ASSERT_FALSE(bytes.isEmpty()) << name;
        EXPECT_EQ(json::encode(json::decode<SharedItem>(bytes)), bytes) << name;
    }
}

TEST(ExtensionSamples, a_drop_of_the_share_sheet_is_taken_whole) {
    const auto item = json::decode<SharedItem>(sample("drop.json"));
    EXPECT_EQ(item.url, QStringLiteral("https://plume.example/4b?a=1&b=\"2\""));
    EXPECT_EQ(item.note, QStringLiteral("à lire\nvite"));
    EXPECT_EQ(item.sharedAt, QDateTime(QDate(2026, 11, 22), QTime(9, 30), QTimeZone::utc()));
    EXPECT_FALSE(json::decode<SharedItem>(sample("drop-least.json")).title);
}

} // namespace
} // namespace vorle
