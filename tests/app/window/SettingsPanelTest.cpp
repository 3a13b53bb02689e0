// The settings' panel, by hand and by key, and what changes them from elsewhere.

#include "tests/app/window/OpenWindow.h"

#include <QAccessible>

namespace vorle {
namespace {

class SettingsPanelTest : public test::OpenWindow {
protected:
    void openSettings() {
        open();
        press(Qt::Key_Comma, Qt::ControlModifier);
    }
    const Settings &settings() const { return m_app->preferences().settings(); }
    SettingsPages &pages() { return *shell().screens()->settingsPages(); }

    /// What assistive technology is told of the control that has the keyboard.
    QString here() {
        QQuickItem *item = window().activeFocusItem();
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item);
        return interface == nullptr ? QString() : interface->text(QAccessible::Name);
    }
    /// Laid out, so that it can be clicked on.
    void showPage(int page) {
        pages().setPage(page);
        QTest::qWait(60);
    }
    void showPage(const char *name) {
        showPage(int(pages().pages().indexOf(QString::fromUtf8(name))));
    }
    QByteArray kept() {
        m_app->preferences().flush();
        return m_app.program.read("config/vorle/settings.json");
    }
    QPoint middleOf(const char *words) {
        const auto items = shown([&](const QQuickItem &item) {
            return item.property("text").toString() == QString::fromUtf8(words);
        });
        return items.isEmpty() ? QPoint()
                               : items.last()->mapToScene({items.last()->width() / 2, 4}).toPoint();
    }
    void clickAt(const QPoint &place) {
        QTest::mouseClick(&window(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
    }
};

TEST_F(SettingsPanelTest, every_page_is_worked_by_keys_alone_and_each_change_is_on_the_disk) {
    openSettings();
    EXPECT_EQ(here(), QStringLiteral("Général"));
    press(Qt::Key_Right);
    EXPECT_EQ(here(), QStringLiteral("Apparence\u00A0: Automatique"));
    press(Qt::Key_Left); // round to the last
    EXPECT_EQ(settings().appearance, Appearance::Dark);
    press(Qt::Key_Down);
    EXPECT_EQ(here(), QStringLiteral("Couleur\u00A0: Braise"));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    EXPECT_EQ(settings().accent, Accent::Lagune);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_EQ(settings().textScale, 115);
    press(Qt::Key_Down);
    EXPECT_EQ(here(), QStringLiteral("Ouvrir vorle à l’ouverture de session"));
    press(Qt::Key_Space);
    EXPECT_EQ(m_login.now, LoginItem::State::On);
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_EQ(settings().terminal, TerminalApp::Ghostty);
    for (int i = 0; i < 5; ++i) {
        press(Qt::Key_Up); // back to the pages
    }
    EXPECT_EQ(here(), QStringLiteral("Général"));

    press(Qt::Key_Down);
    EXPECT_EQ(here(), QStringLiteral("Fouille"));
    press(Qt::Key_Return);
    EXPECT_EQ(here(), QStringLiteral("lundi"));
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    EXPECT_EQ(settings().schedule.weekdays, (QList<int>{2, 5}));
    press(Qt::Key_Down);
    EXPECT_EQ(here(), QStringLiteral("Heure de la fouille"));
    type(QStringLiteral("930"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().schedule, (Schedule{{2, 5}, 9, 30}));
    press(Qt::Key_Up);
    EXPECT_EQ(settings().schedule.minute, 35);
    type(QStringLiteral("99"));
    press(Qt::Key_Escape); // the draft goes, the panel stays
    press(Qt::Key_Tab);
    EXPECT_EQ(settings().schedule, (Schedule{{2, 5}, 9, 35}));
    EXPECT_EQ(here(), QStringLiteral("Temps de veille par semaine\u00A0: 3\u00A0h"));
    press(Qt::Key_Right);
    EXPECT_EQ(settings().weeklyMinutes, 210);

    pages().setPage(2);
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Return);
    EXPECT_EQ(here(), QStringLiteral("Claude Code, déconnecté"));
    press(Qt::Key_Tab);
    EXPECT_EQ(here(), QStringLiteral("Me connecter, Claude Code"));
    press(Qt::Key_Tab);
    press(Qt::Key_Space);
    EXPECT_EQ(settings().agent, QStringLiteral("codex"));
    press(Qt::Key_Down);
    type(QStringLiteral("gpt-5"));
    press(Qt::Key_Tab);
    EXPECT_EQ(settings().agentModel, QStringLiteral("gpt-5"));
    const QByteArray disk = kept();
    for (const char *value :
         {"\"Sombre\"", "\"Lagune\"", "115", "\"Ghostty\"", "210", "\"codex\"", "\"gpt-5\""}) {
        EXPECT_TRUE(disk.contains(value)) << value << " in " << disk.constData();
    }
}

TEST_F(SettingsPanelTest, what_the_system_says_stands_in_its_row_with_the_way_to_mend_it) {
    m_login.now = LoginItem::State::Held;
    m_notifications.now = Notifications::Standing::Refused;
    openSettings();
    showPage("Général");
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Allow it there.")));
    QQuickItem *login = shown([](const QQuickItem &item) {
                            return item.property("name").toString() ==
                                   QStringLiteral("Ouvrir vorle à l’ouverture de session");
                        }).value(0);
    ASSERT_TRUE(login);
    EXPECT_TRUE(login->property("on").toBool());
    m_login.now = LoginItem::State::On;
    press(Qt::Key_Escape);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_FALSE(shownTexts().filter(QStringLiteral("la fermer le quitte")).isEmpty())
        << "there is no menu bar here";
    m_login.now = LoginItem::State::Off; // by hand, elsewhere
    press(Qt::Key_Escape);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_FALSE(login->property("on").toBool());
    m_login.refusal = QStringLiteral("disque plein");
    login->forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_FALSE(login->property("on").toBool()) << "the system's own answer";
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Le système a refusé\u00A0: disque plein")));

    m_login.refusal.reset();
    m_login.now = LoginItem::State::Astray; // the program was moved
    press(Qt::Key_Escape);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_FALSE(login->property("on").toBool()) << "nothing would open";
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Allow it there.")));
    login->forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_EQ(m_login.now, LoginItem::State::On);
    EXPECT_TRUE(login->property("on").toBool());

    showPage("Notifications");
    EXPECT_EQ(shownTexts().filter(QStringLiteral("Mend it there.")).size(), 1) << "told once";
    m_notifications.become(Notifications::Standing::Granted);
    QCoreApplication::processEvents();
    EXPECT_TRUE(shownTexts().filter(QStringLiteral("Mend it there.")).isEmpty());
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Heure du rappel")));
    m_app->preferences().change(&Settings::notifyReminder, true);
    QCoreApplication::processEvents();
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Heure du rappel")));
    clickAt(middleOf("Jamais"));
    EXPECT_EQ(settings().notifyMode, NotifyMode::Never);
    // The person is asked for their leave when they turn a switch, and for what a command turned
    // when they next look.
    m_app->preferences().change(&Settings::notifyReminder, false);
    m_notifications.become(Notifications::Standing::Unasked);
    QQuickItem *reminder =
        shown([](const QQuickItem &item) {
            return item.property("name").toString() == QStringLiteral("Rappel du programme");
        }).value(0);
    ASSERT_TRUE(reminder);
    reminder->forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(settings().notifyReminder);
    EXPECT_EQ(m_notifications.asked, 1);
    m_notifications.become(Notifications::Standing::Unasked);
    press(Qt::Key_Escape);
    EXPECT_EQ(m_notifications.asked, 1);
    press(Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(m_notifications.asked, 2);
}

TEST_F(SettingsPanelTest, the_arrows_pass_over_what_cannot_be_pressed_now) {
    openSettings();
    type(QStringLiteral("o")); // rows of every page
    ASSERT_TRUE(shownTexts().contains(QStringLiteral("Voir le compte rendu"))); // there is none yet
    for (int i = 0; i < 40 && here() != QStringLiteral("Ton territoire"); ++i) {
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Down);
    EXPECT_EQ(here(), QStringLiteral("Claude Code, déconnecté"));
    press(Qt::Key_Up);
    EXPECT_EQ(here(), QStringLiteral("Ton territoire"));
}

TEST_F(SettingsPanelTest, typing_searches_all_pages_and_escape_gives_the_search_up_first) {
    openSettings();
    type(QStringLiteral("export"));
    EXPECT_EQ(pages().query(), QStringLiteral("export"));
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Tout emporter")));
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Apparence")));
    press(Qt::Key_Return);
    EXPECT_EQ(here(), QStringLiteral("Exporter…"));
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_FALSE(pages().searching());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Apparence")));
    press(Qt::Key_Escape);
    EXPECT_FALSE(window().property("covered").toBool());
}

TEST_F(SettingsPanelTest, a_click_inside_stays_inside_and_one_beside_closes) {
    openSettings();
    clickAt(middleOf("Couleur")); // a name: nothing to choose
    EXPECT_TRUE(window().property("covered").toBool());
    clickAt(middleOf("Sombre"));
    EXPECT_EQ(settings().appearance, Appearance::Dark);
    clickAt({4, 4});
    EXPECT_FALSE(window().property("covered").toBool());
}

TEST_F(SettingsPanelTest, what_a_command_sets_is_seen_in_the_open_panel) {
    openSettings();
    m_app->preferences().watch();
    pages().setPage(1);
    EXPECT_EQ(m_app.program.run("reglages weeklyMinutes 120").status, 0);
    EXPECT_EQ(m_app.program
                  .run({QStringLiteral("reglages"), QStringLiteral("schedule"),
                        QStringLiteral(R"({"weekdays":[],"hour":8,"minute":0})")})
                  .status,
              0);
    test::spinUntil([&] { return shownTexts().contains(QStringLiteral("2\u00A0h")); });
    test::spinUntil(
        [&] { return shownTexts().contains(QStringLiteral("Aucune fouille ne part seule.")); });
}

TEST_F(SettingsPanelTest, the_data_page_shows_copies_and_takes_out) {
    fill();
    openSettings();
    showPage("Tes données");
    click(QStringLiteral("Show"));
    test::spinUntil([&] { return !m_reveal.revealed.isEmpty(); }); // once it is there
    EXPECT_EQ(m_reveal.revealed, QStringList{store().file()});
    click(QStringLiteral("Copier"));
    EXPECT_TRUE(m_pasteboard.text().contains(QStringLiteral("à trier 3")))
        << m_pasteboard.text().toStdString();
    EXPECT_FALSE(m_pasteboard.text().contains(QStringLiteral("Sujet 9")));
    m_files.answer = m_app.program.path("dehors");
    click(QStringLiteral("Exporter…"));
    test::spinUntil(
        [&] { return !shownTexts().filter(QStringLiteral("6 sujets dans ")).isEmpty(); });
    EXPECT_EQ(m_app.program.read("dehors/topics.json"),
              m_app.program.read("data/vorle/topics.json"));
    showPage("Fouille");
    click(QStringLiteral("Ton territoire"));
    EXPECT_FALSE(window().property("covered").toBool());
    EXPECT_EQ(shell().sections()->current(), Section::Territory);
}

TEST_F(SettingsPanelTest, nothing_is_cut_at_the_smallest_window_and_the_largest_text) {
    m_app->preferences().change(&Settings::textScale, 130);
    openSettings();
    window().resize(700, 500);
    for (int page = 0; page < pages().pages().size(); ++page) {
        showPage(page);
        for (const QQuickItem *item : shown([](const QQuickItem &each) {
                 return each.property("paintedWidth").isValid() &&
                        each.property("elide").isValid() &&
                        !each.property("text").toString().isEmpty();
             })) {
            const std::string words = item->property("text").toString().toStdString();
            EXPECT_LE(item->property("paintedWidth").toReal(), item->width() + 1) << words;
            EXPECT_LE(item->mapToScene({item->width(), 0}).x(), window().width() - 20) << words;
        }
    }
}

} // namespace
} // namespace vorle
