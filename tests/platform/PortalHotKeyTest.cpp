// The real adapter on a bus of its own, with a stand-in for the desktop's portal.

#include "platform/linux/PortalHotKey.h"

#include "tests/platform/MessageBus.h"
#include "tests/support/Text.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <gtest/gtest.h>

#include <memory>

namespace vorle {
namespace {

using State = GlobalHotKey::State;
using Named = std::pair<QString, QVariantMap>;

using test::text;

/// Answers as the portal does: by a signal on the object of the request.
class StandInShortcuts final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
public:
    explicit StandInShortcuts(const QDBusConnection &bus) : m_bus(bus) {}

    uint response = 0; ///< 1: the person refuses
    uint bound = 0;    ///< likewise, of the combination
    bool gives = true; ///< the combination, once there is a session
    QStringList triggers;
    QStringList sessions;

    void close(const QString &session) const {
        m_bus.send(QDBusMessage::createSignal(session, text("org.freedesktop.portal.Session"),
                                              text("Closed")));
    }
    void press(const QString &session, const QString &id) const {
        QDBusMessage signal = QDBusMessage::createSignal(
            text("/org/freedesktop/portal/desktop"), text("org.freedesktop.portal.GlobalShortcuts"),
            text("Activated"));
        signal.setArguments({QVariant::fromValue(QDBusObjectPath(session)), id,
                             QVariant::fromValue(quint64(7)), QVariantMap()});
        m_bus.send(signal);
    }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the portal's own names
    QDBusObjectPath CreateSession(const QVariantMap &options) {
        sessions += text("/org/freedesktop/portal/desktop/session/x/") +
                    options.value(text("session_handle_token")).toString();
        return answer(options, response, {{text("session_handle"), sessions.last()}});
    }
    QDBusObjectPath BindShortcuts(const QDBusObjectPath &session, const QList<Named> &shortcuts,
                                  const QString & /*parent*/, const QVariantMap &options) {
        QList<Named> given;
        for (const auto &[id, properties] : shortcuts) {
            triggers += properties.value(text("preferred_trigger")).toString();
            given += {id, {{text("trigger_description"), text("Ctrl+Alt+V")}}};
        }
        EXPECT_EQ(session.path(), sessions.last());
        return answer(options, bound,
                      {{text("shortcuts"), QVariant::fromValue(gives ? given : QList<Named>())}});
    }
    // NOLINTEND(readability-identifier-naming)

private:
    QDBusObjectPath answer(const QVariantMap &options, uint code, const QVariantMap &results) {
        const QString path = text("/org/freedesktop/portal/desktop/request/") +
                             message().service().mid(1).replace(u'.', u'_') + u'/' +
                             options.value(text("handle_token")).toString();
        QDBusMessage signal = QDBusMessage::createSignal(
            path, text("org.freedesktop.portal.Request"), text("Response"));
        signal.setArguments({code, results});
        m_bus.send(signal); // before the call's own answer, as a fast portal would
        return QDBusObjectPath(path);
    }

    QDBusConnection m_bus;
};

class PortalHotKeyTest : public testing::Test {
protected:
    PortalHotKeyTest() {
        qDBusRegisterMetaType<Named>();
        qDBusRegisterMetaType<QList<Named>>();
        qRegisterMetaType<QList<Named>>("QList<Named>"); // as the stand-in's slot calls it
    }
    void openPortal() {
        QDBusConnection bus = m_bus.connection("portal");
        m_portal = std::make_unique<StandInShortcuts>(bus);
        ASSERT_TRUE(bus.registerObject(text("/org/freedesktop/portal/desktop"), m_portal.get(),
                                       QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(bus.registerService(text("org.freedesktop.portal.Desktop")));
    }
    void settleOn(const PortalHotKey &hotKey, State state) {
        test::spinUntil([&] { return hotKey.state() == state; });
    }

    test::MessageBus m_bus;
    std::unique_ptr<StandInShortcuts> m_portal;
    const KeyCombination m_space{49, KeyCombination::control | KeyCombination::option, text(" ")};
};

TEST_F(PortalHotKeyTest, binds_one_shortcut_hears_it_alone_and_says_what_the_desktop_made_of_it) {
    openPortal();
    int pressed = 0;
    PortalHotKey hotKey(m_bus.connection("program"));
    hotKey.follow([&] { ++pressed; }, {});
    hotKey.replace(m_space);
    EXPECT_EQ(hotKey.state(), State::Asked) << "nobody waits for the bus";
    settleOn(hotKey, State::Registered);
    EXPECT_EQ(m_portal->triggers, QStringList{text("CTRL+ALT+space")});
    EXPECT_EQ(hotKey.boundTo(), text("Ctrl+Alt+V"));

    m_portal->press(text("/another/session"), text("capture"));
    m_portal->press(m_portal->sessions.last(), text("another"));
    m_portal->press(m_portal->sessions.last(), text("capture"));
    test::spinUntil([&] { return pressed > 0; });
    EXPECT_EQ(pressed, 1);

    hotKey.replace(KeyCombination{0, KeyCombination::command | KeyCombination::shift, text("a")});
    settleOn(hotKey, State::Registered);
    EXPECT_EQ(m_portal->triggers.last(), text("SHIFT+LOGO+a"));
    m_portal->press(m_portal->sessions.first(), text("capture"));
    m_portal->press(m_portal->sessions.last(), text("capture"));
    test::spinUntil([&] { return pressed > 1; });
    EXPECT_EQ(pressed, 2) << "the former session was still heard";

    hotKey.replace(std::nullopt);
    EXPECT_EQ(hotKey.state(), State::None);
}

TEST_F(PortalHotKeyTest, says_when_there_is_none_and_asks_again_once_there_is_one) {
    PortalHotKey nowhere(QDBusConnection(text("no such bus")));
    nowhere.replace(m_space);
    EXPECT_EQ(nowhere.state(), State::Unavailable);

    PortalHotKey hotKey(m_bus.connection("program"));
    hotKey.replace(m_space);
    settleOn(hotKey, State::Unavailable);
    openPortal();
    settleOn(hotKey, State::Registered);

    // The desktop closes the session, of which another has nothing to say.
    m_portal->close(text("/org/freedesktop/portal/desktop/session/x/another"));
    m_portal->close(m_portal->sessions.last());
    settleOn(hotKey, State::Unavailable);
    EXPECT_EQ(hotKey.boundTo(), QString());
    hotKey.replace(m_space); // as when somebody looks
    settleOn(hotKey, State::Registered);

    m_portal->gives = false;
    hotKey.replace(m_space);
    settleOn(hotKey, State::Taken);
    m_portal->response = 1;
    hotKey.replace(m_space);
    settleOn(hotKey, State::Unavailable);

    // Who said no is not asked again by a look, but when they want it once more.
    m_portal->response = 0;
    m_portal->gives = true;
    m_portal->bound = 1;
    hotKey.replace(m_space);
    test::spinUntil([&] { return hotKey.state() == State::Asked; });
    settleOn(hotKey, State::Unavailable);
    const qsizetype asked = m_portal->sessions.size();
    m_portal->bound = 0;
    hotKey.replace(m_space);
    EXPECT_EQ(hotKey.state(), State::Unavailable);
    hotKey.replace(std::nullopt);
    hotKey.replace(m_space);
    settleOn(hotKey, State::Registered);
    EXPECT_EQ(m_portal->sessions.size(), asked + 1);
}

} // namespace
} // namespace vorle

#include "PortalHotKeyTest.moc"
