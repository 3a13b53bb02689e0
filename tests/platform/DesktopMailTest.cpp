// The real adapter, with stand-ins for the desktop's portal and its mail scripts.

#include "platform/linux/DesktopMail.h"

#include "tests/platform/MessageBus.h"
#include "tests/support/HostileTexts.h"
#include "tests/support/Variables.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace vorle {
namespace {

QString asText(const char *text) { return QString::fromUtf8(text); }

/// What the portal is told of one question.
class StandInRequest final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Request")
public:
    explicit StandInRequest(int &closed) : m_closed(closed) {}

public Q_SLOTS:
    void Close() { ++m_closed; } // NOLINT(readability-identifier-naming): the portal's own name

private:
    int &m_closed;
};

class StandInEmail final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Email")
public:
    explicit StandInEmail(const QDBusConnection &bus) : m_bus(bus) {}

    uint response = 0;
    bool slow = false; ///< takes the message, and answers when it is told to
    bool hangs = false;
    QVariantMap asked;
    QByteArrayList attached;
    int closed = 0;

    /// What it has kept to itself.
    void answerNow() {
        m_bus.send(m_answer);
        m_answer = {};
    }

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the portal's own name
    QDBusObjectPath ComposeEmail(const QString & /*parent*/, const QVariantMap &options) {
        asked = options;
        const auto files =
            qdbus_cast<QList<QDBusUnixFileDescriptor>>(options.value(asText("attachment_fds")));
        for (const QDBusUnixFileDescriptor &file : files) {
            QFile read;
            EXPECT_TRUE(read.open(file.fileDescriptor(), QIODevice::ReadOnly));
            attached += read.readAll();
        }
        const QString path = asText("/org/freedesktop/portal/desktop/request/") +
                             message().service().mid(1).replace(u'.', u'_') + u'/' +
                             options.value(asText("handle_token")).toString();
        QDBusMessage signal = QDBusMessage::createSignal(
            path, asText("org.freedesktop.portal.Request"), asText("Response"));
        signal.setArguments({response, QVariantMap()});
        m_bus.registerObject(path, &m_request, QDBusConnection::ExportAllSlots);
        if (hangs) {
            setDelayedReply(true);
        } else if (slow) {
            m_answer = signal;
        } else {
            m_bus.send(signal);
        }
        return QDBusObjectPath(path);
    }

private:
    QDBusConnection m_bus;
    QDBusMessage m_answer;
    StandInRequest m_request{closed};
};

