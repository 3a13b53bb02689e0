// The small window that takes a link in, by the keyboard alone.

#include "platform/fakes/FakeFrontBrowser.h"
#include "tests/app/window/OpenWindow.h"

#include <QSignalSpy>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using testing::IsEmpty;

class QuickCaptureTest : public test::OpenWindow {
protected:
    QuickCaptureTest() {
        m_app->preferences().change(&Settings::projects,
                                    {{text("Potager"), QString()}, {text("Tiravue"), QString()}});
    }
    static QString text(const char *utf8) { return QString::fromUtf8(utf8); }
    QuickCapture &capture() { return *shell().quickCapture(); }

    /// The panel, which is open and has the keyboard.
    void openPanel(const std::function<void()> &how) {
        how();
        for (QWindow *each : QGuiApplication::topLevelWindows()) {
            if (each->title() == u"Ajouter un sujet") {
                m_panel = qobject_cast<QQuickWindow *>(each);
            }
        }
        ASSERT_NE(m_panel, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_panel));
        QCoreApplication::processEvents();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_panel, key, modifiers);
        QCoreApplication::processEvents();
    }
    void write(const char *words) {
        for (const char *letter = words; *letter != '\0'; ++letter) {
            QTest::keyClick(m_panel, *letter);
        }
    }
    /// Those that the panel added, the last one last.
    QList<TopicPtr> added() { return store().topics(TopicStatus::Pending); }

    QQuickWindow *m_panel = nullptr;
};

TEST_F(QuickCaptureTest, the_copied_link_a_note_and_a_project_are_three_keys_away) {
    m_pasteboard.replace(text("https://example.org/pellicule"));
    open();
    openPanel([&] { shell().openQuickCapture(); });
    test::spinUntil([&] { return !capture().pageAddress().isEmpty(); });
    EXPECT_EQ(capture().pageLine(), text("Presse-papiers · example.org/pellicule"));
    write("Pour le jardin");
    key(Qt::Key_Tab);
    key(Qt::Key_Right);
    key(Qt::Key_Return);
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(added().last()->capturedURL, text("https://example.org/pellicule"));
    EXPECT_EQ(added().last()->note, text("Pour le jardin"));
    EXPECT_EQ(added().last()->project, text("Potager"));
    EXPECT_FALSE(added().last()->sharedAt) << "the user's own";
    EXPECT_TRUE(m_panel->isVisible()) << "it says so for a moment";
    key(Qt::Key_Return);
    EXPECT_EQ(added().size(), 1);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_THAT(added(), IsEmpty()) << "taken back";
    EXPECT_FALSE(m_panel->isVisible());
    // Given once more after all, it is taken.
    openPanel([&] { shell().openQuickCapture(); });
    test::spinUntil([&] { return !capture().pageAddress().isEmpty(); });
    key(Qt::Key_Return);
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(added().last()->note, text("Pour le jardin"));
    key(Qt::Key_Z, Qt::ControlModifier);

    // Échap leaves without a trace, and nothing of it is there the next time.
    m_pasteboard.replace(text("du texte"));
    openPanel([&] { shell().openQuickCapture(); });
    EXPECT_EQ(capture().pageAddress(), QString());
    write("example.org/b");
    key(Qt::Key_Escape);
    EXPECT_FALSE(m_panel->isVisible());
    EXPECT_THAT(added(), IsEmpty());
    openPanel([&] { shell().openQuickCapture(); });
    key(Qt::Key_Return);
    EXPECT_THAT(added(), IsEmpty()) << "there is no link yet";
    write("example.org/c");
    key(Qt::Key_Return);
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(added().last()->capturedURL, text("https://example.org/c"));
    key(Qt::Key_Escape);
    // A second time the same link: the panel says so, and stays.
    openPanel([&] { shell().openQuickCapture(); });
    write("example.org/c");
    key(Qt::Key_Return);
    EXPECT_EQ(capture().problem(), text("Tu as déjà ce lien."));
    EXPECT_TRUE(m_panel->isVisible());
}

