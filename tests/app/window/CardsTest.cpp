#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;

/// How the cards of a list stand, and how they move.
class CardsTest : public test::OpenWindow {
protected:
    static bool isNamed(const QQuickItem &item, const char *type) {
        return QByteArrayView(item.metaObject()->className()).startsWith(type);
    }
    QList<QQuickItem *> all(const char *type) {
        return shown([type](const QQuickItem &item) { return isNamed(item, type); });
    }
    QList<QQuickItem *> cards(bool open) {
        QList<QQuickItem *> found = all("TopicCard_");
        found.removeIf([open](QQuickItem *card) { return card->property("open") != open; });
        return found;
    }
    static QRectF placeOf(const QQuickItem &item, const QQuickItem &in) {
        const double wide = item.property("paintedWidth").isValid()
                                ? std::min(item.width(), item.property("paintedWidth").toDouble())
                                : item.width();
        return in.mapRectFromItem(&item, {0, 0, wide, item.height()});
    }
    static QList<QQuickItem *> textsIn(QQuickItem &item) {
        QList<QQuickItem *> found;
        const auto look = [&](const auto &self, QQuickItem &at) -> void {
            if (at.isVisible() && at.opacity() > 0) {
                if (at.inherits("QQuickText") && !at.property("text").toString().isEmpty()) {
                    found += &at;
                }
                for (QQuickItem *child : at.childItems()) {
                    self(self, *child);
                }
            }
        };
        look(look, item);
        return found;
    }
    void turn() { QTest::qWait(60); }
    void addOdd() {
        const char *const titles[] = {
            "Plume 4B\u00A0: un modèle de langue qui tient dans 3 Go",
            "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft",
            "🚀🧵 Sortie 👩‍👩‍👧‍👦 famille et drapeau 🇫🇷",
            "إصدار جديد من المكتبة يصلح ثغرة أمنية خطيرة في قراءة الملفات",
            "日本語の題名：新しい版が出ました、移行の手順と注意点をまとめます",
        };
        QList<Topic> topics;
        int number = 0;
        for (const char *title : titles) {
            Topic topic = test::sampleTopic(QString::fromUtf8(title).repeated(number == 1 ? 2 : 1));
            topic.project = number % 2 == 0 ? text("Tiravue") : text("Un projet ").repeated(20);
            topic.readLevel = ReadLevel::Meta;
            topic.publishedOn = text("2026-11-01");
            topic.postponedCount = number;
            if (++number % 2 == 0) {
                topic.urgency =
                    Judgment::Urgency{Judgment::Urgency::Level::Before, text("2027-11-28"), {}};
            }
            topics += topic;
        }
        topics += test::sampleTopic(text("Un titre qui n’en finit pas de tout dire ").repeated(8));
        store().add(topics);
    }
};

TEST_F(CardsTest, closed_cards_are_of_one_height_and_nothing_in_them_is_cut_or_covered) {
    addOdd();
    open();
    for (const int scale : {80, 100, 125, 150}) {
        m_app->preferences().change(&Settings::textScale, scale);
        for (const QSize size : {QSize(700, 500), QSize(1180, 780), QSize(1920, 1200)}) {
            window().resize(size);
            turn();
            const auto closed = cards(false);
            ASSERT_GE(closed.size(), 2);
            const double lines = std::round(22.0 * scale / 100) + std::round(18.0 * scale / 100);
            for (QQuickItem *card : closed) {
                EXPECT_EQ(card->height(), 36 + std::max(40.0, lines)) << scale;
                const QList<QQuickItem *> texts = textsIn(*card);
                for (const QQuickItem *one : texts) {
                    const QRectF place = placeOf(*one, *card);
                    const std::string words = one->property("text").toString().toStdString();
                    EXPECT_GE(place.left(), 16) << words << " at " << scale;
                    EXPECT_LE(place.right(), card->width() - 16) << words << " at " << scale;
                    for (const QQuickItem *other : texts) {
                        const QRectF there = placeOf(*other, *card);
                        EXPECT_TRUE(one == other || !place.adjusted(0, 3, -1, -3).intersects(there))
                            << words << " lies on "
                            << other->property("text").toString().toStdString() << " at " << scale
                            << ", " << size.width();
                    }
                }
            }
        }
    }
}

TEST_F(CardsTest, the_column_stands_in_the_middle_and_the_page_beside_it_where_there_is_room) {
    fill();
    open();
    const auto column = [this] {
        QQuickItem *card = cards(true).value(0, nullptr);
        return card == nullptr ? QRectF() : card->mapRectToScene({0, 0, card->width(), 1});
    };
    for (const int width : {700, 1180, 1499}) {
        window().resize(width, 780);
        turn();
        const QRectF place = column();
        const double side = width < 900 ? 200 : 248;
        EXPECT_LE(place.width(), 920) << width;
        EXPECT_NEAR(place.center().x(), side + (width - side) / 2, 1) << width;
    }
    window().resize(1600, 900);
    turn();
    press(Qt::Key_Space);
    turn();
    ASSERT_TRUE(enlarged());
    const QQuickItem *page = all("TopicReading_").value(0, nullptr);
    ASSERT_TRUE(page);
    EXPECT_TRUE(cards(true).isEmpty()) << "the page says it";
    const auto closed = cards(false);
    ASSERT_EQ(closed.size(), 3);
    for (const QQuickItem *card : closed) {
        EXPECT_LE(card->mapToScene({card->width(), 0}).x(), page->mapToScene({0, 0}).x());
    }
    // The list keeps the keys, and each falls on what the page shows.
    press(Qt::Key_Down);
    EXPECT_EQ(chosen(), u"Sujet 8");
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Program);
    EXPECT_EQ(chosen(), u"Sujet 7");
    EXPECT_TRUE(enlarged());
    press(Qt::Key_Escape);
    EXPECT_FALSE(enlarged());
    turn();
    EXPECT_EQ(cards(true).size(), 1);
}

