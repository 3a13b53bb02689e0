// ⌘K, the menus over the screen, and what stands for them at the foot of the side bar.

#include "app/window/MenuBar.h"
#include "app/window/MenuTarget.h"
#include "tests/app/window/OpenWindow.h"

#include <QAccessible>
#include <QMenu>

namespace vorle {
namespace {

class PaletteScreenTest : public test::OpenWindow {
protected:
    CommandPalette &palette() { return *shell().commandPalette(); }
    QString chosenRow() { return palette().at(palette().current()).plain; }
    bool covered() { return window().property("covered").toBool(); }
    void openPalette(const char *words = "") {
        press(Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(covered());
        type(QString::fromUtf8(words));
        ASSERT_TRUE(QTest::qWaitFor([this] { return !palette().busy(); }));
        QTest::qWait(20); // the rows take their places
    }
    QList<QQuickItem *> rows() {
        return shown([](const QQuickItem &item) {
            return QByteArrayView(item.metaObject()->className()).startsWith("PaletteRow_");
        });
    }
    QQuickItem *row(const QString &title) {
        for (QQuickItem *each : rows()) {
            if (each->property("entry").value<PaletteEntry>().plain == title) {
                return each;
            }
        }
        return nullptr;
    }
};

TEST_F(PaletteScreenTest, a_command_does_what_its_key_does_and_only_to_what_is_seen) {
    fill();
    open();
    openPalette("garder");
    EXPECT_EQ(chosenRow(), QStringLiteral("Garder au programme"));
    press(Qt::Key_Return);
    EXPECT_FALSE(covered());
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Program);
    EXPECT_EQ(chosen(), u"Sujet 8");
    press(Qt::Key_L); // the keyboard is back on the cards
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 8")), TopicStatus::Reserve);
    openPalette();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(chosenRow(), QStringLiteral("Annuler le dernier tri")) << "begun anew";
    press(Qt::Key_Return);
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 8")), TopicStatus::Inbox);

    // Scrolled out of sight, the card is brought back instead of being decided.
    QList<Topic> more;
    for (int i = 0; i < 40; ++i) {
        more += test::sampleTopic(QStringLiteral("Autre %1").arg(i));
    }
    store().add(more);
    QTest::qWait(50);
    QQuickItem *list =
        shown([](const QQuickItem &item) { return item.inherits("QQuickListView"); }).first();
    const QString topic = chosen();
    QMetaObject::invokeMethod(list, "flick", Q_ARG(qreal, 0), Q_ARG(qreal, -9000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !list->property("moving").toBool(); }));
    openPalette("garder");
    press(Qt::Key_Return);
    EXPECT_FALSE(covered());
    EXPECT_EQ(statusOf(topic), TopicStatus::Inbox);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return !shownTexts().filter(QStringLiteral("Il était hors de vue")).isEmpty(); }));
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(topic), TopicStatus::Program) << "it is seen by now";
}

TEST_F(PaletteScreenTest, return_waits_for_the_answer_to_what_was_typed) {
    fill();
    open();
    press(Qt::Key_K, Qt::ControlModifier);
    for (const char letter : {'r', 'e', 'm', 'i', 's'}) { // faster than any search
        QTest::keyClick(&window(), letter);
    }
    QTest::keyClick(&window(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !covered(); }));
    EXPECT_EQ(shell().sections()->current(), Section::Reserve);
    EXPECT_EQ(chosen(), u"Remis");
}

TEST_F(PaletteScreenTest, works_by_mouse_alone_and_stays_in_the_window) {
    fill();
    open();
    click(QStringLiteral("Rechercher"));
    QTest::qWait(20);
    for (const QSize size : {QSize(1180, 780), QSize(700, 500), QSize(2560, 1440)}) {
        window().resize(size);
        QTest::qWait(20);
        for (const QQuickItem *each : rows()) {
            const QRectF place = each->mapRectToScene({0, 0, each->width(), each->height()});
            EXPECT_GE(place.left(), 0);
            EXPECT_LE(place.right(), size.width());
        }
    }
    window().resize(1180, 780);
    QTest::qWait(20);
    QQuickItem *there = row(QStringLiteral("Aller à la Réserve"));
    ASSERT_NE(there, nullptr);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, there->mapToScene({30, 12}).toPoint());
    QTest::qWait(20);
    EXPECT_FALSE(covered());
    EXPECT_EQ(shell().sections()->current(), Section::Reserve);
    click(QStringLiteral("Rechercher"));
    QTest::qWait(20);
    there = row(QStringLiteral("Terminé"));
    ASSERT_NE(there, nullptr);
    QTest::mouseClick(&window(), Qt::LeftButton, {}, there->mapToScene({30, 12}).toPoint());
    QTest::qWait(20);
    EXPECT_EQ(chosen(), u"Terminé");
}

TEST_F(PaletteScreenTest, is_read_out_row_by_row) {
    fill();
    open();
    QAccessible::setActive(true);
    openPalette("remis");
    QQuickItem *there = row(QStringLiteral("Remis"));
    ASSERT_NE(there, nullptr);
    QAccessibleInterface *read = QAccessible::queryAccessibleInterface(there);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->role(), QAccessible::ListItem);
    EXPECT_EQ(read->text(QAccessible::Name), QStringLiteral("Remis"));
    EXPECT_EQ(read->text(QAccessible::Description), QStringLiteral("Réserve. Note 7 sur 10"));
    EXPECT_TRUE(read->state().selected);
}

