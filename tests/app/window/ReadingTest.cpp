#include "briefs/BriefWriter.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;
using testing::Contains;
using testing::Not;

/// The reading page, the panels and the banner: what the hand reaches in them.
class ReadingTest : public test::OpenWindow {
protected:
    QString focused() {
        const QQuickItem *item = window().activeFocusItem();
        return item != nullptr ? item->property("text").toString() : QString();
    }
    /// Goes on by Tab until the button has the keyboard.
    bool tabTo(const QString &button) {
        for (int i = 0; i < 60; ++i) {
            press(Qt::Key_Tab);
            if (focused() == button) {
                return true;
            }
        }
        return false;
    }
    /// How far the page, or the list, that can be seen is scrolled.
    double scrolled(const char *kind) {
        const auto all = shown([&](const QQuickItem &item) {
            const QByteArray name(item.metaObject()->className()); // one with a property of its own
            return name == kind || name.startsWith(QByteArray(kind) + "_QML");
        });
        return all.isEmpty() ? -1
                             : all.last()->property("contentY").toDouble() -
                                   all.last()->property("originY").toDouble();
    }
};

TEST_F(ReadingTest, the_page_is_left_and_turned_by_hand_and_by_key) {
    fill();
    open();
    window().resize(860, 560);
    press(Qt::Key_Space);
    ASSERT_TRUE(enlarged());
    EXPECT_THAT(shownTexts(), Contains(text("1 / 3")));
    click(text("›"));
    EXPECT_EQ(chosen(), u"Sujet 8");
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(chosen(), u"Sujet 7");
    EXPECT_THAT(shownTexts(), Contains(text("3 / 3")));
    press(Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(chosen(), u"Sujet 8");
    EXPECT_EQ(shell().inbox()->count(), 3) << "nothing was decided on the way";

    // Every button of the foot is reached, and the page's own keys still work from there.
    for (const char *button : {"Garder", "Plus tard", "Pas pour moi"}) {
        EXPECT_TRUE(tabTo(text(button))) << button;
    }
    press(Qt::Key_End);
    EXPECT_GT(scrolled("QQuickFlickable"), 100);
    press(Qt::Key_PageUp);
    press(Qt::Key_Home);
    EXPECT_EQ(scrolled("QQuickFlickable"), 0);

    // Decided there, it says where it went.
    press(Qt::Key_L);
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Reserve);
    EXPECT_TRUE(enlarged());
    EXPECT_THAT(shownTexts(), Contains(text("Plus tard · Réserve\u00A0: Sujet 8")));
    click(text("‹ À trier"));
    EXPECT_FALSE(enlarged());
}

TEST_F(ReadingTest, the_next_topic_and_the_source_are_a_key_away_and_nothing_is_decided) {
    fill();
    open();
    press(Qt::Key_Space);
    const struct {
        Qt::Key key;
        QString then;
    } turns[] = {{Qt::Key_J, text("Sujet 8")},   {Qt::Key_Down, text("Sujet 7")},
                 {Qt::Key_J, text("Sujet 7")},   {Qt::Key_K, text("Sujet 8")},
                 {Qt::Key_Up, text("Sujet 9")},  {Qt::Key_K, text("Sujet 9")},
                 {Qt::Key_Down, text("Sujet 8")}};
    for (const auto &[key, then] : turns) {
        press(key);
        EXPECT_EQ(chosen(), then);
        EXPECT_TRUE(enlarged());
    }
    EXPECT_EQ(shell().inbox()->count(), 3);

    const QString link = store()
                             .topic(QUuid::fromString(window().property("chosenId").toString()))
                             ->mainSource()
                             ->url;
    for (const Qt::Key key : {Qt::Key_O, Qt::Key_Return}) {
        m_links.opened.clear();
        press(key);
        EXPECT_EQ(m_links.opened, QList<QUrl>{QUrl(link)}) << key;
    }
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(m_pasteboard.text(), link);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(text("Lien copié.")); }, 3000));

    // Words that are marked are what is copied; the pasteboard of the system has those.
    m_pasteboard.replace({});
    const auto texts = shown([](const QQuickItem &item) {
        return item.inherits("QQuickTextEdit") &&
               item.property("text").toString() == text("Raison 8");
    });
    ASSERT_FALSE(texts.isEmpty());
    QMetaObject::invokeMethod(texts.first(), "selectAll");
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(m_pasteboard.text(), QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text("Raison 8"));

    // A button that has the keyboard takes Return; a note that is written takes letters.
    ASSERT_TRUE(tabTo(text("D’où vient la note")));
    m_links.opened.clear();
    press(Qt::Key_Return);
    EXPECT_TRUE(m_links.opened.isEmpty());
    for (int i = 0; i < 20 && !window().activeFocusItem()->inherits("QQuickTextArea"); ++i) {
        press(Qt::Key_Tab);
    }
    type(text("jok"));
    EXPECT_EQ(chosen(), text("Sujet 8"));
    EXPECT_TRUE(m_links.opened.isEmpty());
}