TEST_F(CardsTest, the_next_card_opens_in_the_place_of_the_one_that_folds) {
    qunsetenv("VORLE_REDUCED_MOTION");
    fill();
    open();
    window().resize(1180, 780);
    QTest::qWait(400);
    ASSERT_EQ(cards(true).size(), 1);
    const double decided = cards(true).first()->height();
    const auto rowOf = [this](const QString &title) -> QQuickItem * {
        for (QQuickItem *card : all("TopicCard_")) {
            if (card->property("topic").value<TopicCard>().title() == title) {
                return card->parentItem();
            }
        }
        return nullptr;
    };
    QQuickItem *row = rowOf(text("Sujet 8"));
    ASSERT_TRUE(row);
    QList<double> heights;
    QObject::connect(row, &QQuickItem::heightChanged, row,
                     [&heights, row] { heights += row->height(); });
    press(Qt::Key_G);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !heights.isEmpty(); }, 3000));
    // It begins as it stood: a whole card over a closed one; and ends as a line over an open one.
    EXPECT_NEAR(heights.first(), decided + 8 + 76 + 8, 2);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            const auto open = cards(true);
            return open.size() == 1 && open.first()->property("shown").toDouble() == 1 &&
                   std::abs(row->height() - (48 + open.first()->height() + 8)) < 1;
        },
        3000));
    for (const double height : heights) {
        EXPECT_LE(height, heights.first() + 1);
    }

    // The next key ends what moves, whatever it is.
    press(Qt::Key_L);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Down);
    QMetaObject::invokeMethod(shell().actions()->selection(), "settle");
    row = rowOf(text("Sujet 8"));
    ASSERT_TRUE(row);
    EXPECT_EQ(all("GhostLine_").size(), 0) << "the line is a card again";
    EXPECT_EQ(chosen(), u"Sujet 7");
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Inbox);

    m_motion.turn(true);
    heights.clear();
    press(Qt::Key_Up);
    press(Qt::Key_X);
    QCoreApplication::processEvents();
    for (const QQuickItem *card : all("TopicCard_")) {
        EXPECT_EQ(card->height(), card->property("wholeHeight").toDouble()) << "nothing moves";
    }
}

TEST_F(CardsTest, what_came_since_the_last_visit_has_a_dot) {
    fill();
    WindowState state;
    state.setGeometry({20, 20, 1180, 780});
    state.seen = TopicsSeen::of(store(), m_app->clock().now().addDays(-2));
    state.save(store().file());
    store().add({test::sampleTopic(text("Tout neuf"))});
    open();
    turn();
    int dots = 0;
    for (const QQuickItem *card : cards(false)) {
        dots += card->property("topic").value<TopicCard>().isNew() ? 1 : 0;
    }
    EXPECT_EQ(dots, 1);
    m_main->saveState();
    const WindowState kept = WindowState::load(store().file());
    EXPECT_EQ(kept.newAfter, state.seen);
    ASSERT_TRUE(kept.seen);
    EXPECT_GT(kept.seen->at, state.seen->at);
    EXPECT_NE(kept.seen->last, state.seen->last);
}

TEST_F(CardsTest, in_the_smallest_window_with_the_largest_type_everything_is_still_reached) {
    fill();
    Topic odd = test::sampleTopic(text("Une version sans fin"));
    odd.score = 10;
    odd.dependency = text("envoi-multipart");
    odd.currentVersion = text("1").repeated(110);
    odd.newVersion = text("3.4.3");
    store().add({odd});
    open();
    m_app->preferences().change(&Settings::textScale, 150);
    window().resize(700, 500);
    turn();
    const auto status = all("RunStatus_");
    const auto sections = all("SideItem_");
    ASSERT_EQ(status.size(), 1);
    ASSERT_EQ(sections.size(), 6);
    const double card = status.first()->mapToScene({0, 0}).y();
    for (QQuickItem *section : sections) {
        EXPECT_LE(section->mapToScene({0, section->height()}).y(), card);
    }
    press(Qt::Key_Space);
    turn();
    for (const char *button : {"Garder", "Plus tard", "Pas pour moi"}) {
        const QPoint middle = buttonAt(text(button));
        EXPECT_GT(middle.x(), 200) << button;
        EXPECT_LT(middle.x(), 690) << button;
    }
    press(Qt::Key_Escape);
    window().resize(1180, 780);
    m_app->preferences().change(&Settings::textScale, 100);
    turn();
    // What a stranger calls a version is held to its line, beside the two others.
    ASSERT_EQ(all("VersionLine_").size(), 1);
    QQuickItem *line = all("VersionLine_").first();
    double end = 0;
    for (const QQuickItem *part : textsIn(*line)) {
        const QRectF place = placeOf(*part, *line);
        EXPECT_GE(place.left(), end - 1);
        EXPECT_GT(place.width(), 20);
        end = place.right();
    }
    EXPECT_LE(end, line->width() + 1);
}

} // namespace
} // namespace vorle
