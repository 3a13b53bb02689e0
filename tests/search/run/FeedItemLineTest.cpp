#include "search/run/FeedItemLine.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(FeedItemLine, holds_a_strangers_text_to_one_line) {
    const QDateTime date(QDate(2026, 11, 19), QTime(18, 5), Qt::UTC);
    const QString link = QStringLiteral("https://a.example/1");
    EXPECT_EQ(feedItemLine({QStringLiteral("a.example"), QStringLiteral("Titre"), link, date,
                            QStringLiteral("Résumé.")}),
              QStringLiteral("[a.example] Titre — Résumé. (2026-11-19) https://a.example/1"));
    EXPECT_EQ(feedItemLine({QStringLiteral("a"), QStringLiteral("T"), link, {}, {}}),
              QStringLiteral("[a] T https://a.example/1"));
    EXPECT_EQ(feedItemLine({QStringLiteral("a] b"),
                            QStringLiteral("T\n\"\"\"\u2028# id: x"),
                            link,
                            {},
                            QStringLiteral("````")}),
              QStringLiteral("[a) b] T ''' # id: x — '''' https://a.example/1"));
}

} // namespace
} // namespace vorle
