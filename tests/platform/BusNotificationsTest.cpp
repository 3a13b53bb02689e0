// The real adapter on a bus of its own: with a stand-in for services of every kind, and with a
// daemon that people use.

#include "platform/linux/BusNotifications.h"

#include "tests/platform/MessageBus.h"
#include "tests/support/Files.h"
#include "tests/support/HostileTexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

constexpr const char *serviceName = "org.freedesktop.Notifications";

/// What a service is told with one notice.
struct Told {
    uint replaces = 0;
    QString title;
    QString body;
    QStringList actions;
    QVariantMap hints;
};

class StandInService final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList capabilities{QStringLiteral("body"), QStringLiteral("actions")};
    QList<Told> told;
    int asked = 0;

    void open(QDBusConnection bus) {
        ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                                       QDBusConnection::ExportAllSlots |
                                           QDBusConnection::ExportAllSignals));
        ASSERT_TRUE(bus.registerService(QString::fromLatin1(serviceName)));
    }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the service's own names
    QStringList GetCapabilities() {
        ++asked;
        return capabilities;
    }
    uint Notify(const QString &, uint replaces, const QString &, const QString &title,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int) {
        told.append({replaces, title, body, actions, hints});
        return replaces != 0 ? replaces : uint(40 + told.size());
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &action);
    void ActivationToken(uint id, const QString &token);
    void NotificationClosed(uint id, uint reason);
    // NOLINTEND(readability-identifier-naming)
};

class BusNotificationsTest : public testing::Test {
protected:
    /// A program on the bus, and what it is told.
    std::unique_ptr<BusNotifications> program() {
        auto made = std::make_unique<BusNotifications>(bus.connection("program"));
        made->registerCategories(
            {{.identifier = QStringLiteral("urgent"),
              .actions = {{QStringLiteral("sort"), QStringLiteral("Trier maintenant")}},
              .weight = NotificationCategory::Weight::Urgent}});
        made->follow({.tapped = [this](const NotificationTap &tap) { taps.append(tap); },
                      .known = [this] { ++known; },
                      .failed = [this](const QString &identifier,
                                       const QString &) { failed.append(identifier); }});
        return made;
    }
    static Notification notice(const QString &title, const QString &body) {
        return {.identifier = QStringLiteral("ready"),
                .category = QStringLiteral("urgent"),
                .title = title,
                .body = body,
                .section = QStringLiteral("À trier"),
                .picture = QStringLiteral("/tmp/une image.png"),
                .sound = Notification::Sound::Default};
    }
    void spinUntilTold(const StandInService &service, qsizetype count) {
        test::spinUntil([&] { return service.told.size() >= count; });
    }

    test::MessageBus bus;
    QList<NotificationTap> taps;
    QStringList failed;
    int known = 0;
};

TEST_F(BusNotificationsTest, each_service_is_told_what_it_can_show_and_no_more) {
    const struct {
        QStringList capabilities;
        QString title;
        QString body;
        qsizetype actions;
    } cases[] = {
        {{QStringLiteral("body"), QStringLiteral("body-markup"), QStringLiteral("actions")},
         QStringLiteral("<b>3</b> sujets"),
         QStringLiteral("a &lt;i&gt; &amp; b"),
         4},
        {{QStringLiteral("body")},
         QStringLiteral("<b>3</b> sujets"),
         QStringLiteral("a <i> & b"),
         0},
        {{}, QStringLiteral("<b>3</b> sujets. a <i> & b"), {}, 0},
    };
    for (const auto &each : cases) {
        StandInService service;
        service.capabilities = each.capabilities;
        service.open(bus.connection("service"));
        const auto notifications = program();
        notifications->post(notice(QStringLiteral("<b>3</b> sujets"), QStringLiteral("a <i> & b")));
        spinUntilTold(service, 1);
        const Told &told = service.told.first();
        EXPECT_EQ(told.title, each.title);
        EXPECT_EQ(told.body, each.body);
        EXPECT_EQ(told.actions.size(), each.actions);
        EXPECT_EQ(told.hints[QStringLiteral("urgency")].toInt(), 2);
        EXPECT_EQ(told.hints[QStringLiteral("x-vorle-section")], QStringLiteral("À trier"));
        EXPECT_EQ(told.hints[QStringLiteral("image-path")],
                  QStringLiteral("file:///tmp/une%20image.png"));
        bus.cut("service");
    }
}