class DesktopMailTest : public testing::Test {
protected:
    DesktopMailTest() {
        qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
        m_variables.set("PATH", m_folder.path() + asText(":/usr/bin:/bin"));
        write("a.png", "picture");
    }
    void write(const char *name, const QByteArray &bytes) {
        QFile file(m_folder.filePath(asText(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// A program that notes its arguments, each ended by a NUL.
    void writeScript(const char *name, const char *end) {
        write(name, QByteArray("#!/bin/sh\nprintf '%s\\0' \"$@\" > \"") +
                        m_folder.filePath(asText("said")).toUtf8() + "\"\n" + end + "\n");
    }
    QStringList said() {
        QFile file(m_folder.filePath(asText("said")));
        QStringList words = file.open(QIODevice::ReadOnly)
                                ? QString::fromUtf8(file.readAll()).split(u'\0')
                                : QStringList(QString());
        words.removeLast();
        return words;
    }
    MailDraft draft(const QString &body) {
        return {
            asText("a@example.org"), asText("Objet"), body, {m_folder.filePath(asText("a.png"))}};
    }

    QTemporaryDir m_folder;
    test::Variables m_variables;
    test::MessageBus m_bus;
};

TEST_F(DesktopMailTest, the_portal_is_handed_the_whole_message_with_open_files) {
    QDBusConnection bus = m_bus.connection("portal");
    StandInEmail portal(bus);
    ASSERT_TRUE(bus.registerObject(asText("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(asText("org.freedesktop.portal.Desktop")));
    writeScript("xdg-email", "exit 0");
    DesktopMail mail(m_bus.connection("program"));
    EXPECT_TRUE(test::waitFor(mail.compose(draft(asText("Voilà\nl’idée")))));
    EXPECT_EQ(portal.asked.value(asText("address")).toString(), asText("a@example.org"));
    EXPECT_EQ(portal.asked.value(asText("subject")).toString(), asText("Objet"));
    EXPECT_EQ(portal.asked.value(asText("body")).toString(), asText("Voilà\nl’idée"));
    EXPECT_EQ(portal.attached, QByteArrayList{"picture"});
    EXPECT_EQ(said(), QStringList()) << "the message was laid before the person twice";
    portal.response = 2; // it has no mail program
    EXPECT_TRUE(test::waitFor(mail.compose(draft({}))));
    EXPECT_FALSE(said().isEmpty());
}

TEST_F(DesktopMailTest, a_slow_portal_opens_the_message_alone_and_one_that_hangs_is_told_to_stop) {
    QDBusConnection bus = m_bus.connection("portal");
    StandInEmail portal(bus);
    ASSERT_TRUE(bus.registerObject(asText("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(asText("org.freedesktop.portal.Desktop")));
    writeScript("xdg-email", "exit 0");
    const DesktopMail::Patience hasty{std::chrono::milliseconds(200), std::chrono::minutes(3)};
    DesktopMail mail(m_bus.connection("program"), hasty);
    // The person chooses a program meanwhile.
    portal.slow = true;
    bool ended = false;
    const auto compose = [&]() -> Task<> {
        EXPECT_TRUE(co_await mail.compose(draft(asText("Voilà"))));
        ended = true;
    };
    const Task<> composing = compose();
    test::spinUntil([&] { return !portal.asked.isEmpty(); });
    test::waitFor(sleepFor(std::chrono::milliseconds(600)));
    EXPECT_FALSE(ended);
    portal.answerNow();
    test::spinUntil([&] { return ended; });
    EXPECT_EQ(said(), QStringList()) << "the message was laid before the person twice";
    EXPECT_EQ(portal.closed, 0);
    // One that never says that it has the message is told to forget it, and then it goes elsewhere.
    portal.slow = false;
    portal.hangs = true;
    EXPECT_TRUE(test::waitFor(mail.compose(draft(asText("Voilà")))));
    EXPECT_FALSE(said().isEmpty());
    test::spinUntil([&] { return portal.closed == 1; });
}

TEST_F(DesktopMailTest, without_a_portal_the_desktops_script_gets_each_part_as_an_argument) {
    writeScript("xdg-email", "exit 0");
    DesktopMail mail(m_bus.connection("program"));
    QStringList texts{asText("-h"), asText("--attach"), asText("$(touch goule)`id`; id"),
                      asText("a',attachment='/etc/passwd")};
    const QStringList strange = test::hostileTexts();
    for (qsizetype i = 0; i < strange.size(); i += 25) {
        texts += strange[i];
    }
    for (const QString &text : texts) {
        ASSERT_TRUE(test::waitFor(mail.compose(draft(text))));
        QString kept = text;
        EXPECT_EQ(said(),
                  (QStringList{asText("--utf8"), asText("--subject"), asText("Objet"),
                               asText("--body"), kept.replace(u'\'', u'’'), asText("--attach"),
                               m_folder.filePath(asText("a.png")), asText("a@example.org")}))
            << text.toStdString();
    }
    writeScript("xdg-email", "exit 3");
    EXPECT_FALSE(test::waitFor(mail.compose(draft({}))));
}

TEST_F(DesktopMailTest, names_the_mail_program_and_waits_for_no_script_for_ever) {
    DesktopMail mail(m_bus.connection("program"),
                     {std::chrono::milliseconds(200), std::chrono::milliseconds(200)});
    writeScript("xdg-mime", "echo thunderbird.desktop");
    EXPECT_EQ(test::waitFor(mail.program()), asText("thunderbird.desktop"));
    EXPECT_EQ(said(),
              (QStringList{asText("query"), asText("default"), asText("x-scheme-handler/mailto")}));
    for (const char *end : {"exit 1", "exec sleep 0.6"}) {
        writeScript("xdg-mime", end);
        EXPECT_EQ(test::waitFor(mail.program()), QString()) << end;
    }
    m_variables.set("PATH", m_folder.path());
    QFile::remove(m_folder.filePath(asText("xdg-mime")));
    EXPECT_EQ(test::waitFor(mail.program()), QString());
    EXPECT_FALSE(test::waitFor(mail.compose(draft({}))));
    // One that stays as long as the mail program it opened has done its work.
    writeScript("xdg-email", "exec /bin/sleep 0.6");
    EXPECT_TRUE(test::waitFor(mail.compose(draft({}))));
    test::waitFor(sleepFor(std::chrono::seconds(1))); // until those have ended
}

} // namespace
} // namespace vorle

#include "DesktopMailTest.moc"
