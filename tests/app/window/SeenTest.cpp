#include "tests/app/window/OpenWindow.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

/// What keys and buttons decide while the list moves under the hand.
class SeenTest : public test::OpenWindow {
protected:
    static QList<Topic> topics(const QString &name, int count, int score) {
        QList<Topic> made;
        for (int i = 0; i < count; ++i) {
            Topic topic = test::sampleTopic(QStringLiteral("%1 %2").arg(name).arg(i));
            topic.score = score;
            topic.tldr = QStringLiteral("Ce que la page dit, en une phrase.");
            topic.why = QStringLiteral("Tu t’en sers chaque jour.");
            topic.firstStep = QStringLiteral("Lis la page.");
            topic.readLevel = ReadLevel::Full;
            made += topic;
        }
        return made;
    }
    void openSmall() {
        store().add(topics(QStringLiteral("Sujet"), 30, 7));
        open();
        window().resize(860, 560);
        turn();
    }
    void turn() { QTest::qWait(60); }

    static bool isNamed(const QQuickItem &item, const char *type) {
        return QByteArrayView(item.metaObject()->className()).startsWith(type);
    }
    QQuickItem *openCard() {
        const auto cards = shown([](const QQuickItem &item) {
            return isNamed(item, "TopicCard_") && item.property("open").toBool();
        });
        return cards.size() == 1 ? cards.first() : nullptr;
    }
    static QQuickItem &listOf(QQuickItem &item) {
        QQuickItem *above = &item;
        while (!above->inherits("QQuickListView")) {
            above = above->parentItem();
        }
        return *above;
    }
    /// Whether the chosen topic's card stands open and wholly in view.
    bool seen() {
        QQuickItem *card = openCard();
        const TopicSelection &selection = *shell().actions()->selection();
        if (card == nullptr || selection.shownId() != selection.currentId()) {
            return false;
        }
        const QRectF place = card->mapRectToScene({0, 0, card->width(), card->height()});
        const QQuickItem &list = listOf(*card);
        const QRectF view = list.mapRectToScene({0, 0, list.width(), list.height()});
        return place.top() >= view.top() - 1 && place.bottom() <= view.bottom() + 1;
    }
    double cardTop() {
        QQuickItem *card = openCard();
        return card == nullptr ? -1 : card->mapToScene({0, 0}).y();
    }
    /// As two fingers do: it scrolls by so many pixels.
    void scroll(int pixels) {
        const QPointF where(600, 380);
        const auto send = [&](int by, Qt::ScrollPhase phase) {
            QWheelEvent event(where, where, {0, by}, {0, by}, Qt::NoButton, Qt::NoModifier, phase,
                              false, Qt::MouseEventSynthesizedBySystem);
            event.setTimestamp(m_time += 16);
            QCoreApplication::sendEvent(&window(), &event);
            QTest::qWait(16);
        };
        send(0, Qt::ScrollBegin);
        // In several steps: the first one only begins the movement.
        const int step = std::min(100, std::abs(pixels) / 4);
        for (int left = std::abs(pixels) + step; left > 0; left -= step) {
            send(pixels > 0 ? step : -step, Qt::ScrollUpdate);
        }
        send(0, Qt::ScrollEnd);
        QTest::qWait(400);
    }
    /// Drags the bar beside the list by so many pixels; null where none can be seen.
    QQuickItem *drag(int pixels) {
        QList<QQuickItem *> bars;
        if (!QTest::qWaitFor([&] { // it is read once the list stands
                bars =
                    shown([](const QQuickItem &item) { return item.inherits("QQuickScrollBar"); });
                return !bars.isEmpty();
            })) {
            return nullptr;
        }
        QQuickItem *bar = bars.first();
        const double handle = (bar->property("visualPosition").toDouble() +
                               bar->property("visualSize").toDouble() / 2) *
                              bar->height();
        const QPoint at = bar->mapToScene({bar->width() / 2, handle}).toPoint();
        QTest::mousePress(&window(), Qt::LeftButton, {}, at);
        for (int step = 1; step <= 8; ++step) {
            QTest::mouseMove(&window(), at + QPoint(0, pixels * step / 8), 16);
        }
        QTest::mouseRelease(&window(), Qt::LeftButton, {}, at + QPoint(0, pixels));
        QTest::qWait(400);
        return bar;
    }
    qsizetype waiting() { return shell().inbox()->count(); }

private:
    quint64 m_time = 1000;
};

