#include "briefs/BriefWriter.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;
using testing::Contains;
using testing::Not;

/// The reading page: what the hand reaches in it, and what is decided there.
class ReadingTest : public test::OpenWindow {
protected:
    QString focused() {
        const QQuickItem *item = window().activeFocusItem();
        return item != nullptr ? item->property("text").toString() : QString();
    }
    /// Goes on by Tab until the button has the keyboard.
    bool tabTo(const QString &button) {
        for (int i = 0; i < 60; ++i) {
            press(Qt::Key_Tab);
            if (focused() == button) {
                return true;
            }
        }
        return false;
    }
    /// How far the page, or the list, that can be seen is scrolled.
    double scrolled(const char *kind) {
        const auto all = shown([&](const QQuickItem &item) {
            const QByteArray name(item.metaObject()->className()); // one with a property of its own
            return name == kind || name.startsWith(QByteArray(kind) + "_QML");
        });
        return all.isEmpty() ? -1
                             : all.last()->property("contentY").toDouble() -
                                   all.last()->property("originY").toDouble();
    }
};

TEST_F(ReadingTest, the_page_is_left_and_turned_by_hand_and_by_key) {
    fill();
    open();
    window().resize(860, 560);
    press(Qt::Key_Space);
    ASSERT_TRUE(enlarged());
    EXPECT_THAT(shownTexts(), Contains(text("1 / 3")));
    click(text("›"));
    EXPECT_EQ(chosen(), u"Sujet 8");
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(chosen(), u"Sujet 7");
    EXPECT_THAT(shownTexts(), Contains(text("3 / 3")));
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(chosen(), u"Sujet 8");
    EXPECT_EQ(shell().inbox()->count(), 3) << "nothing was decided on the way";

    // Every button of the foot is reached, and the page's own keys still work from there.
    for (const char *button : {"Garder", "Plus tard", "Pas pour moi"}) {
        EXPECT_TRUE(tabTo(text(button))) << button;
    }
    press(Qt::Key_End);
    EXPECT_GT(scrolled("QQuickFlickable"), 100);
    press(Qt::Key_PageUp);
    press(Qt::Key_Home);
    EXPECT_EQ(scrolled("QQuickFlickable"), 0);

    // Decided there, it says where it went.
    press(Qt::Key_L);
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Reserve);
    EXPECT_TRUE(enlarged());
    EXPECT_THAT(shownTexts(), Contains(text("Plus tard · Réserve\u00A0: Sujet 8")));
    click(text("‹ À trier"));
    EXPECT_FALSE(enlarged());
}

TEST_F(ReadingTest, the_next_topic_and_the_source_are_a_key_away_and_nothing_is_decided) {
    fill();
    open();
    press(Qt::Key_Space);
    const struct {
        Qt::Key key;
        QString then;
    } turns[] = {{Qt::Key_J, text("Sujet 8")},   {Qt::Key_Down, text("Sujet 7")},
                 {Qt::Key_J, text("Sujet 7")},   {Qt::Key_K, text("Sujet 8")},
                 {Qt::Key_Up, text("Sujet 9")},  {Qt::Key_K, text("Sujet 9")},
                 {Qt::Key_Down, text("Sujet 8")}};
    for (const auto &[key, then] : turns) {
        press(key);
        EXPECT_EQ(chosen(), then);
        EXPECT_TRUE(enlarged());
    }
    EXPECT_EQ(shell().inbox()->count(), 3);

    const QString link = store()
                             .topic(QUuid::fromString(window().property("chosenId").toString()))
                             ->mainSource()
                             ->url;
    for (const Qt::Key key : {Qt::Key_O, Qt::Key_Return, Qt::Key_Enter}) {
        m_links.opened.clear();
        press(key);
        EXPECT_EQ(m_links.opened, QList<QUrl>{QUrl(link)}) << key;
    }
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(m_pasteboard.text(), link);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(text("Lien copié.")); }, 3000));

    // Words that are marked are what is copied; the pasteboard of the system has those.
    m_pasteboard.replace({});
    const auto texts = shown([](const QQuickItem &item) {
        return item.inherits("QQuickTextEdit") &&
               item.property("text").toString() == text("Raison 8");
    });
    ASSERT_FALSE(texts.isEmpty());
    QMetaObject::invokeMethod(texts.first(), "selectAll");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(m_pasteboard.text(), QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text("Raison 8"));

    // A button that has the keyboard takes Return; a note that is written takes letters.
    ASSERT_TRUE(tabTo(text("D’où vient la note")));
    m_links.opened.clear();
    press(Qt::Key_Return);
    EXPECT_TRUE(m_links.opened.isEmpty());
    for (int i = 0; i < 20 && !window().activeFocusItem()->inherits("QQuickTextArea"); ++i) {
        press(Qt::Key_Tab);
    }
    type(text("jok"));
    EXPECT_EQ(chosen(), text("Sujet 8"));
    EXPECT_TRUE(m_links.opened.isEmpty());
}

TEST_F(ReadingTest, a_note_undone_leaves_its_field_too) {
    fill();
    open();
    const QString id = window().property("chosenId").toString();
    window().resize(860, 560);
    press(Qt::Key_Space);
    press(Qt::Key_End);
    const double place = scrolled("QQuickFlickable");
    EXPECT_GT(place, 100);
    shell().decisions()->setNote(id, text("le soir"));
    EXPECT_THAT(shownTexts(), Contains(text("le soir")));
    EXPECT_EQ(scrolled("QQuickFlickable"), place) << "it is the same page still";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(shownTexts(), Not(Contains(text("le soir"))));
    EXPECT_FALSE(store().topic(QUuid::fromString(id))->note);
}

