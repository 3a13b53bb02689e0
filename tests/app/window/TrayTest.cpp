#include "app/window/Tray.h"

#include "app/models/RunModel.h"
#include "app/models/TopicListModel.h"
#include "tests/core/Samples.h"
#include "tests/search/run/RunParts.h"

#include <QApplication>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace vorle {
namespace {

class TrayTest : public testing::Test {
protected:
    TrayTest() {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            menu = menu != nullptr ? menu : qobject_cast<QMenu *>(widget);
        }
    }

    QStringList entries() const {
        QStringList texts;
        for (const QAction *action : menu->actions()) {
            texts += action->text();
        }
        return texts;
    }
    QSystemTrayIcon &item() { return *tray.findChild<QSystemTrayIcon *>(); }

    test::FixedClock clock; // Monday 2 November 2026, 9:30
    test::RunParts parts{clock, QTimeZone::utc()};
    RunModel run{parts.engine, parts.preferences, parts.store, clock, QTimeZone::utc()};
    TopicListModel inbox{parts.store, Section::Inbox, clock};
    Tray tray{run, inbox};
    QMenu *menu = nullptr;
};

TEST_F(TrayTest, tells_how_much_there_is_to_sort_and_when_the_next_run_is) {
    EXPECT_EQ(item().toolTip(), QStringLiteral("vorle, rien à trier"));
    EXPECT_EQ(entries().first(), QStringLiteral("Prochaine fouille\u00A0: lundi prochain à 8:00"));
    EXPECT_FALSE(menu->actions().first()->isEnabled());
    const auto &sizes = item().icon().availableSizes();
    EXPECT_GT(sizes.size(), 2) << "the face, for the dock too";
    parts.store.add({test::sampleTopic(QStringLiteral("a"))});
    EXPECT_EQ(item().toolTip(), QStringLiteral("vorle, 1 sujet à trier"));
    parts.store.add(
        {test::sampleTopic(QStringLiteral("b")), test::sampleTopic(QStringLiteral("c"))});
    EXPECT_EQ(item().toolTip(), QStringLiteral("vorle, 3 sujets à trier"));
    parts.preferences.change(&Settings::schedule, Schedule{{}, 8, 0});
    EXPECT_EQ(entries().first(), QStringLiteral("Aucune fouille prévue"));
}

TEST_F(TrayTest, each_entry_and_each_click_asks_for_what_it_says) {
    const struct {
        const char *text;
        void (Tray::*signal)();
    } cases[] = {
        {"Ajouter un sujet", &Tray::addAsked}, {"Ouvrir", &Tray::openAsked},
        {"Réglages", &Tray::settingsAsked},    {"Envoyer un retour", &Tray::feedbackAsked},
        {"Quitter", &Tray::quitAsked},
    };
    for (const auto &one : cases) {
        const QSignalSpy asked(&tray, one.signal);
        const qsizetype at = entries().indexOf(QString::fromUtf8(one.text));
        ASSERT_GE(at, 0) << one.text;
        menu->actions()[at]->trigger();
        EXPECT_EQ(asked.count(), 1) << one.text;
    }
    const QSignalSpy status(&tray, &Tray::statusAsked);
    const QSignalSpy opened(&tray, &Tray::openAsked);
    Q_EMIT item().activated(QSystemTrayIcon::Trigger);
    EXPECT_EQ(status.count(), 1);
    EXPECT_TRUE(status[0][0].toRect().isValid()) << "a place, whatever the system tells";
    Q_EMIT item().activated(QSystemTrayIcon::DoubleClick);
    Q_EMIT item().messageClicked();
    EXPECT_EQ(opened.count(), 2);
}

TEST_F(TrayTest, a_menu_that_the_item_does_not_open_comes_with_the_other_button) {
    Q_EMIT item().activated(QSystemTrayIcon::Context);
    EXPECT_FALSE(menu->isVisible()) << "here the item opens its menu itself";
    item().setContextMenu(nullptr); // as on a Mac
    const QSignalSpy status(&tray, &Tray::statusAsked);
    Q_EMIT item().activated(QSystemTrayIcon::Context);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(status.count(), 0);
    menu->close();
}

TEST_F(TrayTest, the_picture_for_a_macs_menu_bar_is_black_and_clear_alone) {
    EXPECT_FALSE(Tray::picture(3).isMask());
    for (const int waiting : {0, 3, 120}) {
        const QIcon icon = Tray::mask(waiting);
        EXPECT_TRUE(icon.isMask());
        for (const QSize size : icon.availableSizes()) {
            const QImage image = icon.pixmap(size).toImage().convertToFormat(QImage::Format_ARGB32);
            int black = 0;
            int clear = 0; // inside of the disc: the face, or the number
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor pixel = image.pixelColor(x, y);
                    EXPECT_TRUE(pixel.alpha() == 0 || pixel.lightness() == 0) << x << ' ' << y;
                    const bool inside =
                        QPoint(2 * x - size.width(), 2 * y - size.height()).manhattanLength() <
                        size.width();
                    black += pixel.alpha() == 255 ? 1 : 0;
                    clear += inside && pixel.alpha() < 128 ? 1 : 0;
                }
            }
            EXPECT_GT(black, image.width() * image.height() / 4) << size.width();
            EXPECT_GT(clear, image.width() * image.height() / 100) << size.width();
        }
    }
}

TEST_F(TrayTest, a_run_is_started_and_stopped_from_its_menu) {
    parts.claude.signIn();
    parts.claude.answerBy(R"({"candidates":{"":"hang"}})");
    parts.preferences.change(&Settings::interests, {QStringLiteral("Rust & Go")});
    const auto press = [&](const char *text) {
        const qsizetype at = entries().indexOf(QString::fromUtf8(text));
        ASSERT_GE(at, 0) << text;
        menu->actions()[at]->trigger();
    };
    press("Fouiller maintenant");
    test::spinUntil([&] { return parts.claude.living() > 0; });
    EXPECT_TRUE(run.running());
    EXPECT_EQ(entries().first().count(u'&') % 2, 0) << "no key of the menu's";
    press("Arrêter la fouille");
    test::spinUntil([&] { return !run.running(); });
    EXPECT_TRUE(entries().contains(QStringLiteral("Fouiller maintenant")));
}

} // namespace
} // namespace vorle
