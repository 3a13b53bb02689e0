#include "app/window/DemoProcess.h"
#include "tests/app/window/OpenWindow.h"

#include <QDir>
#include <QUrl>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using testing::Contains;
using testing::Not;

/// Somebody who never ran vorle, with two projects in their home.
class OnboardingTest : public test::OpenWindow {
protected:
    OnboardingTest() {
        preferences().change(&Settings::onboarded, false);
        put("home/Projets/tiravue/package.json", R"({"dependencies": {"react-native": "1"}})");
        put("home/Projets/potager/requirements.txt", "django\n");
    }
    Preferences &preferences() { return m_app->preferences(); }
    const Settings &settings() { return preferences().settings(); }
    void put(const char *name, const QByteArray &bytes) {
        const QString path = m_app.program.path(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        m_app.program.write(name, bytes);
    }
    OnboardingModel &model() { return *shell().onboarding(); }
    bool says(const char *words) {
        return shownTexts().join(u'\n').contains(QString::fromUtf8(words));
    }
    void begin() {
        open();
        test::spinUntil([this] { return model().found()->count() == 2; });
    }
    /// Tab goes there.
    bool reach(const char *name) {
        const QString wanted = text(name);
        for (int i = 0; i < 40; ++i) {
            const QQuickItem *at = window().activeFocusItem();
            if (at != nullptr &&
                (at->property("text").toString() == wanted || nameOf(*at) == wanted)) {
                return true;
            }
            press(Qt::Key_Tab);
        }
        return false;
    }
    static QString text(const char *words) { return QString::fromUtf8(words); }
    static QString nameOf(const QQuickItem &item) {
        QAccessibleInterface *heard =
            QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(&item));
        return heard != nullptr ? heard->text(QAccessible::Name) : QString();
    }
};

