// What those hear who do not look, what is shown of a topic and can be taken along, and how much
// moves.

#include "app/window/Announcer.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSignalSpy>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::sampleTopic;
using testing::Contains;
using testing::Not;

using test::text;

class ListenersTest : public test::OpenWindow {
protected:
    ListenersTest() { m_app.variables.unset("VORLE_REDUCED_MOTION"); }

    void add(int score, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = sampleTopic(QStringLiteral("Sujet %1").arg(score), status);
        topic.score = score;
        topic.readLevel = ReadLevel::Full;
        store().add({topic});
    }
    static bool isWithin(const QQuickItem *item, QByteArrayView type) {
        while (item != nullptr &&
               !QByteArrayView(item->metaObject()->className()).startsWith(type)) {
            item = item->parentItem();
        }
        return item != nullptr;
    }
    /// The last item of that text, within one of that type where it is named.
    const QQuickItem *itemSaying(const QString &words, QByteArrayView type = {}) {
        const auto items = shown([&](const QQuickItem &item) {
            return item.property("text").toString() == words &&
                   (type.isEmpty() || isWithin(&item, type));
        });
        return items.isEmpty() ? nullptr : items.last();
    }
    /// Takes down what is said, and the name of what is pointed at.
    void listen() {
        for (Announcer *announcer : window().findChildren<Announcer *>()) {
            QObject::connect(announcer, &Announcer::wordsChanged, announcer, [this, announcer] {
                heard += QStringLiteral("said: ") + announcer->words();
            });
            QObject::connect(announcer, &Announcer::pointedAt, announcer, [this](QQuickItem *at) {
                QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(at);
                ASSERT_NE(interface, nullptr);
                heard += QStringLiteral("here: ") + interface->text(QAccessible::Name);
            });
        }
    }
    bool hears(const char *words) {
        return QTest::qWaitFor([&] { return heard.contains(text(words)); });
    }
    static void name(QAccessibleInterface *item, QStringList &names) {
        if (item == nullptr || item->state().invisible) {
            return;
        }
        names += item->text(QAccessible::Name);
        for (int i = 0; i < item->childCount(); ++i) {
            name(item->child(i), names);
        }
    }
    QStringList named() {
        QStringList names;
        name(QAccessible::queryAccessibleInterface(&window()), names);
        return names;
    }

    QStringList heard;
};

TEST_F(ListenersTest, moves_decisions_and_undo_are_told_to_who_listens) {
    add(9);
    add(8);
    add(7);
    open();
    listen();
    press(Qt::Key_Down);
    EXPECT_TRUE(hears("here: Note 8 sur 10. Sujet 8")) << heard.join(u'\n').toStdString();
    press(Qt::Key_G);
    EXPECT_TRUE(hears("here: Note 7 sur 10. Sujet 7"));
    EXPECT_TRUE(hears("said: Gardé. Suivant\u00A0: Sujet 7. Note 7 sur 10"));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return !heard.filter(text("said: «\u202FSujet 8\u202F»")).isEmpty();
    })) << heard.join(u'\n').toStdString();
    heard.clear();
    press(Qt::Key_Space);
    EXPECT_TRUE(hears("here: Sujet 8")) << "the page";
    // A panel, and back from it.
    press(Qt::Key_Escape);
    heard.clear();
    press(Qt::Key_Question, Qt::ShiftModifier);
    press(Qt::Key_Escape);
    EXPECT_TRUE(hears("here: Note 8 sur 10. Sujet 8"));

    // Beside its name: its place, and what it says, worked out once somebody listens.
    const auto told = [this] {
        const auto chosen =
            shown([](const QQuickItem &item) { return item.property("outlined").toBool(); });
        return chosen.isEmpty() ? QString()
                                : QAccessible::queryAccessibleInterface(chosen.first())
                                      ->text(QAccessible::Description);
    };
    QAccessible::setActive(true);
    const QString word = store().topic(QUuid::fromString(shell().inbox()->topicIdAt(1)))->summary;
    EXPECT_TRUE(told().startsWith(text("2 sur 3. "))) << told().toStdString();
    EXPECT_TRUE(told().contains(word)) << told().toStdString();
    press(Qt::Key_Up);
    press(Qt::Key_G);
    EXPECT_TRUE(QTest::qWaitFor([&] { return told().startsWith(text("1 sur 2. ")); }))
        << told().toStdString();
}

TEST_F(ListenersTest, what_lies_behind_a_panel_is_not_come_upon_and_looks_as_ever) {
    add(9);
    open();
    QAccessible::setActive(true);
    const QStringList before = named();
    EXPECT_THAT(before, Contains(text("Garder")));
    EXPECT_THAT(before, Contains(text("Prochaine fouille")));
    press(Qt::Key_Question, Qt::ShiftModifier);
    EXPECT_THAT(named(), Not(Contains(text("Garder"))));
    EXPECT_THAT(named(), Not(Contains(text("Prochaine fouille"))));
    EXPECT_TRUE(QTest::qWaitFor([&] { return named().contains(text("Raccourcis clavier")); }))
        << "once it has come";
    for (const QQuickItem *item :
         shown([](const QQuickItem &each) { return each.inherits("vorle::Press"); })) {
        EXPECT_EQ(item->opacity(), 1) << item->property("text").toString().toStdString();
    }
    press(Qt::Key_Escape);
    QTest::qWait(200);
    EXPECT_EQ(named(), before);
}

