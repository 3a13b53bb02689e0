#include "tests/app/window/OpenWindow.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::sampleTopic;
using WindowTest = test::OpenWindow;

TEST_F(WindowTest, single_keys_sort_and_the_next_card_comes_by_itself) {
    fill();
    open();
    EXPECT_EQ(chosen(), u"Sujet 9");
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Program);
    EXPECT_EQ(chosen(), u"Sujet 8");
    const Ghost ghost = shell().actions()->selection()->ghost();
    EXPECT_EQ(ghost.went, u"Gardé · Programme");
    EXPECT_EQ(ghost.title, u"Sujet 9");
    press(Qt::Key_L);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 8")), TopicStatus::Reserve);
    press(Qt::Key_X);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 7")), TopicStatus::Dismissed);
    EXPECT_EQ(chosen(), QString());
    // One key too many decides nothing.
    press(Qt::Key_G);

    // Everything comes back, last first, and goes again.
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 7")), TopicStatus::Inbox);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Program);

    ASSERT_TRUE(store().flush());
    const TopicStore again(store().file(), Resources(), m_app->clock());
    EXPECT_EQ(again.topics(TopicStatus::Inbox).size(), 2);
}

TEST_F(WindowTest, the_open_card_tells_its_own_story_after_every_change) {
    fill();
    open();
    const auto tells = [&](int score) {
        return QTest::qWaitFor([&] {
            QStringList reasons = shownTexts().filter(QStringLiteral("Raison"));
            reasons.removeDuplicates();
            return reasons == QStringList{QStringLiteral("Raison %1").arg(score)};
        });
    };
    EXPECT_TRUE(tells(9));
    press(Qt::Key_G);
    EXPECT_TRUE(tells(8));
    press(Qt::Key_Down);
    EXPECT_TRUE(tells(7));
    press(Qt::Key_X);
    EXPECT_TRUE(tells(8)) << "the last one gone, the one before it";
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(tells(9)) << "what came back is shown";
    // Every heading stands over its own band.
    EXPECT_THAT(shownTexts(), testing::Contains(QStringLiteral("Pertinents")).Times(1));
    EXPECT_THAT(shownTexts(), testing::Contains(QStringLiteral("Très pertinents")).Times(1));
    EXPECT_THAT(shownTexts(), testing::Not(testing::Contains(QStringLiteral("Urgent"))));
}

TEST_F(WindowTest, the_keyboard_alone_reaches_every_section_and_its_decisions) {
    fill();
    open();
    press(Qt::Key_Down);
    EXPECT_EQ(chosen(), u"Sujet 8");
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_TRUE(enlarged());
    EXPECT_EQ(shell().page()->grades().size(), 4);
    press(Qt::Key_Escape);
    EXPECT_FALSE(enlarged());

    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(shell().sections()->current(), Section::Program);
    EXPECT_EQ(chosen(), u"Gardé");
    press(Qt::Key_D);
    EXPECT_EQ(statusOf(QStringLiteral("Gardé")), TopicStatus::Done);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_R);
    EXPECT_EQ(statusOf(QStringLiteral("Gardé")), TopicStatus::Reserve);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Backspace);
    EXPECT_EQ(statusOf(QStringLiteral("Gardé")), TopicStatus::Inbox);
    press(Qt::Key_Z, Qt::ControlModifier);

    press(Qt::Key_3, Qt::ControlModifier);
    EXPECT_EQ(chosen(), u"Remis");
    press(Qt::Key_T);
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Inbox);
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_3);
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Done);

    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(shell().library()->count(), 2);
    press(Qt::Key_G);
    EXPECT_EQ(shell().program()->count(), 2);
    for (const auto &[key, section] :
         {std::pair{Qt::Key_5, Section::Territory}, std::pair{Qt::Key_6, Section::Report},
          std::pair{Qt::Key_1, Section::Inbox}}) {
        press(key, Qt::ControlModifier);
        EXPECT_EQ(shell().sections()->current(), section);
    }

    // To the menu, along it, and back to the cards.
    press(Qt::Key_Left);
    press(Qt::Key_Down);
    EXPECT_EQ(shell().sections()->current(), Section::Program);
    press(Qt::Key_Right);
    press(Qt::Key_D);
    EXPECT_EQ(shell().program()->count(), 1);
}