TEST_F(SeenTest, the_open_card_stays_in_view_whatever_the_list_does) {
    openSmall();
    const auto stays = [this] {
        turn();
        return QTest::qWaitFor([this] { return seen(); }, 3000);
    };
    EXPECT_TRUE(stays());
    for (int i = 0; i < 7; ++i) {
        press(Qt::Key_Down);
    }
    EXPECT_TRUE(stays());
    const QString topic = chosen();

    const double before = cardTop();
    store().add(topics(QStringLiteral("Neuf"), 12, 9));
    EXPECT_TRUE(stays()) << "a run lands above it";
    EXPECT_EQ(chosen(), topic);
    EXPECT_NEAR(cardTop(), before, 2) << "nor does it move";
    QList<Topic> mixed;
    for (const int score : {10, 8, 7, 5, 2}) {
        mixed += topics(QStringLiteral("Mêlé %1").arg(score), 6, score);
    }
    store().add(mixed);
    EXPECT_TRUE(stays()) << "and all around it";
    EXPECT_NEAR(cardTop(), before, 2);

    shell().correct(window().property("chosenId").toString(), 1, {}, {});
    EXPECT_TRUE(stays()) << "to the last tier";
    shell().correct(window().property("chosenId").toString(), 10, {}, {});
    EXPECT_TRUE(stays()) << "to the first";
    shell().uncorrect(window().property("chosenId").toString());
    EXPECT_TRUE(stays());

    for (const QSize size : {QSize(1180, 780), QSize(860, 560), QSize(1500, 600)}) {
        window().resize(size);
        EXPECT_TRUE(stays()) << size.width() << " by " << size.height();
    }
    press(Qt::Key_Space);
    store().add(topics(QStringLiteral("Encore"), 12, 9));
    turn();
    press(Qt::Key_Escape);
    EXPECT_TRUE(stays()) << "the page closes over what came meanwhile";
    EXPECT_EQ(chosen(), topic);

    press(Qt::Key_End);
    EXPECT_TRUE(stays());
    press(Qt::Key_X);
    EXPECT_TRUE(stays());
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Home);
    EXPECT_TRUE(stays());
}

TEST_F(SeenTest, what_is_not_in_view_is_shown_and_not_decided) {
    openSmall();
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    press(Qt::Key_Down);
    const QString topic = chosen();
    for (const Qt::Key key : {Qt::Key_G, Qt::Key_L, Qt::Key_X}) {
        scroll(-1500);
        ASSERT_FALSE(seen()) << "scrolled away";
        const auto count = waiting();
        press(key);
        EXPECT_EQ(waiting(), count) << key;
        EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000));
        EXPECT_EQ(chosen(), topic);
    }
    // A list that changes meanwhile is left where one reads it.
    scroll(-1500);
    store().add(topics(QStringLiteral("Neuf"), 3, 9));
    turn();
    EXPECT_FALSE(seen());
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(topic), TopicStatus::Inbox);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000));

    // Its buttons neither: half out of the view they bring it back.
    const QQuickItem &list = listOf(*openCard());
    scroll(-static_cast<int>(cardTop() - list.mapToScene({0, 0}).y() + 40));
    ASSERT_FALSE(seen());
    ASSERT_GE(buttonAt(QStringLiteral("Plus tard")).y(), 0);
    click(QStringLiteral("Plus tard"));
    EXPECT_EQ(statusOf(topic), TopicStatus::Inbox);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000));
    click(QStringLiteral("Plus tard"));
    EXPECT_EQ(statusOf(topic), TopicStatus::Reserve);
}

TEST_F(SeenTest, a_bar_that_is_dragged_scrolls_by_hand_too) {
    openSmall();
    const QString topic = chosen();
    ASSERT_NE(drag(200), nullptr);
    EXPECT_FALSE(seen());
    store().add(topics(QStringLiteral("Neuf"), 3, 5)); // what then changes brings nothing back
    QTest::qWait(400);
    EXPECT_FALSE(seen());
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(topic), TopicStatus::Inbox);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000));
}

