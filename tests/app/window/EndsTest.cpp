#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

namespace vorle {
namespace {

using test::text;

/// The pages of sections without topics, and what stands there once all is sorted.
class EndsTest : public test::OpenWindow {
protected:
    QList<QQuickItem *> all(const char *type) {
        return shown([type](const QQuickItem &item) {
            return QByteArrayView(item.metaObject()->className()).startsWith(type);
        });
    }
    void fillMany(int count) {
        QList<Topic> topics;
        for (int i = 0; i < count; ++i) {
            Topic topic = test::sampleTopic(QStringLiteral("Sujet %1").arg(i));
            topic.score = i % 11;
            topics += topic;
        }
        store().add(topics);
        m_app->preferences().change(&Settings::lastSearch, m_app->clock().now());
    }
    void sortAll() {
        const Qt::Key keys[] = {Qt::Key_G, Qt::Key_L, Qt::Key_X};
        for (int i = 0; shell().inbox()->count() > 0; ++i) {
            ASSERT_LT(i, 200);
            press(keys[i % 3]);
        }
    }
    /// Every word and disc of the page is inside of it, and none lies on another.
    void expectWhole(QQuickItem &page, const std::string &where) {
        QList<std::pair<QRectF, QString>> places;
        const auto look = [&](const auto &self, QQuickItem &item) -> void {
            if (!item.isVisible() || item.opacity() == 0) {
                return;
            }
            const QByteArrayView type(item.metaObject()->className());
            const bool whole = item.inherits("vorle::Press") || type.startsWith("ScoreBadge_") ||
                               type.startsWith("Mascot_");
            if (whole || item.inherits("QQuickText")) {
                QRectF place = page.mapRectFromItem(&item, {0, 0, item.width(), item.height()});
                if (!whole && item.property("contentWidth").toDouble() > item.width() + 1) {
                    ADD_FAILURE() << item.property("text").toString().toStdString() << " is cut, "
                                  << where;
                }
                EXPECT_FALSE(item.property("truncated").toBool()) << where;
                places.append({place, item.property("text").toString()});
                EXPECT_TRUE(page.boundingRect().adjusted(-1, -1, 1, 1).contains(place))
                    << places.last().second.toStdString() << " " << place.y() << " + "
                    << place.height() << " of " << page.height() << ", " << where;
            }
            if (!whole) {
                for (QQuickItem *child : item.childItems()) {
                    self(self, *child);
                }
            }
        };
        look(look, page);
        EXPECT_GE(places.size(), 3) << where;
        for (qsizetype i = 0; i < places.size(); ++i) {
            for (qsizetype j = 0; j < i; ++j) {
                EXPECT_FALSE(places[i].first.adjusted(1, 1, -1, -1).intersects(places[j].first))
                    << places[i].second.toStdString() << " on " << places[j].second.toStdString()
                    << ", " << where;
            }
        }
    }
};

TEST_F(EndsTest, all_sorted_says_what_came_of_it_and_undo_goes_on) {
    fillMany(5);
    open();
    sortAll();
    QCoreApplication::processEvents();
    EXPECT_THAT(shownTexts(),
                testing::IsSupersetOf({text("Tous les sujets de la fouille sont triés"),
                                       text("5 sujets\u00A0: 2 gardés, 2 plus tard, 1 écarté"),
                                       text("Voir le programme"), text("annule le dernier tri")}));
    EXPECT_EQ(all("GhostLine_").size(), 1) << "the line that the last one left is there too";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(all("SortedBadges_").size(), 0);
    press(Qt::Key_X);
    EXPECT_THAT(shownTexts(),
                testing::Contains(text("5 sujets\u00A0: 2 gardés, 1 plus tard, 2 écartés")));
    click(text("annule le dernier tri"));
    EXPECT_EQ(shell().inbox()->count(), 1);
    press(Qt::Key_G);
    click(text("Voir la réserve"));
    EXPECT_EQ(shell().sections()->current(), Section::Reserve);
}

TEST_F(EndsTest, every_page_is_whole_in_every_window_and_size_of_type) {
    fillMany(40);
    open();
    sortAll();
    shell().actions()->forgetGhost();
    for (const bool dark : {false, true}) {
        m_app->preferences().change(&Settings::appearance,
                                    dark ? Appearance::Dark : Appearance::Light);
        for (const int scale : {80, 100, 130, 150}) {
            m_app->preferences().change(&Settings::textScale, scale);
            for (const QSize size : {QSize(700, 500), QSize(900, 600), QSize(1180, 780)}) {
                window().resize(size);
                QTest::qWait(30);
                const auto pages = all("TopicsEnd_");
                ASSERT_EQ(pages.size(), 1);
                const std::string where = std::to_string(scale) + " % at " +
                                          std::to_string(size.width()) + (dark ? ", dark" : "");
                expectWhole(*pages.first(), where);
                EXPECT_TRUE(scale > 130 || !all("SortedBadges_").isEmpty()) << where;
            }
        }
    }
    m_app->preferences().change(&Settings::textScale, 130);
    window().resize(700, 500);
    for (const TopicPtr &topic : store().topics()) {
        store().dismiss(topic->id);
    }
    for (const Section section : {Section::Program, Section::Reserve, Section::Library}) {
        shell().sections()->setCurrent(section);
        QTest::qWait(30);
        ASSERT_EQ(all("TopicsEnd_").size(), 1);
        expectWhole(*all("TopicsEnd_").first(), "an empty section");
        EXPECT_EQ(buttonAt(text("Fouiller maintenant")).x() > 0, true);
    }
}

TEST_F(EndsTest, what_goes_gives_the_keyboard_back_and_the_first_word_is_shown_whole) {
    fillMany(4);
    open();
    window().resize(1180, 780);
    sortAll();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !all("KeyHint_").isEmpty(); }));
    all("KeyHint_").first()->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    ASSERT_EQ(shell().inbox()->count(), 1) << "it takes the last decision back";
    const auto words = all("Word_");
    ASSERT_EQ(words.size(), 1);
    EXPECT_GT(words.first()->width(), 3 * words.first()->height()) << "it has its words";
    EXPECT_TRUE(window().activeFocusItem()->isVisible()) << "the card has the keyboard";
    press(Qt::Key_Return);
    EXPECT_EQ(shell().inbox()->count(), 1) << "the button has gone";
}