TEST_F(ReadingTest, a_failed_brief_says_why) {
    fill();
    open();
    press(Qt::Key_Space);
    shell().page()->askBrief(); // no agent is there
    const QUuid id = QUuid::fromString(window().property("chosenId").toString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_app->briefs().failed().contains(id); }, 30000));
    const QString why = m_app->briefs().failureText(id);
    ASSERT_FALSE(why.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(why); }, 3000));
}

TEST_F(ReadingTest, a_score_is_corrected_and_given_back_without_inventing_one) {
    fill();
    Topic unread = test::sampleTopic(text("Pas lu"));
    unread.readLevel = ReadLevel::None;
    unread.score = 0;
    store().add({unread});
    open();
    const auto ask = [this](const QString &id) {
        shell().actions()->selection()->show(id);
        m_main->perform(KeyboardMap::Correct);
        QCoreApplication::processEvents();
    };
    const auto correction = [this](const QString &id) {
        return store().topic(QUuid::fromString(id))->correction;
    };
    const QString none = unread.id.toString(QUuid::WithoutBraces).toUpper();
    ask(none);
    EXPECT_TRUE(shownTexts().filter(text("J’avais mis")).isEmpty());
    press(Qt::Key_Return); // no score was chosen
    EXPECT_FALSE(correction(none));
    press(Qt::Key_6);
    click(text("pas fiable"));
    press(Qt::Key_Return);
    ASSERT_TRUE(correction(none));
    EXPECT_EQ(correction(none)->tags, QList<QString>{text("pas fiable")});
    QMetaObject::invokeMethod(&window(), "showTopic", Q_ARG(int, int(Section::Inbox)),
                              Q_ARG(QString, none));
    press(Qt::Key_Space);
    EXPECT_THAT(shownTexts(), Not(Contains(text("Revoir ma note")))) << "it is folded";
    ASSERT_TRUE(tabTo(text("D’où vient la note")));
    press(Qt::Key_Return);
    EXPECT_THAT(shownTexts(), Contains(text("Revoir ma note"))) << "it is a score of one's own";
    press(Qt::Key_Escape);
    press(Qt::Key_Home);
    ask(none);
    EXPECT_TRUE(shownTexts().filter(text("J’avais mis")).isEmpty());
    click(text("Retirer ma note"));
    EXPECT_FALSE(correction(none));

    // The same score as vorle's is one's own all the same.
    press(Qt::Key_Home);
    const QString id = window().property("chosenId").toString();
    shell().correct(id, 9, {}, {});
    ask(id);
    EXPECT_THAT(shownTexts(), Contains(text("J’avais mis 9.")));
    EXPECT_GE(buttonAt(text("Reprendre la note de vorle")).y(), 0);
    press(Qt::Key_3);
    ASSERT_TRUE(tabTo(text("Annuler")));
    press(Qt::Key_Return); // notes, whatever has the keyboard
    EXPECT_EQ(correction(id)->score, 3);
    EXPECT_FALSE(window().property("covered").toBool());

    ask(id);
    for (int i = 0; i < 9 && !window().activeFocusItem()->inherits("QQuickTextField"); ++i) {
        press(Qt::Key_Tab);
    }
    type(text("Vieux"));
    press(Qt::Key_Return);
    EXPECT_EQ(correction(id)->text, u"Vieux");
    EXPECT_FALSE(window().property("covered").toBool());
    press(Qt::Key_Z, Qt::ControlModifier);

    // The last thing done is the first undone, and done again.
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(correction(id)->score, 9);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(correction(id));
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(correction(id)->score, 9);
}

TEST_F(ReadingTest, a_link_still_being_read_offers_to_be_sent_away_alone) {
    Topic link = test::sampleTopic(text("Un lien"), TopicStatus::Pending);
    link.capturedURL = text("https://example.org/lien");
    store().add({link});
    open();
    ASSERT_EQ(chosen(), link.title);
    shell().inbox()->setCaptureProblem(link.id, {}); // no agent is there to read it
    EXPECT_EQ(shell().inbox()->card(0).subject(), text("Capturé par toi"));
    EXPECT_EQ(shell().inbox()->card(0).closedFacts(), text("je le lis… · example.org"));
    for (int i = 0; i < 2; ++i) { // on its card, then on its page
        EXPECT_EQ(buttonAt(text("Garder")).y(), -1);
        EXPECT_EQ(buttonAt(text("Plus tard")).y(), -1);
        EXPECT_GE(buttonAt(text("Pas pour moi")).y(), 0);
        for (const Qt::Key key : {Qt::Key_G, Qt::Key_L}) {
            press(key);
            EXPECT_EQ(statusOf(link.title), TopicStatus::Pending);
            EXPECT_FALSE(shownTexts().filter(text("Je lis encore cette page")).isEmpty());
        }
        EXPECT_EQ(buttonAt(text("D’où vient la note")).y(), -1) << "there is none yet";
        press(Qt::Key_Space);
    }
    press(Qt::Key_X);
    EXPECT_EQ(statusOf(link.title), TopicStatus::Dismissed);
}

} // namespace
} // namespace vorle
