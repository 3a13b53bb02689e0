#include "platform/linux/PortalMotion.h"

#include "platform/linux/PortalRequest.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

namespace vorle {

namespace {

using Settings = QMap<QString, QVariantMap>;

QString portalSettings() { return QStringLiteral("org.freedesktop.portal.Settings"); }

/// Some portals put a value into a second box.
QVariant unboxed(QVariant value) {
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

/// One of the settings that are heeded, and when it asks for less.
struct Source {
    const char *group;
    const char *key;
    bool (*asksForLess)(const QVariant &value);
};

const Source sources[] = {
    {"org.freedesktop.appearance", "reduced-motion",
     [](const QVariant &value) { return value.toUInt() == 1; }},
    {"org.gnome.desktop.interface", "enable-animations",
     [](const QVariant &value) { return value.isValid() && !value.toBool(); }},
    {"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
     [](const QVariant &value) {
         bool isNumber = false;
         return value.toDouble(&isNumber) <= 0 && isNumber;
     }},
};

} // namespace

PortalMotion::PortalMotion(const QDBusConnection &bus)
    : m_bus(bus), m_arrivals(portalService(), bus, QDBusServiceWatcher::WatchForRegistration) {
    if (!m_bus.isConnected()) {
        return;
    }
    qDBusRegisterMetaType<Settings>();
    m_bus.connect(portalService(), portalPath(), portalSettings(), QStringLiteral("SettingChanged"),
                  this, SLOT(settingChanged(QDBusMessage)));
    connect(&m_arrivals, &QDBusServiceWatcher::serviceRegistered, this, &PortalMotion::ask);
    ask();
}

void PortalMotion::ask() {
    QStringList groups;
    for (const Source &source : sources) {
        groups += QString::fromLatin1(source.group);
    }
    QDBusMessage call = QDBusMessage::createMethodCall(portalService(), portalPath(),
                                                       portalSettings(), QStringLiteral("ReadAll"));
    call.setArguments({groups});
    const auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *answered) {
                const QDBusPendingReply<Settings> reply = *answered;
                answered->deleteLater();
                if (reply.isError()) {
                    return; // no portal here
                }
                m_asked.clear();
                const Settings settings = reply.value();
                for (auto group = settings.cbegin(); group != settings.cend(); ++group) {
                    for (auto it = group->cbegin(); it != group->cend(); ++it) {
                        take(group.key(), it.key(), it.value());
                    }
                }
                conclude();
            });
}

void PortalMotion::take(const QString &group, const QString &key, const QVariant &value) {
    for (const Source &source : sources) {
        if (group == QLatin1StringView(source.group) && key == QLatin1StringView(source.key)) {
            m_asked[key] = source.asksForLess(unboxed(value));
        }
    }
}

void PortalMotion::conclude() {
    const bool reduced = std::ranges::any_of(m_asked, [](bool less) { return less; });
    if (reduced != m_reduced) {
        m_reduced = reduced;
        if (m_changed) {
            m_changed();
        }
    }
}

/// Taken as a message: before a program's first call the bus library does not know the boxed value
/// for a parameter, and would refuse to connect.
void PortalMotion::settingChanged(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    if (arguments.size() == 3) {
        take(arguments[0].toString(), arguments[1].toString(), arguments[2]);
        conclude();
    }
}

} // namespace vorle
