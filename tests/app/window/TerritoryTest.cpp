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
    ~TerritoryTest() override { leave(); }
    void leave() {
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
    /// The text of the field that has the keyboard.
    QString field() {
        const QQuickItem *item = window().activeFocusItem();
        return item == nullptr ? QString() : item->property("text").toString();
    }
    /// Clears the field and writes that.
    void writeAnew(const char *words) {
        press(Qt::Key_A, Qt::ControlModifier);
        press(Qt::Key_Delete);
        write(text(words));
    }
    bool says(const char *words) { return shownTexts().contains(text(words)); }
    /// The row of a list that is called so.
    QQuickItem *row(const char *name) {
        const auto rows = shown(
            [&](const QQuickItem &item) { return item.property("key").toString() == text(name); });
        return rows.isEmpty() ? nullptr : rows.first();
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
    EXPECT_EQ(heard(), text("Importance\u00A0: photo"));
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
    EXPECT_EQ(heard(), text("Importance\u00A0: velo"));
    press(Qt::Key_Up);
    press(Qt::Key_Delete);
    EXPECT_EQ(settings().interests, (QList<QString>{text("photo"), text("velo")}));
    EXPECT_EQ(heard(), text("Importance\u00A0: velo")) << "the keyboard stays in the list";
    EXPECT_TRUE(shownTexts().contains(text("«\u202Frust\u202F» est retiré")));
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(settings().interests[1], text("rust"));
    EXPECT_EQ(settings().interestWeights.value(text("rust")), 4);
    EXPECT_EQ(heard(), text("Importance\u00A0: velo"));
    ASSERT_TRUE(m_app->preferences().flush());
    EXPECT_TRUE(m_app.program.read("config/vorle/settings.json").contains("\"velo\""));
}

TEST_F(TerritoryTest, leaving_a_field_takes_what_is_written_and_escape_alone_gives_it_up) {
    m_app->preferences().change(&Settings::projects, {{text("Tiravue"), QString()}});
    m_app->preferences().change(&Settings::interests, {text("photo"), text("rust")});
    m_app->preferences().change(&Settings::prioritySites, {{text("a.example"), {}, {}}});
    openTerritory();
    tabTo("Tiravue");
    press(Qt::Key_Return);
    write(text("une app"));
    press(Qt::Key_Tab);
    test::settle();
    EXPECT_EQ(settings().projectDescriptions.value(text("Tiravue")), text("une app"));
    press(Qt::Key_Backtab);
    press(Qt::Key_Return);
    writeAnew("autre chose");
    press(Qt::Key_Escape);
    EXPECT_EQ(heard(), text("Tiravue"));
    test::settle();
    EXPECT_EQ(settings().projectDescriptions.value(text("Tiravue")), text("une app"));

    tabTo("Importance\u00A0: photo");
    press(Qt::Key_Return);
    writeAnew("argentique");
    press(Qt::Key_2, Qt::ControlModifier); // another section
    test::settle();
    EXPECT_EQ(settings().interests, (QList<QString>{text("argentique"), text("rust")}));
    press(Qt::Key_5, Qt::ControlModifier);

    tabTo("a.example");
    press(Qt::Key_Return);
    writeAnew("b.example");
    m_main->finishEditing(); // the window goes to the menu bar, or the app ends
    EXPECT_EQ(settings().prioritySites.first().address, text("b.example"));
}

TEST_F(TerritoryTest, what_is_refused_stays_in_its_field_and_says_why) {
    m_app->preferences().change(&Settings::interests, {text("photo"), text("rust")});
    m_app->preferences().change(&Settings::prioritySites,
                                {{text("a.example"), {}, {}}, {text("b.example"), {}, {}}});
    m_app->preferences().change(&Settings::addedTools, {text("Figma")});
    openTerritory();
    tabTo("Importance\u00A0: photo");
    press(Qt::Key_Return);
    writeAnew("Rust");
    press(Qt::Key_Tab);
    test::settle();
    EXPECT_TRUE(says("C’est déjà dans tes domaines."));
    EXPECT_TRUE(row("photo")->property("editing").toBool());
    EXPECT_TRUE(says("Rust")) << "what was written still stands";
    EXPECT_EQ(settings().interests[0], text("photo"));

    tabTo("a.example");
    press(Qt::Key_Return);
    const qreal below = row("b.example")->y();
    writeAnew("b.example/");
    press(Qt::Key_Return);
    test::settle();
    EXPECT_EQ(field(), text("b.example/"));
    QTest::qWait(60); // laid out
    EXPECT_GT(row("b.example")->y(), below) << "the sentence has a place of its own";
    press(Qt::Key_Escape);

    tabTo("Figma");
    press(Qt::Key_Right); // "+ Ajouter un outil"
    press(Qt::Key_Return);
    write(text("figma"));
    press(Qt::Key_Return);
    EXPECT_TRUE(says("C’est déjà dans tes outils."));
    EXPECT_EQ(field(), text("figma"));
    write(text(" b"));
    press(Qt::Key_Backtab);
    test::settle();
    EXPECT_TRUE(says("figma b")) << "what was not taken yet stays, too";
    EXPECT_EQ(settings().addedTools, QList<QString>{text("Figma")});
}

TEST_F(TerritoryTest, what_stands_in_a_line_that_adds_is_there_at_the_next_start_and_adds_nothing) {
    openTerritory();
    tabTo("Ajouter un domaine");
    write(text("brode"));
    tabTo("+ Ajouter un outil");
    press(Qt::Key_Return);
    write(text("Figm"));
    tabTo("Ajouter un site que tu lis déjà");
    write(text("exam"));
    m_main->finishEditing(); // the app ends
    m_main->saveState();
    EXPECT_TRUE(settings().interests.isEmpty() && settings().addedTools.isEmpty());
    EXPECT_TRUE(settings().prioritySites.isEmpty());
    leave();
    close();

    openTerritory();
    EXPECT_TRUE(says("brode") && says("Figm") && says("exam"));
    tabTo("Ajouter un domaine");
    write(text("rie"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests, QList<QString>{text("broderie")});
    tabTo("Le nom d’un outil");
    EXPECT_EQ(field(), text("Figm"));
    press(Qt::Key_Escape);
    m_main->saveState();
    leave();
    close();

    openTerritory();
    EXPECT_TRUE(says("exam"));
    EXPECT_FALSE(says("Figm")) << "it was given up";
    EXPECT_EQ(shownTexts().count(text("broderie")), 1) << "it was taken";
}

TEST_F(TerritoryTest, a_draft_stands_while_its_list_moves_and_comes_back_with_its_row) {
    m_app->preferences().change(&Settings::interests, {text("a"), text("b"), text("c")});
    openTerritory();
    tabTo("Importance\u00A0: a");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    writeAnew("brouillon");
    // Another window comes to the front; what comes from elsewhere moves the list meanwhile.
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    test::settle();
    m_app->preferences().change(&Settings::interests, {text("z"), text("c"), text("b")});
    EXPECT_TRUE(says("brouillon"));
    EXPECT_TRUE(settings().interests.contains(text("b"))) << "nobody said that it was done";
    m_main->raise();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    EXPECT_EQ(field(), text("brouillon"));
    // Its row goes, and comes back.
    shell().territory()->removeInterest(text("b"));
    test::settle();
    EXPECT_TRUE(says("«\u202Fb\u202F» n’est plus là. Tu écrivais\u00A0: «\u202Fbrouillon\u202F»"));
    EXPECT_EQ(heard(), text("Importance\u00A0: c")) << "the keyboard stays in the list";
    press(Qt::Key_Z, Qt::ControlModifier);
    test::settle();
    ASSERT_TRUE(row("b"));
    EXPECT_TRUE(row("b")->property("editing").toBool());
    EXPECT_TRUE(says("brouillon"));
    EXPECT_FALSE(shownTexts().join(u' ').contains(text("n’est plus là")));
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(field(), text("brouillon"));
    press(Qt::Key_Return);
    EXPECT_EQ(settings().interests.last(), text("brouillon"));
    EXPECT_EQ(heard(), text("Importance\u00A0: brouillon"));
}

TEST_F(TerritoryTest, the_tab_key_goes_on_where_nothing_was_learned) {
    QList<Topic> topics;
    for (int i = 0; i < 12; ++i) { // enough decisions, and no two alike
        Topic topic = test::sampleTopic(text("Sujet %1").arg(i), TopicStatus::Program);
        topic.triagedAt = topic.foundAt;
        topics += topic;
    }
    store().add(topics);
    openTerritory();
    shell().territory()->reflexes()->setActive(true);
    ASSERT_EQ(shell().territory()->reflexes()->rows()->count(), 0);
    press(Qt::Key_Right); // into the content
    press(Qt::Key_End);
    test::settle();
    press(Qt::Key_Tab);
    EXPECT_EQ(heard(), text("Repartir de zéro…"));
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
