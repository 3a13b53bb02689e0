#include "desktop/Feedback.h"

#include "desktop/FeedbackPicture.h"
#include "platform/fakes/FakeMailComposer.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Wait.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QUrlQuery>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

QString asText(const char *text) { return QString::fromUtf8(text); }

/// What a mail program makes of the address: its parts, decoded once.
QMap<QString, QString> partsOf(const QUrl &address) {
    QMap<QString, QString> parts;
    const QByteArray query = address.toEncoded().split('?').value(1);
    for (const QByteArray &part : query.split('&')) {
        const auto at = part.indexOf('=');
        parts.insert(QString::fromLatin1(part.left(at)),
                     QString::fromUtf8(QByteArray::fromPercentEncoding(part.sliced(at + 1))));
    }
    return parts;
}

TEST(Feedback, whatever_is_written_stays_the_text_of_one_message_to_the_maker) {
    QStringList texts = test::hostileTexts();
    texts += {asText("a&cc=goule@example.org&attach=/etc/passwd"),
              asText("a?bcc=goule@example.org#x"),
              asText("a\r\nBcc: goule@example.org\r\n\r\nb"),
              asText("a%0D%0ABcc:goule%26cc=goule"),
              asText("$(touch goule) `id` \"; id; '"),
              QString(asText("a")) + QChar(u'\0') + asText("b\x1B]0;goule\x07"),
              asText("-attach /etc/passwd"),
              asText("\u202Eelpmaxe\u2066@"),
              QStringLiteral("a").repeated(255)};
    ASSERT_GE(texts.size(), 200);
    for (const QString &text : texts) {
        for (const FeedbackKind kind : feedbackKinds) {
            const MailDraft draft = feedbackMail({kind, text, text, {}});
            EXPECT_EQ(draft.to, asText("retours@vorle.fr"));
            for (const QChar sign : draft.subject + draft.body) {
                const bool plain = sign.unicode() >= 0x20 || sign == u'\n' || sign == u'\t';
                ASSERT_TRUE(plain) << "a control in " << draft.body.toStdString();
            }
            QString body = draft.body;
            body.replace(u'\n', asText("\r\n"));
            const QUrl mail = mailtoAddress(draft);
            EXPECT_TRUE(mail.toEncoded().startsWith("mailto:retours@vorle.fr?subject="));
            EXPECT_EQ(partsOf(mail), (QMap<QString, QString>{{asText("subject"), draft.subject},
                                                             {asText("body"), body}}));
            const QUrl web = webMailAddress(draft);
            EXPECT_EQ(web.host(), asText("mail.google.com"));
            EXPECT_EQ(partsOf(web), (QMap<QString, QString>{{asText("view"), asText("cm")},
                                                            {asText("fs"), asText("1")},
                                                            {asText("to"), draft.to},
                                                            {asText("su"), draft.subject},
                                                            {asText("body"), body}}));
            for (const QByteArray &address : {mail.toEncoded(), web.toEncoded()}) {
                for (const char sign : address) {
                    ASSERT_TRUE(sign > ' ' && sign < 0x7F && !strchr("\"'`$;\\<>|()", sign))
                        << address.constData();
                }
            }
        }
    }
}