TEST_F(ReadingTest, a_command_is_copied_as_it_is_typed) {
    Topic topic = test::sampleTopic(text("Une commande"));
    topic.firstStep = text("Lance « npx expo install --check », puis regarde.");
    store().add({topic});
    open();
    press(Qt::Key_Space);
    click(text("Copier"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text("npx expo install --check"));
    EXPECT_THAT(shownTexts(), Contains(text("Copié")));
}

TEST_F(ReadingTest, a_picture_heads_the_page_and_moves_nothing_when_it_arrives) {
    const QTemporaryDir pictures;
    m_app.variables.set("VORLE_PICTURES", pictures.path());
    const auto draw = [&](const QString &name, QSize size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkRed);
        image.save(pictures.filePath(name), "PNG");
    };
    draw(text("wide.img"), {1200, 630});
    draw(text("icon.img"), {64, 64});
    QList<Topic> topics;
    for (const char *name : {"wide.img", "icon.img", "absent.img", ""}) {
        Topic topic = test::sampleTopic(text("Sujet ") + text(name));
        topic.score = 9 - static_cast<int>(topics.size());
        if (*name != 0) {
            topic.gallery = {{topic.mainSource()->url, text(name)}};
        }
        topics += topic;
    }
    store().add(topics);
    open();
    press(Qt::Key_Space);
    const auto pictureOver = [&](int least) {
        const auto found = shown([&](const QQuickItem &item) {
            return QByteArrayView(item.metaObject()->className()).startsWith("SourcePicture_") &&
                   item.width() >= least;
        });
        return found.isEmpty() ? nullptr : found.first();
    };
    const auto titleTop = [&] {
        const auto titles = shown([&](const QQuickItem &item) {
            return item.inherits("QQuickTextEdit") &&
                   item.property("text").toString().startsWith(text("Sujet "));
        });
        return titles.isEmpty() ? -1 : titles.first()->mapToScene({0, 0}).y();
    };
    ASSERT_EQ(chosen(), text("Sujet wide.img"));
    ASSERT_EQ(shell().page()->banner(), text("wide.img"));
    QQuickItem *banner = pictureOver(400);
    ASSERT_NE(banner, nullptr);
    const double before = titleTop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return banner->property("ready").toBool(); }, 5000));
    EXPECT_EQ(titleTop(), before);
    EXPECT_NEAR(banner->width(), banner->height() * 3, 2);

    for (int i = 0; i < 3; ++i) {
        press(Qt::Key_J);
        EXPECT_EQ(pictureOver(400), nullptr) << chosen().toStdString();
    }
    // One that a run finds now is shown the next time.
    const double top = titleTop();
    const QUuid id = QUuid::fromString(window().property("chosenId").toString());
    store().setGallery(id, {{text("https://example.org/a"), text("wide.img")}});
    QTest::qWait(50);
    EXPECT_EQ(titleTop(), top);
    press(Qt::Key_K);
    press(Qt::Key_J);
    EXPECT_NE(pictureOver(400), nullptr);
}

TEST_F(ReadingTest, a_note_undone_leaves_its_field_too) {
    fill();
    open();
    const QString id = window().property("chosenId").toString();
    window().resize(860, 560);
    press(Qt::Key_Space);
    press(Qt::Key_End);
    const double place = scrolled("QQuickFlickable");
    EXPECT_GT(place, 100);
    shell().decisions()->setNote(id, text("le soir"));
    EXPECT_THAT(shownTexts(), Contains(text("le soir")));
    EXPECT_EQ(scrolled("QQuickFlickable"), place) << "it is the same page still";
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(shownTexts(), Not(Contains(text("le soir"))));
    EXPECT_FALSE(store().topic(QUuid::fromString(id))->note);
}