TEST_F(BusNotificationsTest, one_of_the_same_name_takes_its_place_and_a_tap_says_what_it_carried) {
    StandInService service;
    service.open(bus.connection("service"));
    const auto notifications = program();
    notifications->post(notice(QStringLiteral("1"), {}));
    notifications->post(notice(QStringLiteral("2"), {})); // while nothing is known of the service
    spinUntilTold(service, 1);
    EXPECT_EQ(service.told.first().title, QStringLiteral("2"));
    notifications->post(notice(QStringLiteral("3"), {}));
    spinUntilTold(service, 2);
    EXPECT_EQ(service.told.last().replaces, 41U);
    EXPECT_EQ(service.asked, 1) << "what it can do";
    notifications->post(notice(QStringLiteral("4"), {}));
    spinUntilTold(service, 3); // so the number of the one before is known
    for (const auto &[id, action] : {std::pair(7U, "default"), {41U, "default"}, {41U, "sort"}}) {
        Q_EMIT service.ActivationToken(id, QStringLiteral("token %1").arg(id));
        Q_EMIT service.ActionInvoked(id, QString::fromLatin1(action));
    }
    Q_EMIT service.NotificationClosed(41U, 2);
    Q_EMIT service.ActionInvoked(41U, QStringLiteral("sort")); // it is gone
    test::spinUntil([this] { return taps.size() >= 2; });
    const int later = known;
    notifications->look();
    test::spinUntil([&] { return known > later; });
    ASSERT_EQ(taps.size(), 2);
    EXPECT_EQ(taps[0].section, QStringLiteral("À trier"));
    EXPECT_EQ(taps[0].action, QString());
    EXPECT_EQ(taps[1].action, QStringLiteral("sort"));
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token 41");
    qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(BusNotificationsTest, without_a_service_it_says_so_and_one_that_comes_or_comes_back_serves) {
    BusNotifications alone(QDBusConnection(QStringLiteral("no such bus")));
    alone.post(notice({}, {}));
    EXPECT_EQ(alone.standing(), Notifications::Standing::Absent);
    EXPECT_FALSE(alone.remedy().isEmpty());

    const auto notifications = program();
    notifications->post(notice(QStringLiteral("en vain"), {}));
    test::spinUntil([this] { return !failed.isEmpty(); });
    EXPECT_EQ(notifications->standing(), Notifications::Standing::Absent);
    EXPECT_TRUE(notifications->remedy().contains(QStringLiteral("dunst")));
    for (int life = 1; life <= 2; ++life) {
        StandInService service;
        service.open(bus.connection("service"));
        test::spinUntil(
            [&] { return notifications->standing() == Notifications::Standing::Granted; });
        EXPECT_EQ(notifications->remedy(), QString());
        notifications->post(notice(QStringLiteral("vie %1").arg(life), {}));
        spinUntilTold(service, 1);
        EXPECT_EQ(service.told.last().replaces, 0U) << "the numbers are another service's";
        EXPECT_EQ(service.asked, 1);
        bus.cut("service");
        test::spinUntil(
            [&] { return notifications->standing() == Notifications::Standing::Absent; });
    }
}

/// dunst on a display of its own.
class RealDaemonTest : public BusNotificationsTest {
protected:
    RealDaemonTest() {
        m_screen.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp")});
        QByteArray display;
        test::spinUntil([&] {
            display += m_screen.readAllStandardOutput();
            return display.endsWith('\n') || m_screen.state() == QProcess::NotRunning;
        });
        m_environment.insert(QStringLiteral("DISPLAY"),
                             u':' + QString::fromLatin1(display.trimmed()));
        m_environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        test::writeFile(m_folder.filePath(QStringLiteral("dunstrc")),
                        "[global]\nhistory_length = 1000\nnotification_limit = 1\nmarkup = full\n");
        startDaemon();
    }
    ~RealDaemonTest() override {
        stopDaemon();
        m_screen.kill();
        m_screen.waitForFinished();
    }
    void startDaemon() {
        m_daemon.setProcessEnvironment(m_environment);
        m_daemon.start(QStringLiteral("dunst"),
                       {QStringLiteral("-conf"), m_folder.filePath(QStringLiteral("dunstrc"))});
    }
    void stopDaemon() {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QByteArray control(const QStringList &words) {
        QProcess control;
        control.setProcessEnvironment(m_environment);
        control.start(QStringLiteral("dunstctl"), words);
        test::spinUntil([&] { return control.state() == QProcess::NotRunning; });
        return control.readAllStandardOutput();
    }
    /// What it was given, the newest first.
    QJsonArray history() {
        control({QStringLiteral("close-all")});
        const auto all = QJsonDocument::fromJson(control({QStringLiteral("history")})).object();
        return all[QStringLiteral("data")].toArray().first().toArray();
    }
    static QString field(const QJsonValue &notice, const char *name) {
        return notice.toObject()[QString::fromLatin1(name)]
            .toObject()[QStringLiteral("data")]
            .toString();
    }
    void spinUntilServed(BusNotifications &notifications) {
        test::spinUntil([&] {
            notifications.look();
            return notifications.standing() == Notifications::Standing::Granted;
        });
    }

private:
    QTemporaryDir m_folder;
    QProcess m_screen;
    QProcess m_daemon;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(RealDaemonTest, shows_every_hostile_text_as_it_is) {
    const auto notifications = program();
    spinUntilServed(*notifications);
    QStringList texts = test::hostileTexts();
    texts.resize(std::min<qsizetype>(texts.size(), 180));
    for (const char *text : {"<b>gras</b>", "</b></span>&amp;&", "<a href='http://x'>x</a>",
                             "<img src='/etc/passwd'/>", "$(touch goule)", "`id`", "-rf", "%s%n%n",
                             "%a %s %b", "\\n\\x00", "{\"data\":[["}) {
        for (const char *around : {"%1", "<%1>", "&%1;"}) {
            texts += QString::fromUtf8(around).arg(QString::fromUtf8(text));
        }
    }
    ASSERT_GE(texts.size(), 200);
    for (qsizetype i = 0; i < texts.size(); ++i) {
        Notification each = notice(texts[i], texts[i]);
        each.identifier = QString::number(i);
        notifications->post(each);
    }
    QJsonArray all;
    test::spinUntil([&] {
        all = history();
        return all.size() >= texts.size();
    });
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const QJsonValue told = all[texts.size() - 1 - i];
        EXPECT_EQ(field(told, "summary"), texts[i]);
        EXPECT_EQ(field(told, "body"), texts[i].toHtmlEscaped());
    }
    EXPECT_TRUE(failed.isEmpty());
}

TEST_F(RealDaemonTest, its_click_opens_the_section_and_it_may_die_and_come_back) {
    const auto notifications = program();
    spinUntilServed(*notifications);
    for (const char *title : {"avant", "après"}) {
        notifications->post(notice(QString::fromUtf8(title), QStringLiteral("x")));
        test::spinUntil([&] {
            return control({QStringLiteral("count"), QStringLiteral("displayed")}).trimmed() == "1";
        });
        taps.clear();
        control({QStringLiteral("action"), QStringLiteral("0")});
        test::spinUntil([this] { return !taps.isEmpty(); });
        EXPECT_EQ(taps.first().section, QStringLiteral("À trier"));
        stopDaemon();
        test::spinUntil(
            [&] { return notifications->standing() == Notifications::Standing::Absent; });
        startDaemon();
        spinUntilServed(*notifications);
    }
}

} // namespace
} // namespace vorle

#include "BusNotificationsTest.moc"