TEST(Feedback, goes_the_first_way_that_is_there) {
    const struct {
        const char *program;
        bool takes, composes, opens;
        FeedbackOutcome outcome;
        const char *opened; ///< what the address begins with; "" for none
        bool shown;         ///< the pictures, to be taken in by hand
    } cases[] = {
        {"com.apple.mail", true, true, true, FeedbackOutcome::Ready, "", false},
        {"com.apple.mail", true, false, true, FeedbackOutcome::PicturesLeft, "mailto:", true},
        {"com.google.Chrome", false, true, true, FeedbackOutcome::PicturesLeft, "https:", true},
        {"firefox-esr.desktop", true, true, true, FeedbackOutcome::PicturesLeft, "https:", true},
        {"com.microsoft.Outlook", false, true, true, FeedbackOutcome::PicturesLeft,
         "mailto:", true},
        {"org.mozilla.thunderbird", false, true, false, FeedbackOutcome::NoMail, "mailto:", false},
        {"", false, true, true, FeedbackOutcome::NoMail, "", false},
    };
    for (const auto &each : cases) {
        test::FakeMailComposer mail;
        mail.name = asText(each.program);
        mail.takes = each.takes;
        mail.composes = each.composes;
        mail.opens = each.opens;
        MailDraft draft =
            feedbackMail({FeedbackKind::Idea, asText("Une idée"), {}, {asText("/p")}});
        EXPECT_EQ(test::waitFor(prepareFeedback(mail, draft)), each.outcome) << each.program;
        EXPECT_EQ(mail.opened.value(0).toString().section(u':', 0, 0),
                  asText(each.opened).section(u':', 0, 0))
            << each.program;
        EXPECT_EQ(mail.shown.size(), each.shown ? 1 : 0) << each.program;
        // Without pictures nothing is left to do by hand.
        draft.attachments.clear();
        EXPECT_NE(test::waitFor(prepareFeedback(mail, draft)), FeedbackOutcome::PicturesLeft);
    }
    test::FakeMailComposer address;
    address.takes = false;
    const MailDraft longOne =
        feedbackMail({FeedbackKind::Idea, QStringLiteral("é").repeated(4'000), {}, {}});
    EXPECT_EQ(test::waitFor(prepareFeedback(address, longOne)), FeedbackOutcome::TooLong);
    EXPECT_TRUE(address.opened.isEmpty());
    address.takes = true;
    EXPECT_EQ(test::waitFor(prepareFeedback(address, longOne)), FeedbackOutcome::Ready);
}

TEST(Feedback, a_picture_is_what_it_shows_not_what_it_is_called) {
    const QTemporaryDir folder;
    const auto write = [&](const char *name, const QByteArray &bytes) {
        QFile file(folder.filePath(asText(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    };
    const auto encoded = [](QSize size, const char *format) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format));
        return bytes;
    };
    const QByteArray png = encoded({400, 20}, "PNG");
    const auto taken = readPicture(write("-rf $(id)\n.jpg", png));
    ASSERT_TRUE(std::holds_alternative<FeedbackPicture>(taken));
    EXPECT_EQ(std::get<FeedbackPicture>(taken).suffix, asText(".png"));
    EXPECT_EQ(std::get<FeedbackPicture>(taken).bytes, png);
    EXPECT_LE(std::get<FeedbackPicture>(taken).small.width(), 168);
    EXPECT_TRUE(std::holds_alternative<FeedbackPicture>(
        readPicture(write("b", encoded({20, 400}, "JPG")))));
    EXPECT_TRUE(QFile::link(folder.filePath(asText("b")), folder.filePath(asText("link"))));
    EXPECT_TRUE(
        std::holds_alternative<FeedbackPicture>(readPicture(folder.filePath(asText("link")))));

    QByteArray huge = png; // whose head says more points than it has
    huge.replace(16, 8, QByteArray("\x00\x00\xFF\xFF\x00\x00\xFF\xFF", 8));
    const QByteArray pipe = folder.filePath(asText("pipe")).toUtf8();
    ASSERT_EQ(::mkfifo(pipe.constData(), 0600), 0);
    const QString refused[] = {
        write("c.png", "<svg xmlns='http://www.w3.org/2000/svg'/>"),
        write("d.png", png.first(60)),
        write("e.png", huge),
        write("f.png", {}),
        write("g.png", encoded({8, 8}, "BMP")),
        write("h.png", png + QByteArray(10'000'000, ' ')),
        QString::fromUtf8(pipe),
        folder.path(),
        folder.filePath(asText("nothing.png")),
        asText("/dev/zero"),
    };
    for (const QString &path : refused) {
        EXPECT_TRUE(std::holds_alternative<QString>(readPicture(path))) << path.toStdString();
    }
}

} // namespace
} // namespace vorle