TEST_F(PaletteScreenTest, the_foot_of_the_side_bar_leads_to_settings_and_keys) {
    fill();
    open();
    press(Qt::Key_Left);
    for (const auto &[word, panel] :
         {std::pair{QStringLiteral("Réglages"), QStringLiteral("Général")},
          std::pair{QStringLiteral("Raccourcis clavier"), QStringLiteral("Partout")}}) {
        for (int i = 0; i < 12; ++i) {
            const QQuickItem *item = window().activeFocusItem();
            if (item != nullptr && item->property("text").toString() == word) {
                break;
            }
            press(Qt::Key_Tab);
        }
        press(Qt::Key_Return);
        QTest::qWait(20);
        EXPECT_TRUE(covered()) << word.toStdString();
        EXPECT_TRUE(shownTexts().contains(panel)) << panel.toStdString();
        press(Qt::Key_Escape);
        EXPECT_FALSE(covered());
        press(Qt::Key_Left);
    }
}

TEST_F(PaletteScreenTest, the_size_of_type_follows_its_keys_everywhere) {
    fill();
    open();
    const auto scale = [this] { return m_app->preferences().settings().textScale; };
    press(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(scale(), 115);
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return !shownTexts().filter(QStringLiteral("Texte à 115")).isEmpty(); }));
    press(Qt::Key_K, Qt::ControlModifier); // in a field, over a panel
    press(Qt::Key_Equal, Qt::ControlModifier);
    EXPECT_EQ(scale(), 130);
    press(Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(scale(), 100);
    press(Qt::Key_Escape);
    press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_EQ(scale(), 90);
    EXPECT_EQ(shell().inbox()->count(), 3);
}

TEST_F(PaletteScreenTest, menus_over_the_screen_do_what_the_keys_do) {
    fill();
    open();
    MenuTarget target(shell(), *m_main);
    MenuBar menus(*shell().commands(), target);
    const auto item = [&](const QString &text) -> QAction & {
        for (QAction *menu : menus.bar().actions()) {
            for (QAction *each : menu->menu()->actions()) {
                if (each->text() == text) {
                    return *each;
                }
            }
        }
        ADD_FAILURE() << text.toStdString();
        return *menus.bar().actions().first();
    };
    const auto choose = [&](const char *text) {
        item(QString::fromUtf8(text)).trigger();
        QCoreApplication::processEvents();
    };
    EXPECT_FALSE(item(QStringLiteral("Annuler le dernier tri")).isEnabled());
    choose("Garder au programme (G)");
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Program);
    EXPECT_TRUE(item(QStringLiteral("Annuler le dernier tri")).isEnabled());
    choose("Annuler le dernier tri");
    EXPECT_EQ(statusOf(QStringLiteral("Sujet 9")), TopicStatus::Inbox);
    choose("Réserve");
    EXPECT_EQ(shell().sections()->current(), Section::Reserve);
    EXPECT_TRUE(item(QStringLiteral("Réserve")).isChecked());
    EXPECT_FALSE(item(QStringLiteral("À trier")).isChecked());
    choose("Réserve");
    EXPECT_TRUE(item(QStringLiteral("Réserve")).isChecked()) << "a press does not untick it";

    // What a panel lies over is out of reach, by a menu as by its key.
    choose("Réglages");
    ASSERT_TRUE(covered());
    EXPECT_FALSE(item(QStringLiteral("Remettre à trier (T)")).isEnabled());
    for (const char *pale : {"Annuler le dernier tri", "Fouiller maintenant",
                             "Lancer dans Claude Code ou approfondir avec Claude"}) {
        EXPECT_FALSE(item(QString::fromUtf8(pale)).isEnabled()) << pale;
        EXPECT_TRUE(item(QString::fromUtf8(pale)).shortcut().isEmpty())
            << "the panel has its own use for it: " << pale;
    }
    EXPECT_TRUE(item(QStringLiteral("Ajouter un sujet")).isEnabled());
    EXPECT_FALSE(item(QStringLiteral("Agrandir le texte")).shortcut().isEmpty());
    choose("Remettre à trier (T)");
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Reserve);
    press(Qt::Key_Escape);
    EXPECT_TRUE(item(QStringLiteral("Remettre à trier (T)")).isEnabled());
    EXPECT_FALSE(item(QStringLiteral("Fouiller maintenant")).shortcut().isEmpty());
    // Nobody sees on what it would fall.
    window().setWindowStates(Qt::WindowMinimized);
    EXPECT_FALSE(target.reaches(KeyboardMap::BackToTriage));
    window().setWindowStates(Qt::WindowNoState);
    EXPECT_TRUE(target.reaches(KeyboardMap::BackToTriage));
    // Another window of ours in front: its keys are its own, and so is what closes it.
    shell().openQuickCapture();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QGuiApplication::focusWindow() != &window(); }));
    EXPECT_TRUE(item(QStringLiteral("Lancer dans Claude Code ou approfondir avec Claude"))
                    .shortcut()
                    .isEmpty());
    choose("Remettre à trier (T)");
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Reserve);
    choose("Fermer la fenêtre");
    EXPECT_TRUE(window().isVisible());
    window().hide();
    choose("Remettre à trier (T)");
    EXPECT_EQ(statusOf(QStringLiteral("Remis")), TopicStatus::Reserve) << "nobody sees it";
    choose("Rechercher");
    EXPECT_TRUE(window().isVisible());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    type(QStringLiteral("re"));
    choose("Tout sélectionner");
    choose("Couper");
    EXPECT_EQ(palette().query(), QString());
}

} // namespace
} // namespace vorle
