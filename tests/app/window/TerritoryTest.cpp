// "Ton territoire" by keys alone, and as a screen reader has it.

#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QAccessible>

namespace vorle {
namespace {

using test::text;

class TerritoryTest : public test::OpenWindow {
protected:
    void openTerritory() {
        open();
        press(Qt::Key_5, Qt::ControlModifier);
        test::settle();
    }
    ~TerritoryTest() override {
        shell().territory()->setActive(false);
        test::settle();
    }
    const Settings &settings() const { return m_app->preferences().settings(); }
    /// The name of what has the keyboard, as it is heard.
    QString heard() {
        QAccessibleInterface *has =
            QAccessible::queryAccessibleInterface(window().activeFocusItem());
        return has == nullptr ? QString() : has->text(QAccessible::Name);
    }
    /// Goes on with the Tab key until that is heard.
    void tabTo(const char *name) {
        for (int i = 0; i < 80 && heard() != text(name); ++i) {
            press(Qt::Key_Tab);
        }
        EXPECT_EQ(heard(), text(name));
    }
    static Topic dismissedVideo(int number) {
        Topic topic = test::sampleTopic(text("Vidéo %1").arg(number), TopicStatus::Dismissed);
        topic.kind = text("video");
        topic.triagedAt = topic.foundAt;
        return topic;
    }
    void write(const QString &words) {
        for (const QChar letter : words) {
            QTest::keyClick(&window(), letter.toLatin1());
        }
    }
};

TEST_F(TerritoryTest, an_interest_is_added_weighed_renamed_removed_and_taken_back_by_keys) {
    m_app->preferences().change(&Settings::interests, {text("photo"), text("rust")});
    openTerritory();
    tabTo("Ajouter un domaine");
    write(text("velo en ville"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests.last(), text("velo en ville"));
    write(text("VELO en ville"));
    press(Qt::Key_Return);
    EXPECT_TRUE(shownTexts().contains(text("C’est déjà dans tes domaines.")));
    EXPECT_EQ(settings().interests.size(), 3);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    press(Qt::Key_Backtab);
    EXPECT_EQ(heard(), text("Importance de photo"));
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_1);
    EXPECT_EQ(settings().interestWeights,
              (QMap<QString, int>{{text("rust"), 4}, {text("velo en ville"), 1}}));
    press(Qt::Key_Ampersand); // the 1 of a French keyboard
    press(Qt::Key_Eacute);
    EXPECT_EQ(settings().interestWeights[text("velo en ville")], 2);
    press(Qt::Key_Return);
    press(Qt::Key_A, Qt::ControlModifier);
    write(text("velo"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests.last(), text("velo"));
    EXPECT_EQ(settings().interestWeights.value(text("velo")), 2);
    EXPECT_EQ(heard(), text("Importance de velo"));
    press(Qt::Key_Up);
    press(Qt::Key_Delete);
    EXPECT_EQ(settings().interests, (QList<QString>{text("photo"), text("velo")}));
    EXPECT_EQ(heard(), text("Importance de velo")) << "the keyboard stays in the list";
    EXPECT_TRUE(shownTexts().contains(text("«\u202Frust\u202F» est retiré")));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(settings().interests[1], text("rust"));
    EXPECT_EQ(settings().interestWeights.value(text("rust")), 4);
    EXPECT_EQ(heard(), text("Importance de velo"));
    ASSERT_TRUE(m_app->preferences().flush());
    EXPECT_TRUE(m_app.program.read("config/vorle/settings.json").contains("\"velo\""));
}

TEST_F(TerritoryTest, what_a_command_changes_is_seen_and_leaves_what_is_being_written) {
    m_app->preferences().change(&Settings::interests, {text("photo")});
    m_app->preferences().watch();
    openTerritory();
    tabTo("Ajouter un domaine");
    write(text("bro"));
    EXPECT_EQ(m_app.program.run("reglages interests [\"photo\",\"jardin\"]").status, 0);
    test::spinUntil([&] { return shownTexts().contains(text("jardin")); });
    write(text("derie"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests,
              (QList<QString>{text("photo"), text("jardin"), text("broderie")}));
}

TEST_F(TerritoryTest, panels_show_what_is_sent_which_apps_and_start_again_only_when_told) {
    m_app->preferences().change(&Settings::interests, {text("photographie")});
    QList<Topic> topics;
    for (int i = 0; i < 12; ++i) {
        topics += dismissedVideo(i);
    }
    store().add(topics);
    openTerritory();
    test::spinUntil([&] { return !shell().territory()->preview()->questions().isEmpty(); });
    shell().territory()->reflexes()->setActive(true);
    tabTo("Repartir de zéro…");
    press(Qt::Key_Return);
    EXPECT_EQ(heard(), text("Garder mes réflexes"))
        << "the keyboard stands on what changes nothing";
    press(Qt::Key_Return);
    EXPECT_FALSE(settings().reflexesSince);
    tabTo("Les sujets de type «\u202FVidéo\u202F» sont souvent écartés.");
    press(Qt::Key_Space);
    EXPECT_EQ(settings().disabledReflexes, QList<QString>{text("kind-video")});
    press(Qt::Key_Space);
    EXPECT_TRUE(settings().disabledReflexes.isEmpty());
    press(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(text("Vidéo 3")); }))
        << shownTexts().join(u'\n').toStdString();
    press(Qt::Key_Escape);
    EXPECT_FALSE(window().property("covered").toBool());
}

} // namespace
} // namespace vorle