TEST_F(ListenersTest, what_lies_behind_the_page_is_not_come_upon) {
    add(9);
    add(8);
    open();
    QAccessible::setActive(true);
    const QStringList before = named();
    EXPECT_THAT(before, Contains(text("Note 8 sur 10. Sujet 8")));
    EXPECT_THAT(before, Contains(text("Rechercher")));
    press(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([&] { return named().contains(text("Réduire")); }));
    EXPECT_THAT(named(), Not(Contains(text("Note 8 sur 10. Sujet 8"))));
    EXPECT_THAT(named(), Not(Contains(text("Rechercher"))));
    press(Qt::Key_Escape);
    QTest::qWait(200);
    EXPECT_EQ(named(), before);
}

TEST_F(ListenersTest, numbers_are_grouped_wherever_they_are_told) {
    QList<Topic> many;
    for (int i = 0; i < 1430; ++i) {
        many += sampleTopic(text("Sujet"));
    }
    m_app->store().add(many);
    open();
    QAccessible::setActive(true);
    EXPECT_THAT(named(), Contains(text("À trier, 1\u202F430")));
    press(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([&] { return named().contains(text("Réduire")); }));
    EXPECT_THAT(named(), Contains(text("Sujet 1 sur 1\u202F430")));
    EXPECT_THAT(shownTexts(), Contains(text("1 / 1\u202F430")));
}

TEST_F(ListenersTest, each_setting_is_one_stop_and_the_arrows_choose) {
    open();
    press(Qt::Key_Comma, Qt::ControlModifier);
    const auto focused = [&] {
        const QQuickItem *item = window().activeFocusItem();
        return item != nullptr ? item->property("modelData").toString() : QString();
    };
    EXPECT_EQ(focused(), text("Général"));
    press(Qt::Key_Right); // into the page
    EXPECT_EQ(focused(), text("Automatique"));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(focused(), text("Sombre"));
    EXPECT_EQ(m_shell->settings()->appearance(), text("Sombre"));
    press(Qt::Key_Right);
    press(Qt::Key_Left);
    EXPECT_EQ(m_shell->settings()->appearance(), text("Sombre")) << "round by both ends";
    QStringList stops;
    for (int i = 0; i < 5; ++i) {
        stops += focused();
        press(Qt::Key_Tab);
    }
    const QString aSwitch; // to open with the session
    EXPECT_EQ(stops, QStringList({text("Sombre"), text("Braise"), text("100\u202F%"), aSwitch,
                                  text("Terminal")}));
    EXPECT_THAT(shownTexts(), Not(Contains(text("iTerm")))) << "there is none here";
}

