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
