// The update view: what it shows at each stage, and the answers that keys and clicks give.

#include "tests/app/window/OpenWindow.h"

namespace vorle {
namespace {

using Choice = UpdateDriver::Choice;

class UpdatePanelTest : public test::OpenWindow {
protected:
    UpdateDriver &driver() { return *m_updates.driver; }
    UpdateDriver::Reply reply() {
        return [this](Choice choice) { m_choices += choice; };
    }
    bool shows(const char *text) {
        QCoreApplication::processEvents();
        return shownTexts().contains(QString::fromUtf8(text));
    }

    QList<Choice> m_choices;
};

TEST_F(UpdatePanelTest, goes_through_an_update_by_keys_alone) {
    open();
    m_main->lookForUpdate();
    EXPECT_EQ(m_updates.checks, 1);
    driver().showUserInitiatedCheck([] {});
    driver().showPermissionRequest([this](bool daily) { m_updates.daily = daily; });
    EXPECT_TRUE(shows("Arrêter"));
    driver().showFound(
        {QStringLiteral("1.5.0"), QStringLiteral("Lis hors ligne <b>!</b>\n- et plus"), false},
        reply());
    EXPECT_TRUE(shows("vorle 1.5.0"));
    EXPECT_TRUE(shows("Passer cette version"));
    EXPECT_TRUE(shows("Lis hors ligne <b>!</b>\n- et plus")) << "a stranger's text, as it stands";
    click(QStringLiteral("Chaque jour"));
    EXPECT_TRUE(m_updates.daily);
    EXPECT_FALSE(shows("Chaque jour"));
    press(Qt::Key_Return);
    ASSERT_EQ(m_choices, QList<Choice>{Choice::Install}) << "the keyboard stood on what comes next";

    driver().showDownloadInitiated([] {});
    driver().showExpectedBytes(18'400'000);
    driver().showReceivedBytes(6'200'000);
    EXPECT_TRUE(shows("Téléchargement…"));
    EXPECT_TRUE(shows("6,2 sur 18,4 Mo"));
    EXPECT_TRUE(shows("Tu peux continuer, je m’en occupe."));
    press(Qt::Key_Escape); // it goes on without the view
    EXPECT_FALSE(shows("Téléchargement…"));
    driver().showExtractionStarted();
    driver().showReady(reply());
    m_main->lookForUpdate();
    EXPECT_EQ(m_updates.checks, 1) << "what waits for an answer is shown, not looked for again";
    EXPECT_TRUE(shows("Une nouvelle version est prête."));
    EXPECT_TRUE(shows("Prête, vorle se relance en 3 secondes."));
    press(Qt::Key_Return);
    EXPECT_EQ(m_choices.last(), Choice::Dismiss) << "\"Plus tard\"";
    EXPECT_TRUE(shows("Elle s’installera quand tu quitteras vorle."));
    EXPECT_TRUE(shows("Relancer maintenant"));
}

TEST_F(UpdatePanelTest, who_cannot_see_the_view_is_told) {
    open();
    int told = 0;
    QObject::connect(&m_updater, &Updater::told, &m_updater, [&] { ++told; });
    m_main->lookForUpdate();
    const auto fails = [&] {
        driver().showDownloadInitiated([] {});
        driver().showError(QStringLiteral("no room"), [] {});
        QCoreApplication::processEvents();
        return std::exchange(told, 0);
    };
    EXPECT_EQ(fails(), 0) << "it is before their eyes";
    for (const auto state : {QWindow::Minimized, QWindow::Hidden}) {
        window().setVisibility(state);
        EXPECT_EQ(fails(), 1) << state;
        window().setVisibility(QWindow::Windowed);
        EXPECT_EQ(fails(), 0) << state << ", and back";
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(fails(), 1) << "put away";
}

TEST_F(UpdatePanelTest, a_failure_is_told_until_it_was_read_and_can_be_tried_again) {
    open();
    m_main->lookForUpdate();
    driver().showUserInitiatedCheck([] {});
    driver().showError(QStringLiteral("no network"), [] {});
    driver().dismissed();
    EXPECT_TRUE(shows("Je n’ai pas pu vérifier les mises à jour"));
    EXPECT_TRUE(shows("Vérifie ta connexion à Internet, puis réessaie."));
    press(Qt::Key_Return);
    EXPECT_EQ(m_updates.checks, 2) << "\"Réessayer\"";
    driver().showUserInitiatedCheck([] {});
    driver().showNotFound({}, [] {});
    driver().dismissed();
    EXPECT_TRUE(shows("1.4.2 est la dernière version."));
    press(Qt::Key_Escape);
    EXPECT_FALSE(shows("1.4.2 est la dernière version."));

    // What comes by itself waits in the window, and its button leads here.
    driver().showFound({QStringLiteral("1.5.0"), {}, false}, reply());
    shell().tellOfUpdate(QStringLiteral("vorle 1.5.0 est là."));
    EXPECT_EQ(shell().remedy(), QStringLiteral("Voir"));
    shell().takeRemedy();
    EXPECT_TRUE(shows("Installer et relancer"));
    EXPECT_TRUE(shell().notice().isEmpty());
    click(QStringLiteral("Passer cette version"));
    EXPECT_EQ(m_choices, QList<Choice>{Choice::Skip});
    EXPECT_FALSE(shows("Installer et relancer"));
}

} // namespace
} // namespace vorle