TEST_F(ListenersTest, a_page_shows_all_that_is_known_cleanly_and_lets_its_words_be_taken) {
    Topic topic = sampleTopic(text("Faille\u202E dans undici"));
    topic.summary = text("Vraiment grave ; à lire.");
    topic.kind = text("podcast");
    topic.dependency = text("undici");
    topic.currentVersion = text("7.12.0");
    topic.newVersion = text("7.18.1");
    topic.publishedOn = text("2025-11-02");
    topic.postponedCount = 2;
    topic.seenText = text("page\u202E lue").toUtf8();
    topic.urgency = Judgment::Urgency{Judgment::Urgency::Level::Now, {}, text("la faille sert.")};
    topic.brief.emplace();
    topic.brief->essentials = {{text("Titre\u2066"), text("Corps\u202E")}};
    topic.brief->details = {{codePartTitle(), text("a = b ; c")}};
    m_app->store().add({topic});
    add(1);
    open();
    press(Qt::Key_Space);
    const QString all = shownTexts().join(u'\n');
    for (const char *words :
         {"Faille dans undici", "undici 7.12.0 → 7.18.1", "Podcast", "2 novembre 2025",
          "reporté 2 fois", "À faire maintenant. La faille sert.", "page lue", "Corps"}) {
        EXPECT_TRUE(all.contains(text(words))) << words << " in\n" << all.toStdString();
    }
    for (const QString &words : shownTexts()) {
        EXPECT_EQ(words.indexOf(QChar(0x202E)) + words.indexOf(QChar(0x2066)), -2)
            << words.toStdString();
    }
    const QQuickItem *code = itemSaying(text("a = b ; c"));
    ASSERT_NE(code, nullptr) << "code keeps its blanks";
    EXPECT_EQ(code->property("font").value<QFont>().family(), text("monospace"));

    // Marked with the mouse, copied with the keyboard, and the keys still decide.
    const std::pair<const char *, const char *> texts[] = {
        {"Faille dans undici", "Faille"},
        {"undici 7.12.0 → 7.18.1", "undici"},
        {"À faire maintenant. La faille sert.", "À"},
        {"Effort", "Effort"},
        {"page lue", "page"},
    };
    const auto bring = [&](const QQuickItem &item) {
        for (int i = 0; i < 20 && item.mapToScene({0, 30}).y() > window().height() - 100; ++i) {
            press(Qt::Key_PageDown);
        }
    };
    for (const auto &[words, first] : texts) {
        if (text(words) == u"Effort") { // folded until it is asked for
            const QQuickItem *line = itemSaying(text("D’où vient la note"), "TopicReading_");
            ASSERT_NE(line, nullptr);
            bring(*line);
            QTest::mouseClick(&window(), Qt::LeftButton, {},
                              line->mapToScene(QPointF(4, 12)).toPoint());
            QCoreApplication::processEvents();
        }
        const QQuickItem *item = itemSaying(text(words), "TopicReading_");
        ASSERT_NE(item, nullptr) << words;
        bring(*item);
        const QPoint at = item->mapToScene(QPointF(4, 12)).toPoint();
        QTest::mouseDClick(&window(), Qt::LeftButton, {}, at);
        QCoreApplication::processEvents();
        press(Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(QGuiApplication::clipboard()->text(), text(first));
    }
    press(Qt::Key_G);
    EXPECT_EQ(m_app->store().topics(TopicStatus::Program).size(), 1);
}

TEST_F(ListenersTest, a_link_that_could_not_be_judged_says_why_and_can_be_tried_again) {
    open(); // no agent is installed here
    EXPECT_EQ(m_shell->links()->add(text("http://127.0.0.1:9/page"), {}), QString());
    const auto problem = [&] { return m_shell->inbox()->card(0).captureProblem(); };
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return !problem().isEmpty() && itemSaying(problem()) != nullptr;
    })) << shownTexts().join(u'\n').toStdString();
    // Nothing is being read: it is not said to be, on its card or on its page.
    for (const char *place : {"TopicCard_", "TopicReading_"}) {
        EXPECT_NE(itemSaying(problem(), place), nullptr) << place;
        EXPECT_NE(itemSaying(text("Réessayer"), place), nullptr) << place;
        press(Qt::Key_G);
        EXPECT_TRUE(shownTexts().filter(text("Je lis encore")).isEmpty());
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return !shownTexts().filter(text("Je n’ai pas encore pu juger")).isEmpty(); }));
        press(Qt::Key_Space);
    }
    // Taking back what has nothing to do with it asks nothing of the agent again.
    const QSignalSpy asked(&m_app->capture(), &LinkCapture::stateChanged);
    add(1);
    press(Qt::Key_End);
    press(Qt::Key_G);
    ASSERT_EQ(m_app->store().topics(TopicStatus::Program).size(), 1);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(m_app->store().topics(TopicStatus::Program).isEmpty());
    EXPECT_EQ(asked.count(), 0);
    press(Qt::Key_Home);
    const QSignalSpy told(m_shell->inbox(), &TopicListModel::dataChanged);
    ASSERT_TRUE(QTest::qWaitFor([&] {
        return itemSaying(text("Réessayer"), "TopicCard_") != nullptr;
    })) << "once the card has opened";
    // The card's own button: the banner over the list has one of that name too.
    const QQuickItem *again = itemSaying(text("Réessayer"), "TopicCard_");
    while (again != nullptr && !again->inherits("vorle::Press")) {
        again = again->parentItem();
    }
    ASSERT_NE(again, nullptr);
    QMetaObject::invokeMethod(const_cast<QQuickItem *>(again), "clicked");
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.count() >= 1 && !problem().isEmpty(); }))
        << "tried, and told again";
}

TEST_F(ListenersTest, things_move_unless_the_system_asks_for_less) {
    open();
    QQmlComponent component(qmlEngine(&window()));
    component.setData("import QtQuick\nimport Vorle\nQtObject { property var theme: Theme }", {});
    const std::unique_ptr<QObject> holder(component.create());
    ASSERT_TRUE(holder);
    const auto *theme = holder->property("theme").value<QObject *>();
    ASSERT_NE(theme, nullptr);
    EXPECT_EQ(theme->property("calm").toInt(), 200);
    m_motion.turn(true);
    EXPECT_EQ(theme->property("calm").toInt(), 0);
    m_motion.turn(false);
    EXPECT_EQ(theme->property("quick").toInt(), 120);
}

TEST_F(ListenersTest, the_verdict_given_is_marked) {
    Topic topic = sampleTopic(text("Terminé"), TopicStatus::Done);
    topic.worth = Worth::Useful;
    m_app->store().add({topic});
    open();
    press(Qt::Key_4, Qt::ControlModifier);
    QStringList given;
    for (const QQuickItem *item :
         shown([](const QQuickItem &each) { return each.property("given").toBool(); })) {
        given += item->property("text").toString();
    }
    EXPECT_EQ(given, QStringList{text("Utile")});
}

} // namespace
} // namespace vorle
