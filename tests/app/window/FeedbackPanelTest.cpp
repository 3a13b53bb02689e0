// "Envoyer un retour": the form, by hand and by key, and what is handed over.

#include "app/window/desktop/FeedbackModel.h"

#include "tests/app/window/OpenWindow.h"

#include <QClipboard>
#include <QDir>

namespace vorle {
namespace {

class FeedbackPanelTest : public test::OpenWindow {
protected:
    FeedbackPanelTest() {
        const QString own = m_app.program.path("tmp"); // what is kept there goes with the test
        QDir().mkpath(own);
        m_app.variables.set("TMPDIR", own);
    }
    // Qt's software renderer frees the texture of a picture that goes with the frame after it, and
    // there is none once the window is gone.
    void TearDown() override {
        if (m_main) {
            empty();
        }
    }
    void empty() {
        model().begin(nullptr);
        while (!model().pictures().isEmpty()) {
            model().remove(0);
        }
        for (int frame = 0; frame < 3; ++frame) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            window().grabWindow();
        }
    }
    FeedbackModel &model() { return *shell().screens()->feedback(); }
    void openForm() {
        open();
        m_main->writeFeedback();
        QCoreApplication::processEvents();
    }
    void settled() {
        test::spinUntil([this] { return !model().isBusy(); });
    }
    /// The files that wait for a mail program.
    static QStringList waiting() {
        return QDir(QDir::tempPath()).entryList({QStringLiteral("vorle-feedback-*")});
    }
};

TEST_F(FeedbackPanelTest, is_written_by_keys_alone_and_hands_over_just_what_it_shows) {
    openForm();
    QString handed;
    QObject::connect(&shell(), &Shell::said, &shell(), [&](const QString &word) { handed = word; });
    EXPECT_TRUE(shownTexts().contains(model().prompt()));
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Préparer l’e-mail (1)")));
    const QString joined = model().joinedText();
    EXPECT_TRUE(joined.startsWith(QStringLiteral("vorle"))) << joined.toStdString();
    EXPECT_TRUE(joined.endsWith(QStringLiteral("Aucun sujet, aucun fichier.")));

    type(QStringLiteral("Un mot"));
    model().joinWindow();
    settled();
    EXPECT_EQ(model().pictures().size(), 1);
    EXPECT_TRUE(model().windowImage().isEmpty()) << "it is joined already";
    QCoreApplication::processEvents();
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Préparer l’e-mail (1)")));
    press(Qt::Key_Return, Qt::ControlModifier);
    settled();
    ASSERT_EQ(m_mail.drafts.size(), 1);
    const MailDraft draft = m_mail.drafts.first();
    EXPECT_TRUE(draft.body.startsWith(QStringLiteral("Un mot\n\n—\nvorle")));
    EXPECT_TRUE(joined.startsWith(draft.body.section(u'\n', -1)));
    ASSERT_EQ(draft.attachments.size(), 1);
    EXPECT_EQ(QImage(draft.attachments.first()).size(), window().size());
    EXPECT_FALSE(handed.isEmpty());
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("Envoyer un retour")));

    // The next one begins empty.
    m_main->writeFeedback();
    EXPECT_TRUE(model().text().isEmpty());
    EXPECT_TRUE(model().pictures().isEmpty());
    model().setDiagnosed(false);
    EXPECT_EQ(model().joinedText(), QStringLiteral("Aucun sujet, aucun fichier."));
    type(QStringLiteral("Deux"));
    press(Qt::Key_Escape);
    m_main->writeFeedback();
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Deux"))) << "what was written was lost";
    model().setKind(2);
    model().prepare();
    settled();
    EXPECT_EQ(m_mail.drafts.last().body, QStringLiteral("Deux"));
    EXPECT_TRUE(m_mail.drafts.last().subject.endsWith(QStringLiteral("un sujet mal noté")));
    // The mail program reads them when the message is sent: with the app ended, too.
    EXPECT_EQ(waiting().size(), 1);
    empty();
    close();
    EXPECT_EQ(waiting().size(), 1);
}

TEST_F(FeedbackPanelTest, what_no_mail_program_took_leaves_no_file) {
    openForm();
    m_mail.takes = false;
    m_mail.name.clear();
    type(QStringLiteral("Un mot"));
    model().joinWindow();
    settled();
    model().prepare();
    EXPECT_TRUE(model().isBusy()) << "its files are written elsewhere";
    settled();
    EXPECT_TRUE(model().isToCopy());
    EXPECT_TRUE(waiting().isEmpty());
    QDir(QDir::tempPath()).removeRecursively();
    model().prepare();
    settled();
    EXPECT_TRUE(model().problem().startsWith(QStringLiteral("Le système a refusé")))
        << model().problem().toStdString();
}

TEST_F(FeedbackPanelTest, pictures_are_held_to_their_limits_and_refusals_are_told) {
    openForm();
    const QString picture = m_app.program.path("home/a.png");
    ASSERT_TRUE(window().grabWindow().save(picture));
    model().join({QUrl(QStringLiteral("https://example.org/a.png"))});
    EXPECT_FALSE(model().problem().isEmpty());
    model().join({QUrl::fromLocalFile(picture + u'x')});
    settled();
    EXPECT_FALSE(model().problem().isEmpty());
    EXPECT_TRUE(model().pictures().isEmpty());
    m_files.answer = picture;
    model().choose();
    test::spinUntil([this] { return model().pictures().size() == 1; });
    EXPECT_TRUE(model().problem().isEmpty());
    model().join(QList<QUrl>(300, QUrl::fromLocalFile(picture)));
    settled();
    EXPECT_EQ(model().pictures().size(), 5);
    EXPECT_EQ(model().problem(), QStringLiteral("Cinq images au plus."));
    model().remove(7);
    model().remove(0);
    EXPECT_EQ(model().pictures().size(), 4);
}

TEST_F(FeedbackPanelTest, where_nothing_opens_for_mail_the_text_is_offered_to_copy) {
    openForm();
    m_mail.name.clear();
    m_mail.takes = false;
    type(QStringLiteral("Un mot"));
    model().prepare();
    settled();
    EXPECT_TRUE(model().isToCopy());
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("Copier le message")));
    EXPECT_TRUE(m_mail.opened.isEmpty());
    model().copy();
    EXPECT_TRUE(m_pasteboard.text().startsWith(QStringLiteral("retours@vorle.fr\n")));
    EXPECT_TRUE(m_pasteboard.text().contains(QStringLiteral("Un mot")));
    model().setText(QStringLiteral("Un autre"));
    EXPECT_FALSE(model().isToCopy()) << "it may be another matter now";
}

} // namespace
} // namespace vorle