TEST_F(WindowTest, a_panel_opens_also_while_the_panels_are_being_read) {
    fill();
    open();
    QList<QQuickItem *> items{window().contentItem()};
    QQuickItem *later = nullptr;
    while (later == nullptr && !items.isEmpty()) {
        QQuickItem *item = items.takeFirst();
        items += item->childItems();
        if (item->property("document").toString() == QStringLiteral("Panels.qml")) {
            later = item;
        }
    }
    ASSERT_TRUE(later);
    ASSERT_EQ(later->property("item").value<QObject *>(), nullptr) << "nobody has asked yet";
    later->setProperty("asynchronous", true);
    later->setProperty("active", true);
    press(Qt::Key_N, Qt::ControlModifier);
    ASSERT_NE(later->property("item").value<QObject *>(), nullptr);
    EXPECT_TRUE(later->property("shown").toBool());
    press(Qt::Key_Escape);
    EXPECT_FALSE(later->property("shown").toBool());
}

TEST_F(WindowTest, panels_keep_the_keyboard_and_typing_decides_nothing) {
    fill();
    open();
    press(Qt::Key_N, Qt::ControlModifier);
    type(QStringLiteral("glx"));
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_Return);
    // "glx" is no address: it is told, and the panel stays.
    EXPECT_EQ(store().count(), 6);
    press(Qt::Key_Escape);
    press(Qt::Key_Question, Qt::ShiftModifier);
    press(Qt::Key_G);
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_Escape);
    press(Qt::Key_Comma, Qt::ControlModifier);
    press(Qt::Key_G);
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_Escape); // what was searched for there
    press(Qt::Key_Escape);

    // A key held down decides once.
    QKeyEvent held(QEvent::KeyPress, Qt::Key_G, Qt::NoModifier, QStringLiteral("g"), true);
    QCoreApplication::sendEvent(&window(), &held);
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_G);
    EXPECT_EQ(shell().inbox()->count(), 2);
}

TEST_F(WindowTest, closing_during_a_run_is_asked_about_and_answered_by_keyboard) {
    fill();
    open();
    int quits = 0;
    QObject::connect(m_main.get(), &MainWindow::quitAsked, [&] { ++quits; });
    const QString question = QStringLiteral("Quitter pendant la fouille\u202F?");
    m_main->askToClose();
    ASSERT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(question); }));
    press(Qt::Key_G); // the cards behind have no keys now
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Inbox);
    press(Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shownTexts().contains(question); }));
    EXPECT_EQ(quits, 0);
    m_main->askToClose();
    press(Qt::Key_Return);
    EXPECT_EQ(quits, 1);
}

TEST_F(WindowTest, moving_the_focus_never_decides) {
    fill();
    open();
    const auto focused = [&] {
        const QQuickItem *item = window().activeFocusItem();
        return item != nullptr ? item->property("text").toString() : QString();
    };
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Rechercher");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Garder");
    press(Qt::Key_Escape);
    // On to a card's button, away to another section and back: the space bar enlarges the card.
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Tab);
    }
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    press(Qt::Key_Space);
    EXPECT_TRUE(enlarged());
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_Escape);

    // Two panels never lie over each other, and the last one gives the keyboard back.
    press(Qt::Key_K, Qt::ControlModifier);
    press(Qt::Key_N, Qt::ControlModifier);
    press(Qt::Key_Escape);
    press(Qt::Key_G);
    EXPECT_EQ(shell().inbox()->count(), 2);

    // A shortcut is no press of the button that has the focus.
    for (int i = 0; i < 8; ++i) {
        press(Qt::Key_Tab);
        press(Qt::Key_Return, Qt::ControlModifier);
    }
    EXPECT_EQ(shell().inbox()->count(), 2);
}

TEST_F(WindowTest, a_click_on_a_button_leaves_the_keyboard_on_the_cards) {
    fill();
    open();
    press(Qt::Key_Space);
    ASSERT_TRUE(enlarged());
    click(QStringLiteral("Garder"));
    EXPECT_EQ(shell().inbox()->count(), 2);
    press(Qt::Key_Space); // puts the page away, and presses nothing
    EXPECT_EQ(shell().inbox()->count(), 2);
    EXPECT_FALSE(enlarged());

    // In the menu the keys of the cards decide nothing; Return goes in.
    press(Qt::Key_Left);
    press(Qt::Key_X);
    EXPECT_EQ(shell().inbox()->count(), 2);
    press(Qt::Key_Tab);
    press(Qt::Key_Return);
    EXPECT_EQ(shell().sections()->current(), Section::Program);
    press(Qt::Key_D);
    EXPECT_EQ(shell().program()->count(), 1);
}