TEST_F(OnboardingTest, goes_by_keys_from_nothing_to_a_first_run_and_the_guided_triage) {
    m_app.program.agent.signIn();
    begin();
    ASSERT_TRUE(model().isShown());
    EXPECT_TRUE(says("Toi d’abord") && says("Proposé d’après React Native."));
    press(Qt::Key_Return); // the job that is proposed
    EXPECT_EQ(settings().job, text("Développeur mobile"));
    ASSERT_TRUE(says("Tes projets"));
    ASSERT_TRUE(reach("Suivre tiravue"));
    press(Qt::Key_Return);
    test::spinUntil([this] { return settings().projects.size() == 1; });
    EXPECT_EQ(model().found()->count(), 1) << "it is no longer proposed";
    test::settle();
    EXPECT_EQ(nameOf(*window().activeFocusItem()), text("Suivre potager"));
    ASSERT_TRUE(reach("Continuer"));
    press(Qt::Key_Return);
    ASSERT_TRUE(says("Tes domaines"));
    type(QStringLiteral("qt"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests, QList<QString>{text("qt")});
    press(Qt::Key_Right, Qt::ControlModifier); // nothing: only ⌘← goes anywhere
    test::spinUntil([this] { return model().topicProposals()->count() == 1; });
    ASSERT_TRUE(reach("Ajouter React Native"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests.size(), 2);
    EXPECT_EQ(model().topicProposals()->count(), 0);
    EXPECT_EQ(nameOf(*window().activeFocusItem()), text("Ajouter un domaine"));
    ASSERT_TRUE(reach("Continuer"));
    press(Qt::Key_Return);
    ASSERT_TRUE(says("Ton IA") && says("✓ prêt"));
    press(Qt::Key_Left, Qt::ControlModifier);
    ASSERT_TRUE(says("Tes domaines"));
    model().next();
    press(Qt::Key_Return);
    ASSERT_TRUE(says("Quand") && says("Ensuite, je fouille seul chaque lundi à 8:00."));
    EXPECT_FALSE(settings().onboarded);
    ASSERT_TRUE(reach("Lancer la première fouille"));
    press(Qt::Key_Return);
    EXPECT_TRUE(settings().onboarded);
    EXPECT_FALSE(settings().calibrated) << "the guided triage is still to come";
    EXPECT_FALSE(model().isShown());
    test::spinUntil([this] { return !shell().run()->running(); });
    EXPECT_FALSE(window().property("covered").toBool());
}

TEST_F(OnboardingTest, nothing_that_is_being_written_goes_with_its_step) {
    preferences().change(&Settings::projects, {{text("Tiravue"), QString()}});
    preferences().change(&Settings::onboardingStep, 1);
    begin();
    ASSERT_TRUE(reach("Tiravue"));
    press(Qt::Key_Return);
    type(QStringLiteral("une app"));
    click(QStringLiteral("Continuer"));
    EXPECT_EQ(settings().projectDescriptions.value(text("Tiravue")), text("une app"));
    ASSERT_TRUE(says("Tes domaines"));
    type(QStringLiteral("qt"));
    click(QStringLiteral("Continuer"));
    EXPECT_EQ(settings().interests, QList<QString>{text("qt")});
    ASSERT_TRUE(says("Ton IA"));
    model().back();
    test::settle();
    type(QStringLiteral("QT"));
    press(Qt::Key_Return);
    EXPECT_TRUE(says("C’est déjà dans tes domaines."));
    click(QString::fromUtf8("‹ Retour"));
    EXPECT_TRUE(says("Tes domaines")) << "the field waits for an answer";
    press(Qt::Key_Escape); // gives it up
    EXPECT_TRUE(model().isShown());
    press(Qt::Key_Escape);
    EXPECT_FALSE(model().isShown());
    // An agent is chosen, and the keyboard stays on it.
    preferences().change(&Settings::onboardingStep, 3);
    model().open();
    test::settle();
    press(Qt::Key_Tab); // the button of the first
    press(Qt::Key_Tab);
    const QString agent = nameOf(*window().activeFocusItem());
    press(Qt::Key_Space);
    EXPECT_EQ(nameOf(*window().activeFocusItem()), agent);
    EXPECT_TRUE(settings().agent);
    // The job shows what a command sets.
    model().beginAgain();
    preferences().change(&Settings::job, text("Luthière"));
    EXPECT_TRUE(says("Luthière"));
}

TEST_F(OnboardingTest, passing_over_takes_what_can_be_taken_and_leaves_what_was_refused) {
    preferences().change(&Settings::interests, {text("qt")});
    preferences().change(&Settings::onboardingStep, 2);
    begin();
    test::settle();
    const struct {
        const char *written;
        QList<QString> interests;
    } cases[] = {{"QT", {text("qt")}}, {"rust", {text("qt"), text("rust")}}};
    for (const auto &each : cases) {
        ASSERT_TRUE(says("Tes domaines"));
        type(text(each.written));
        press(Qt::Key_Return);
        click(QStringLiteral("Passer"));
        EXPECT_TRUE(says("Ton IA")) << each.written;
        EXPECT_EQ(settings().interests, each.interests);
        model().back();
        test::settle();
    }
    EXPECT_FALSE(shownTexts().contains(text("QT"))) << "it was passed over";
    // A job that cannot be one.
    model().beginAgain();
    test::settle();
    ASSERT_TRUE(reach("Ton métier, en quelques mots"));
    const auto before = settings().job;
    QQuickItem *job = window().activeFocusItem();
    job->setProperty("text", QString(500, u'x'));
    QMetaObject::invokeMethod(job, "textEdited");
    QCoreApplication::processEvents();
    EXPECT_EQ(settings().job, before);
    click(QStringLiteral("Passer"));
    EXPECT_TRUE(says("Tes projets"));
    EXPECT_EQ(settings().job, before);
}

TEST_F(OnboardingTest, a_step_opens_at_its_top_in_a_low_window) {
    preferences().change(&Settings::onboardingStep, 1);
    begin();
    window().resize(700, 500);
    ASSERT_TRUE(reach("Choisir un dossier…")); // below the fold
    model().next();
    model().next();
    QTest::qWait(60); // laid out
    const auto agents =
        shown([](const QQuickItem &item) { return item.property("agent").isValid(); });
    ASSERT_EQ(agents.size(), 2);
    EXPECT_GE(agents.first()->mapToScene({0, 0}).y(), 20 + 92) << "half of it is hidden";
}

TEST_F(OnboardingTest, is_left_and_taken_up_and_done_without_a_word) {
    begin();
    EXPECT_FALSE(shell().agentStates()->isReady());
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    EXPECT_FALSE(model().isShown());
    EXPECT_TRUE(model().isUnfinished());
    EXPECT_EQ(settings().onboardingStep, 1) << "in the next process too";
    press(Qt::Key_2, Qt::ControlModifier); // the window is there
    EXPECT_EQ(shell().sections()->current(), Section::Program);
    model().open();
    EXPECT_TRUE(says("Tes projets"));
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(says("Tes projets")) << "nothing goes on behind it";
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(reach("Passer"));
        press(Qt::Key_Return);
    }
    ASSERT_TRUE(says("Quand"));
    EXPECT_TRUE(says("Rien à fouiller"));
    press(Qt::Key_Return); // there is nothing to run
    EXPECT_TRUE(model().isShown());
    ASSERT_TRUE(reach("Plus tard"));
    press(Qt::Key_Return);
    EXPECT_TRUE(settings().onboarded);
    EXPECT_FALSE(model().isUnfinished());
    EXPECT_FALSE(shell().run()->running());
    model().beginAgain(); // from the settings
    EXPECT_TRUE(says("Toi d’abord"));
    EXPECT_TRUE(settings().onboarded);
}

TEST_F(OnboardingTest, who_has_run_vorle_before_is_not_asked) {
    preferences().change(&Settings::lastSearch, m_app->clock().now());
    open();
    EXPECT_FALSE(model().isShown());
    EXPECT_FALSE(model().isUnfinished());
}

TEST_F(OnboardingTest, the_demonstration_opens_beside_and_its_end_is_told_once) {
    const struct {
        const char *program;
        QStringList arguments;
        bool fails;
    } cases[] = {{"/bin/sh", {text("-c"), text("test $VORLE_DEMO_RETURN = 1")}, false},
                 {"/bin/sh", {text("-c"), text("exit 3")}, true},
                 {"/nowhere/vorle", {}, true}};
    for (const auto &one : cases) {
        DemoProcess demo(QString::fromUtf8(one.program), one.arguments);
        QStringList ends;
        QObject::connect(&demo, &DemoProcess::ended, [&](const QString &why) { ends += why; });
        demo.start();
        test::spinUntil([&] { return !ends.isEmpty(); });
        EXPECT_EQ(ends.size(), 1);
        EXPECT_EQ(!ends.first().isEmpty(), one.fails) << ends.first().toStdString();
        EXPECT_FALSE(demo.isRunning());
    }
    auto left = std::make_unique<DemoProcess>(text("/bin/sleep"), QStringList{text("600")});
    bool started = false;
    QObject::connect(left.get(), &DemoProcess::started, [&] { started = true; });
    left->start();
    test::spinUntil([&] { return started; });
    left.reset(); // with the app that opened it
}

} // namespace
} // namespace vorle