TEST_F(ReadingTest, a_failed_brief_says_why) {
    fill();
    open();
    press(Qt::Key_Space);
    shell().page()->askBrief(); // no agent is there
    const QUuid id = QUuid::fromString(window().property("chosenId").toString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_app->briefs().failed().contains(id); }, 30000));
    const QString why = m_app->briefs().failureText(id);
    ASSERT_FALSE(why.isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return shownTexts().contains(why); }, 3000));
}

TEST_F(ReadingTest, a_score_is_corrected_and_given_back_without_inventing_one) {
    fill();
    Topic unread = test::sampleTopic(text("Pas lu"));
    unread.readLevel = ReadLevel::None;
    unread.score = 0;
    store().add({unread});
    open();
    const auto ask = [this](const QString &id) {
        shell().actions()->selection()->show(id);
        m_main->perform(KeyboardMap::Correct);
        QCoreApplication::processEvents();
    };
    const auto correction = [this](const QString &id) {
        return store().topic(QUuid::fromString(id))->correction;
    };
    const QString none = unread.id.toString(QUuid::WithoutBraces).toUpper();
    ask(none);
    EXPECT_TRUE(shownTexts().filter(text("J’avais mis")).isEmpty());
    press(Qt::Key_Return); // no score was chosen
    EXPECT_FALSE(correction(none));
    press(Qt::Key_6);
    click(text("pas fiable"));
    press(Qt::Key_Return);
    ASSERT_TRUE(correction(none));
    EXPECT_EQ(correction(none)->tags, QList<QString>{text("pas fiable")});
    QMetaObject::invokeMethod(&window(), "showTopic", Q_ARG(int, int(Section::Inbox)),
                              Q_ARG(QString, none));
    press(Qt::Key_Space);
    EXPECT_THAT(shownTexts(), Not(Contains(text("Revoir ma note")))) << "it is folded";
    ASSERT_TRUE(tabTo(text("D’où vient la note")));
    press(Qt::Key_Return);
    EXPECT_THAT(shownTexts(), Contains(text("Revoir ma note"))) << "it is a score of one's own";
    press(Qt::Key_Escape);
    press(Qt::Key_Home);
    ask(none);
    EXPECT_TRUE(shownTexts().filter(text("J’avais mis")).isEmpty());
    click(text("Retirer ma note"));
    EXPECT_FALSE(correction(none));

    // The same score as vorle's is one's own all the same.
    press(Qt::Key_Home);
    const QString id = window().property("chosenId").toString();
    shell().correct(id, 9, {}, {});
    ask(id);
    EXPECT_THAT(shownTexts(), Contains(text("J’avais mis 9.")));
    EXPECT_GE(buttonAt(text("Reprendre la note de vorle")).y(), 0);
    press(Qt::Key_3);
    ASSERT_TRUE(tabTo(text("Annuler")));
    press(Qt::Key_Return); // notes, whatever has the keyboard
    EXPECT_EQ(correction(id)->score, 3);
    EXPECT_FALSE(window().property("covered").toBool());

    ask(id);
    for (int i = 0; i < 9 && !window().activeFocusItem()->inherits("QQuickTextField"); ++i) {
        press(Qt::Key_Tab);
    }
    type(text("Vieux"));
    press(Qt::Key_Return);
    EXPECT_EQ(correction(id)->text, u"Vieux");
    EXPECT_FALSE(window().property("covered").toBool());
    press(Qt::Key_Z, Qt::ControlModifier);

    // The last thing done is the first undone, and done again.
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(correction(id)->score, 9);
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(correction(id));
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(correction(id)->score, 9);
}