TEST_F(QuickCaptureTest, a_browser_that_tells_nothing_is_named_and_the_last_copied_link_stands) {
    test::FakeFrontBrowser firefox;
    firefox.front = text("org.mozilla.firefox");
    m_front = &firefox;
    open();
    const QString sentence = text("Firefox ne laisse pas lire l’onglet");
    const auto says = [&] { return !shownTexts(*m_panel).filter(sentence).isEmpty(); };
    openPanel([&] { shell().openQuickCapture(); });
    test::spinUntil([&] { return says(); });
    const auto comeBackWith = [&](const char *copied) {
        m_pasteboard.replace(text(copied));
        m_main->raise();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
        m_panel->requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_panel));
        QCoreApplication::processEvents();
    };
    for (const char *link : {"https://example.org/a", "https://example.org/b"}) {
        comeBackWith(link);
        EXPECT_EQ(capture().pageAddress(), text(link));
        EXPECT_TRUE(says()) << "the proposed link may be another page's";
    }
    write("Pour B");
    comeBackWith("https://example.org/c");
    EXPECT_EQ(capture().pageAddress(), text("https://example.org/b"))
        << "the note was written for that one";
    EXPECT_FALSE(capture().open({.url = text("https://example.org/d")}));
    QCoreApplication::processEvents();
    EXPECT_FALSE(shownTexts(*m_panel).filter(text("Un autre lien est arrivé")).isEmpty());
    key(Qt::Key_Escape);
    // What is copied is not proposed beside an address without a link, nor is the keyboard taken.
    openPanel([&] { EXPECT_TRUE(capture().open({.url = {}, .problem = text("Pas une page.")})); });
    QSignalSpy raised(&capture(), &QuickCapture::raised);
    EXPECT_TRUE(capture().open({.url = {}, .problem = text("Pas une page.")}));
    EXPECT_EQ(raised.count(), 0);
    EXPECT_TRUE(shownTexts(*m_panel).contains(text("Pas une page.")));
    EXPECT_EQ(capture().pageAddress(), QString());
}

TEST_F(QuickCaptureTest, nothing_is_proposed_where_the_settings_say_so) {
    m_pasteboard.replace(text("https://example.org/a"));
    m_app->preferences().change(&Settings::proposeTab, false);
    open();
    openPanel([&] { shell().openQuickCapture(); });
    QTest::qWait(0);
    EXPECT_EQ(capture().pageAddress(), QString());
    key(Qt::Key_Escape);
    m_app->preferences().change(&Settings::proposeTab, true);
    openPanel([&] { shell().openQuickCapture(); });
    test::spinUntil([&] { return !capture().pageAddress().isEmpty(); });
    capture().dropPage();
    EXPECT_EQ(capture().pageAddress(), QString());
    write("example.org/other");
    key(Qt::Key_Return);
    ASSERT_EQ(added().size(), 1);
    EXPECT_EQ(added().last()->capturedURL, text("https://example.org/other"));
}

TEST_F(QuickCaptureTest, a_link_that_a_page_hands_over_waits_for_the_person) {
    open();
    const cli::LinkToCapture strange{.url = text("https://example.org/x"),
                                     .title = text("Gagne un velo"),
                                     .giver = WebLink::Giver::Stranger};
    openPanel([&] { EXPECT_TRUE(capture().open(strange)); });
    EXPECT_EQ(capture().pageLine(), text("Un lien reçu · example.org/x"));
    // What one was typing elsewhere confirms nothing.
    key(Qt::Key_Return);
    EXPECT_THAT(added(), IsEmpty());
    // Nor does another address take the place of the one that is looked at.
    EXPECT_FALSE(
        capture().open({.url = text("https://example.org/y"), .giver = WebLink::Giver::Stranger}));
    EXPECT_EQ(capture().pageAddress(), text("https://example.org/x"));
    test::spinUntil([&] {
        key(Qt::Key_Return);
        return added().size() == 1;
    });
    EXPECT_EQ(added().last()->title, text("Gagne un velo"));
    EXPECT_TRUE(added().last()->sharedAt) << "it may not lead to this machine";
}

} // namespace
} // namespace vorle