TEST_F(SeenTest, the_smallest_window_shows_every_button_of_the_open_card) {
    const auto words = [](const char *text) { return QString::fromUtf8(text).repeated(12); };
    const std::pair<TopicStatus, int> sections[] = {{TopicStatus::Inbox, 3},
                                                    {TopicStatus::Program, 4},
                                                    {TopicStatus::Reserve, 5},
                                                    {TopicStatus::Done, 5}};
    for (const auto &[status, buttons] : sections) {
        for (Topic topic : topics(QStringLiteral("Sujet"), 3, 8)) {
            topic.status = status;
            topic.title = words("un titre qui dit tout ");
            topic.tldr = words("l’essentiel en une phrase ");
            topic.why = words("tu t’en sers ");
            topic.firstStep = words("lis la page ");
            topic.dependency = QStringLiteral("undici");
            topic.newVersion = QStringLiteral("7.18.1");
            topic.doneAt = topic.foundAt;
            store().add({topic});
        }
    }
    open();
    window().resize(window().minimumSize());
    int key = Qt::Key_1;
    for (const auto &[status, buttons] : sections) {
        press(static_cast<Qt::Key>(key++), Qt::ControlModifier);
        ASSERT_TRUE(QTest::qWaitFor([this] { return openCard() != nullptr; }, 3000)) << key;
        turn();
        QQuickItem *card = openCard();
        const QQuickItem &list = listOf(*card);
        EXPECT_LE(card->height(), list.height()) << key;
        EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000)) << key;
        const double end = list.mapToScene({0, list.height()}).y();
        const auto found = shown([&](const QQuickItem &item) {
            return item.inherits("vorle::Press") && card->isAncestorOf(&item);
        });
        EXPECT_EQ(found.size(), buttons) << key;
        for (const QQuickItem *button : found) {
            const QRectF place = button->mapRectToScene({0, 0, button->width(), button->height()});
            EXPECT_LE(place.bottom(), end) << key;
            EXPECT_EQ(place.top(), found.first()->mapToScene({0, 0}).y()) << "in one row";
            EXPECT_LE(place.right(), card->mapToScene({card->width(), 0}).x()) << key;
        }
    }
}

TEST_F(SeenTest, a_quick_hand_is_followed_while_the_cards_still_move) {
    qunsetenv("VORLE_REDUCED_MOTION");
    openSmall();
    const auto count = waiting();
    for (int i = 0; i < 8; ++i) {
        press(Qt::Key_Down);
        press(i % 2 == 0 ? Qt::Key_G : Qt::Key_X);
    }
    EXPECT_EQ(waiting(), count - 8);
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(&window(), Qt::Key_L); // not one frame between them
    }
    EXPECT_EQ(waiting(), count - 13);
    EXPECT_TRUE(QTest::qWaitFor([this] { return seen(); }, 3000));
}

TEST_F(SeenTest, a_card_higher_than_the_view_can_still_be_decided) {
    Topic tall = topics(QStringLiteral("Long"), 1, 9).first();
    const auto many = [](const char *words) { return QString::fromUtf8(words).repeated(40); };
    tall.title = many("un titre qui dit tout ");
    tall.tldr = many("l’essentiel en une phrase ");
    tall.why = many("tu t’en sers ");
    tall.firstStep = many("lis la page ");
    store().add({tall});
    openSmall();
    ASSERT_EQ(chosen(), tall.title);
    scroll(-1500);
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(tall.title), TopicStatus::Inbox);
    turn();
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(tall.title), TopicStatus::Program);
}

TEST_F(SeenTest, a_held_key_decides_once_and_separate_presses_each) {
    openSmall();
    const auto send = [this](QEvent::Type type, quint64 time, Qt::Key key = Qt::Key_G,
                             Qt::KeyboardModifiers modifiers = {}) {
        QKeyEvent event(type, key, modifiers, 42 /* its place on the keyboard */, 0, 0);
        event.setTimestamp(time);
        QCoreApplication::sendEvent(&window(), &event);
        QCoreApplication::processEvents();
    };
    const auto hold = [&](quint64 from, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        send(QEvent::KeyPress, from, key, modifiers);
        for (quint64 time = from + 660; time < from + 1300; time += 40) {
            // As X11 repeats, where Qt has not seen that it does.
            send(QEvent::KeyRelease, time, key, modifiers);
            send(QEvent::KeyPress, time, key, modifiers);
        }
        send(QEvent::KeyRelease, from + 1310, key, modifiers);
    };
    hold(5000, Qt::Key_G);
    EXPECT_EQ(waiting(), 29);
    // Let go and pressed again.
    for (const quint64 time : {7000, 7100, 7200}) {
        send(QEvent::KeyPress, time);
        send(QEvent::KeyRelease, time + 50);
    }
    EXPECT_EQ(waiting(), 26);
    hold(8000, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(waiting(), 27);
    // Posted without a time, as while a screen reader listens: each is a press.
    for (int i = 0; i < 3; ++i) {
        send(QEvent::KeyPress, 0);
        send(QEvent::KeyRelease, 0);
    }
    EXPECT_EQ(waiting(), 24);
    // One moves on while it is held.
    hold(9000, Qt::Key_Down);
    EXPECT_GT(shell().actions()->selection()->currentRow(), 10);
}

} // namespace
} // namespace vorle
