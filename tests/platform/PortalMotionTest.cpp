// The real adapter on a bus of its own, with a stand-in for the desktop's settings portal.

#include "platform/linux/PortalMotion.h"

#include "tests/platform/MessageBus.h"

#include <QDBusMetaType>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using Settings = QMap<QString, QVariantMap>;

class StandInPortal final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    Settings settings;

public Q_SLOTS:
    // NOLINTNEXTLINE(readability-identifier-naming): the portal's own names
    Settings ReadAll(const QStringList &groups) const {
        Settings asked;
        for (const QString &group : groups) {
            if (settings.contains(group)) {
                asked[group] = settings[group];
            }
        }
        return asked;
    }

Q_SIGNALS:
    // NOLINTNEXTLINE(readability-identifier-naming)
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

class PortalMotionTest : public testing::Test {
protected:
    PortalMotionTest() { qDBusRegisterMetaType<Settings>(); }

    QDBusConnection connection(const char *name) { return m_bus.connection(name); }
    void openPortal() {
        QDBusConnection bus = connection("portal");
        ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                       QDBusConnection::ExportAllSlots |
                                           QDBusConnection::ExportAllSignals));
        ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));
    }
    void change(const char *group, const char *key, const QVariant &value) {
        const QString inGroup = QString::fromLatin1(group);
        const QString named = QString::fromLatin1(key);
        portal.settings[inGroup][named] = value;
        Q_EMIT portal.SettingChanged(inGroup, named, QDBusVariant(value));
    }

    StandInPortal portal;

private:
    test::MessageBus m_bus;
};

TEST_F(PortalMotionTest, each_desktops_way_of_asking_for_less_is_heard_and_followed) {
    const struct {
        const char *group;
        const char *key;
        QVariant less;
        QVariant usual;
    } cases[] = {
        {"org.freedesktop.appearance", "reduced-motion", 1U, 0U},
        {"org.gnome.desktop.interface", "enable-animations", false, true},
        {"org.kde.kdeglobals.KDE", "AnimationDurationFactor", QStringLiteral("0"),
         QStringLiteral("1.5")},
    };
    openPortal();
    for (const auto &each : cases) {
        portal.settings = {{QStringLiteral("org.gnome.desktop.interface"),
                            {{QStringLiteral("font-name"), QStringLiteral("Cantarell 11")}}}};
        portal.settings[QString::fromLatin1(each.group)][QString::fromLatin1(each.key)] = each.less;
        PortalMotion motion(connection("program"));
        int told = 0;
        motion.follow([&] { ++told; });
        EXPECT_FALSE(motion.isReduced()) << "nobody waits for the bus";
        test::spinUntil([&] { return motion.isReduced(); });
        EXPECT_EQ(told, 1) << each.group;
        change(each.group, each.key, each.usual);
        test::spinUntil([&] { return !motion.isReduced(); });
        change("org.gnome.desktop.interface", "font-name", QStringLiteral("Inter 11"));
        change(each.group, each.key, each.less);
        test::spinUntil([&] { return motion.isReduced(); });
        EXPECT_EQ(told, 3) << each.group;
    }
}

TEST_F(PortalMotionTest, without_a_bus_or_a_portal_things_move_and_one_that_comes_later_is_asked) {
    EXPECT_FALSE(PortalMotion(QDBusConnection(QStringLiteral("no such bus"))).isReduced());
    const PortalMotion motion(connection("program"));
    portal.settings = {
        {QStringLiteral("org.freedesktop.appearance"), {{QStringLiteral("reduced-motion"), 1U}}}};
    openPortal();
    test::spinUntil([&] { return motion.isReduced(); });
}

} // namespace
} // namespace vorle

#include "PortalMotionTest.moc"