TEST_F(ReadingTest, a_link_still_being_read_offers_to_be_sent_away_alone) {
    Topic link = test::sampleTopic(text("Un lien"), TopicStatus::Pending);
    link.capturedURL = text("https://example.org/lien");
    store().add({link});
    open();
    ASSERT_EQ(chosen(), link.title);
    shell().inbox()->setCaptureProblem(link.id, {}); // no agent is there to read it
    EXPECT_EQ(shell().inbox()->card(0).subject(), text("Capturé par toi"));
    EXPECT_EQ(shell().inbox()->card(0).closedFacts(), text("je le lis… · example.org"));
    for (int i = 0; i < 2; ++i) { // on its card, then on its page
        EXPECT_EQ(buttonAt(text("Garder")).y(), -1);
        EXPECT_EQ(buttonAt(text("Plus tard")).y(), -1);
        EXPECT_GE(buttonAt(text("Pas pour moi")).y(), 0);
        for (const Qt::Key key : {Qt::Key_G, Qt::Key_L}) {
            press(key);
            EXPECT_EQ(statusOf(link.title), TopicStatus::Pending);
            EXPECT_FALSE(shownTexts().filter(text("Je lis encore cette page")).isEmpty());
        }
        EXPECT_EQ(buttonAt(text("D’où vient la note")).y(), -1) << "there is none yet";
        press(Qt::Key_Space);
    }
    press(Qt::Key_X);
    EXPECT_EQ(statusOf(link.title), TopicStatus::Dismissed);
}

TEST_F(ReadingTest, the_banner_says_what_holds_and_leads_to_what_helps) {
    fill();
    open();
    press(Qt::Key_R, Qt::ControlModifier); // there is nothing to search
    ASSERT_TRUE(QTest::qWaitFor([this] { return shell().run()->nothingToSearch(); }, 5000));
    click(text("Ouvrir Ton territoire"));
    EXPECT_EQ(shell().sections()->current(), Section::Territory);
    // It lies over no title.
    const auto heads = shown([](const QQuickItem &item) {
        return QByteArrayView(item.metaObject()->className()).startsWith("SectionHead_");
    });
    ASSERT_EQ(heads.size(), 1);
    EXPECT_GE(heads.first()->mapToScene({0, 0}).y(), 58);

    QList<QString> interests;
    for (int i = 0; i < 40; ++i) {
        interests += text("Domaine %1").arg(i);
    }
    m_app->preferences().change(&Settings::interests, interests);
    EXPECT_EQ(buttonAt(text("Ouvrir Ton territoire")).y(), -1) << "it holds no longer";
    QCoreApplication::processEvents();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End}) {
        const double before = scrolled("QQuickFlickable");
        press(key);
        EXPECT_GT(scrolled("QQuickFlickable"), before) << key;
    }
    press(Qt::Key_Home);
    EXPECT_EQ(scrolled("QQuickFlickable"), 0);

    // A first step that fails is told until one works.
    press(Qt::Key_2, Qt::ControlModifier);
    m_links.takes = false;
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !shell().notice().isEmpty(); }, 5000));
    m_links.takes = true;
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return shell().notice().isEmpty(); }, 5000));
}