TEST_F(WindowTest, a_note_is_kept_however_its_page_is_left) {
    fill();
    open();
    const QString id = window().property("chosenId").toString();
    const auto note = [&] { return store().topic(QUuid::fromString(id))->note; };
    const auto write = [&](const QString &text) {
        press(Qt::Key_Space);
        const auto isNote = [&] {
            const QQuickItem *item = window().activeFocusItem();
            return item != nullptr && item->inherits("QQuickTextArea");
        };
        for (int i = 0; i < 60 && !isNote(); ++i) {
            press(Qt::Key_Tab);
        }
        ASSERT_TRUE(isNote()) << "the keyboard reaches the note";
        type(text);
    };
    write(QStringLiteral("lire"));
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(note(), QStringLiteral("lire"));
    EXPECT_EQ(shell().inbox()->count(), 3);
    press(Qt::Key_1, Qt::ControlModifier);
    write(QStringLiteral("re"));
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    EXPECT_FALSE(enlarged());
    EXPECT_EQ(note()->size(), 6);
    write(QStringLiteral("s"));
    m_main->finishEditing(); // as quitting does
    EXPECT_EQ(note()->size(), 7);
}

TEST_F(WindowTest, the_search_goes_to_what_it_found) {
    fill();
    open();
    press(Qt::Key_K, Qt::ControlModifier);
    type(QStringLiteral("remis"));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return shell().search()->count() == 1 && !shell().search()->busy(); }));
    press(Qt::Key_Return);
    EXPECT_EQ(shell().sections()->current(), Section::Reserve);
    EXPECT_EQ(chosen(), u"Remis");
    // The keyboard is back on the cards.
    press(Qt::Key_T);
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Inbox);
}

TEST_F(WindowTest, an_empty_store_says_so_in_every_section) {
    open();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4}) {
        press(key, Qt::ControlModifier);
        EXPECT_FALSE(shell().sections()->emptyTitle().isEmpty()) << key;
        // Keys without a topic do nothing, and hurt nobody.
        for (const Qt::Key decision : {Qt::Key_G, Qt::Key_X, Qt::Key_Space, Qt::Key_Down}) {
            press(decision);
        }
    }
    EXPECT_EQ(store().count(), 0);
}

TEST_F(WindowTest, what_can_be_read_of_a_damaged_file_is_offered_with_one_button) {
    QByteArray damaged = json::encode(QList<Topic>{sampleTopic(QStringLiteral("a")),
                                                   sampleTopic(QStringLiteral("b")),
                                                   sampleTopic(QStringLiteral("c"))});
    test::writeFile(m_app.program.topicsFile(),
                    damaged.replace(damaged.lastIndexOf("inbox"), 5, "boxed"));
    open();
    QCoreApplication::processEvents();
    EXPECT_THAT(shownTexts().join(u'\n').toStdString(),
                testing::HasSubstr("2 sujets lisibles sur 3."));
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Réparer")));
    EXPECT_EQ(store().count(), 0) << "never by itself";
    shell().takeRemedy();
    QCoreApplication::processEvents();
    EXPECT_EQ(shell().inbox()->rowCount(), 2);
    EXPECT_EQ(shell().notice(), QString());
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Réparer")));
}

TEST_F(WindowTest, a_correction_changes_the_score_and_can_be_taken_back) {
    fill();
    open();
    const QString id = window().property("chosenId").toString();
    shell().correct(id, 4, {QStringLiteral("pas fiable")}, QStringLiteral("Vieux"));
    // It now stands lower in the list, and stays the chosen one.
    EXPECT_EQ(shell().shownScore(id), 4);
    EXPECT_EQ(shell().inbox()->card(shell().inbox()->rowOf(id)).formerScore(), 9);
    EXPECT_EQ(shell().correctionTags(id), QStringList{QStringLiteral("pas fiable")});
    EXPECT_EQ(window().property("chosenId").toString(), id);
    shell().uncorrect(id);
    EXPECT_EQ(shell().shownScore(id), 9);
}

TEST_F(WindowTest, a_window_that_filled_the_screen_does_so_again) {
    WindowState state;
    state.setGeometry({20, 20, 700, 500});
    state.maximised = true;
    state.save(store().file());
    open();
    EXPECT_EQ(window().visibility(), QWindow::Maximized);
    m_main->saveState();
    const WindowState kept = WindowState::load(store().file());
    EXPECT_EQ(kept.maximised, true);
    EXPECT_EQ(kept.geometry().topLeft(), QPoint(20, 20)) << "where it goes back to";
    window().setWindowStates(Qt::WindowNoState);
    m_main->saveState();
    EXPECT_EQ(WindowState::load(store().file()).maximised, false);
}

} // namespace
} // namespace vorle
