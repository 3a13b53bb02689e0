// What keeps the app from being relaunched, and where that is told.

#include "app/window/UnderWay.h"

#include "app/window/CommandServer.h"
#include "app/window/DemoProcess.h"
#include "tests/app/window/OpenWindow.h"

namespace vorle {
namespace {

class UnderWayTest : public test::OpenWindow {
protected:
    QString text() {
        QCoreApplication::processEvents();
        return UnderWay{*m_app, shell(), *m_main, m_commands, m_demo}.text();
    }
    UpdateDriver &driver() { return *m_updates.driver; }
    /// A version is ready that the person asked for.
    void makeReady() {
        driver().showFound({QStringLiteral("1.5.0"), {}, false}, [](UpdateDriver::Choice) {});
        m_updater.install();
        driver().showDownloadInitiated([] {});
        driver().showReady([this](UpdateDriver::Choice choice) { m_choice = choice; });
    }

    CommandServer m_commands{
        [](const cli::Command &, cli::Context &) -> Task<cli::ExitStatus> { std::abort(); }};
    DemoProcess m_demo{QStringLiteral("/nowhere")};
    std::optional<UpdateDriver::Choice> m_choice;
};

TEST_F(UnderWayTest, what_is_written_and_what_runs_keeps_the_app_as_it_is) {
    fill();
    open();
    EXPECT_EQ(text(), QString());
    m_pasteboard.replace(QStringLiteral("https://example.org/a"));
    m_main->add();
    QTest::qWait(1);
    EXPECT_FALSE(text().isEmpty()) << "the keyboard stands in a field that holds something";
    press(Qt::Key_Escape);
    EXPECT_EQ(text(), QString());

    m_main->writeFeedback();
    EXPECT_EQ(text(), QString()) << "nothing is written yet";
    type(QStringLiteral("a"));
    EXPECT_EQ(text(), QStringLiteral("Tu es en train d’écrire"));
    press(Qt::Key_Escape);
    EXPECT_EQ(text(), QStringLiteral("Ton retour n’est pas encore envoyé"));
    shell().screens()->feedback()->setText({});
    EXPECT_EQ(text(), QString());

    shell().openQuickCapture();
    EXPECT_EQ(text(), QStringLiteral("L’ajout d’un sujet est ouvert"));
    shell().quickCapture()->setShown(false);
    shell().calibration()->begin();
    EXPECT_EQ(text(), QStringLiteral("Le premier tri guidé est en cours"));
    shell().calibration()->leave();

    m_app.program.agent.signIn();
    m_app.program.agent.answerBy(R"({"brief":"hang"})");
    m_app->briefs().ask(store().topics().first()->id);
    EXPECT_EQ(text(), QStringLiteral("Une fiche de lecture est en train d’être écrite"));
    m_app->briefs().stop();
    test::waitFor(m_app->briefs().ended());
    EXPECT_EQ(text(), QString());
}

TEST_F(UnderWayTest, a_relaunch_that_nobody_sees_coming_is_told_and_can_be_put_off) {
    open();
    QObject::connect(&m_updater, &Updater::told, &shell(), &Shell::tellOfUpdate);
    makeReady(); // with the view put away
    EXPECT_EQ(shell().notice(), QStringLiteral("Prête, vorle se relance en 3 secondes."));
    EXPECT_EQ(shell().remedy(), QStringLiteral("Plus tard"));
    shell().takeRemedy();
    EXPECT_FALSE(m_updater.isCountingDown());
    EXPECT_EQ(m_choice, UpdateDriver::Choice::Dismiss);
    EXPECT_EQ(shell().notice(), QString());

    makeReady();
    m_main->lookForUpdate(); // it was seen all the same
    QCoreApplication::processEvents();
    m_updater.putOff();
    EXPECT_EQ(shell().notice(), QStringLiteral("Une nouvelle version est prête."));
    EXPECT_EQ(shell().remedy(), QStringLiteral("Voir"));
    shell().dismissNotice();
    makeReady();
    EXPECT_EQ(shell().notice(), QString()) << "the view shows it";
    m_updater.putOff();

    // What was told is told as long as it is so.
    press(Qt::Key_Escape);
    driver().showFound({QStringLiteral("1.6.0"), {}, false}, [](UpdateDriver::Choice) {});
    EXPECT_EQ(shell().notice(), QStringLiteral("vorle 1.6.0 est là."));
    m_updater.skip();
    EXPECT_EQ(shell().notice(), QString());
}

} // namespace
} // namespace vorle