TEST_F(ReadingTest, links_are_opened_and_offered_as_they_would_be_kept) {
    open();
    const QString wrapped = text("https://lettre.example/?u=") + QString(3'000, u'x');
    const std::pair<QString, QString> cases[] = {
        {text("https://a.fr/"), text("https://a.fr/")},
        {text(" HTTP://a.fr/?a=b#c\n"), text("http://a.fr/?a=b#c")},
        {text("https://github.com@evil.example/x"), text("https://evil.example/x")},
        {text("https://a.fr/deux mots"), text("https://a.fr/deux%20mots")},
        {wrapped, wrapped},
        {wrapped.repeated(2), {}},
        {text("https://a.fr/\nhttps://b.fr/"), {}},
        {text("file:///etc/passwd"), {}},
        {text("mailto:a@example.org"), {}},
        {text("vscode://x/y"), {}},
        {text("example.org"), {}},
        {{}, {}},
    };
    for (const auto &[given, link] : cases) {
        m_links.opened.clear();
        shell().openLink(given);
        EXPECT_EQ(m_links.opened, link.isEmpty() ? QList<QUrl>() : QList<QUrl>{QUrl(link)})
            << given.toStdString();
        m_pasteboard.replace(given);
        EXPECT_EQ(shell().linkOnPasteboard(), link) << given.toStdString();
    }
}

TEST_F(ReadingTest, what_is_told_goes_once_it_holds_no_longer) {
    open();
    Q_EMIT m_app->preferences().saveFailed(text("Le réglage n’a pas pu être enregistré : plein."));
    EXPECT_EQ(shell().notice(), text("Le réglage n’a pas pu être enregistré\u00A0: plein."));
    Q_EMIT m_app->preferences().saved();
    EXPECT_EQ(shell().notice(), QString());

    // Links that could not be judged (no agent is there), until the last is judged or sent away.
    const auto failed = [this](int count) {
        return QTest::qWaitFor(
            [&] {
                int found = 0;
                for (int row = 0; row < shell().inbox()->count(); ++row) {
                    const QString why = shell().inbox()->card(row).captureProblem();
                    found += why.isEmpty() ? 0 : 1;
                }
                return found == count;
            },
            20000);
    };
    for (const char *page : {"a", "b", "c"}) {
        ASSERT_EQ(shell().addLink(text("http://127.0.0.1:9/") + text(page), {}), QString());
    }
    ASSERT_TRUE(failed(3));
    EXPECT_TRUE(shell().notice().startsWith(text("3 liens que tu as ajoutés attendent encore")))
        << shell().notice().toStdString();
    const QList<TopicPtr> links = store().topics(TopicStatus::Pending);
    Topic judged = *links.at(0);
    judged.readLevel = ReadLevel::Full;
    ASSERT_TRUE(store().completeCaptured(judged));
    Q_EMIT m_app->capture().completed(judged.id);
    EXPECT_TRUE(shell().notice().startsWith(text("2 liens que tu as ajoutés attendent encore")));
    store().dismiss(links.at(1)->id);
    EXPECT_TRUE(
        shell().notice().startsWith(text("Un lien que tu as ajouté attend encore\u00A0: ")));

    // Tried again, its card no longer says that it failed, until it fails again.
    int cleared = 0;
    QObject::connect(shell().inbox(), &TopicListModel::dataChanged, &window(), [&] {
        const int row = shell().inbox()->rowOf(links.at(2)->id.toString());
        cleared += shell().inbox()->card(row).captureProblem().isEmpty();
    });
    shell().takeRemedy();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shell().notice().isEmpty(); }, 20000));
    EXPECT_GE(cleared, 1);
    store().dismiss(links.at(2)->id);
    EXPECT_EQ(shell().notice(), QString());
}

TEST_F(ReadingTest, every_text_is_set_as_French_sets_it) {
    fill();
    open();
    ASSERT_EQ(shell().addLink(text("http://127.0.0.1:9/a"), {}), QString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shell().notice().isEmpty(); }, 20000));
    shell().page()->setTopicId(window().property("chosenId").toString());
    shell().page()->askBrief();
    m_app->preferences().change(&Settings::interests, {text("Rust")});
    press(Qt::Key_R, Qt::ControlModifier); // fails: no agent is there
    ASSERT_TRUE(QTest::qWaitFor([this] { return !shell().run()->lastError().isEmpty(); }, 20000));
    shell().addLink(text("pas un lien"), {});
    QStringList said{shell().notice(), shell().run()->lastError(), shell().run()->lastErrorTitle(),
                     shell().page()->briefFailure(), shell().run()->missedText()};
    const auto hear = [&] {
        // Those that can be marked tell of a no-break blank as of a plain one.
        for (const QQuickItem *item :
             shown([](const QQuickItem &each) { return each.inherits("QQuickText"); })) {
            said += item->property("text").toString();
        }
    };
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6}) {
        press(key, Qt::ControlModifier);
        hear();
        press(Qt::Key_Space);
        hear();
        press(Qt::Key_Escape);
    }
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_Comma, Qt::Key_K}) {
        press(key, Qt::ControlModifier);
        hear();
        press(Qt::Key_Escape);
    }
    EXPECT_GT(said.size(), 100);
    static const QRegularExpression breaking(
        QStringLiteral("(?<!\\s) (?=»|[;:!?]+(\\s|$))|« |\u00A0(?=[;!?»])"));
    for (const QString &words : said) {
        EXPECT_FALSE(breaking.match(words).hasMatch()) << words.toStdString();
    }
}

TEST_F(ReadingTest, a_window_that_filled_the_screen_does_so_again) {
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