TEST_F(EndsTest, the_discs_land_within_a_quarter_of_a_second_and_the_mascot_dozes_unseen) {
    qunsetenv("VORLE_REDUCED_MOTION");
    m_app.variables.unset("VORLE_REDUCED_MOTION");
    fillMany(24);
    open();
    window().resize(1180, 780);
    while (shell().inbox()->count() > 1) {
        press(Qt::Key_G);
    }
    QTest::qWait(400);
    QQuickItem *board = nullptr; // not seen yet
    const auto look = [&](const auto &self, QQuickItem &item) -> void {
        if (QByteArrayView(item.metaObject()->className()).startsWith("SortedBadges_")) {
            board = &item;
        }
        for (QQuickItem *child : item.childItems()) {
            self(self, *child);
        }
    };
    look(look, *window().contentItem());
    ASSERT_TRUE(board);
    QSignalSpy moves(board, SIGNAL(clockChanged()));
    press(Qt::Key_X);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return moves.count() > 1 && board->property("clock").toDouble() >= 250; }, 5000));
    // Whatever the machine was doing: when the last of them is to have landed.
    const int count = board->property("count").toInt();
    EXPECT_GT(count, 10);
    EXPECT_LT(count, 24) << "what fits a line";
    EXPECT_GT(board->property("step").toDouble(), 0);
    EXPECT_LE(60 + 70 + (count - 1) * board->property("step").toDouble(), 250);

    QQuickItem *face = nullptr;
    for (QQuickItem *each : all("Mascot_")) {
        face = each->property("alive").toBool() ? each : face;
    }
    ASSERT_TRUE(face);
    EXPECT_TRUE(face->property("open").toBool());
    QTest::mouseMove(&window(), buttonAt(text("Voir la réserve")));
    QCoreApplication::processEvents();
    EXPECT_GT(face->property("look").toPointF().y(), 0.5);
    m_motion.turn(true);
    EXPECT_FALSE(face->property("stirs").toBool());
    m_motion.turn(false);
    EXPECT_TRUE(face->property("stirs").toBool());
    press(Qt::Key_K, Qt::ControlModifier); // a panel lies over it
    EXPECT_FALSE(face->property("stirs").toBool());
    press(Qt::Key_Escape);
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(face->property("stirs").toBool());
}

} // namespace
} // namespace vorle
