#include "platform/linux/BusNotifications.h"

#include "base/French.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUrl>
#include <QVariantMap>

#include <utility>

namespace vorle {

namespace {

QString service() { return QStringLiteral("org.freedesktop.Notifications"); }
QString servicePath() { return QStringLiteral("/org/freedesktop/Notifications"); }

QDBusMessage callOf(const char *method) {
    return QDBusMessage::createMethodCall(service(), servicePath(), service(),
                                          QString::fromLatin1(method));
}

QDBusMessage askTheBus(const char *method) {
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    return QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                          QString::fromLatin1(method));
}

/// The name of the tap on the notice itself.
QString tapName() { return QStringLiteral("default"); }

/// Calls `take` with the answer, unless `owner` is gone by then. Never waits.
template <class Take>
void whenAnswered(QDBusConnection &bus, const QDBusMessage &call, QObject *owner, Take take) {
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner,
                     [take](QDBusPendingCallWatcher *answered) {
                         answered->deleteLater();
                         take(answered->reply());
                     });
}

bool isError(const QDBusMessage &reply) { return reply.type() == QDBusMessage::ErrorMessage; }

} // namespace

BusNotifications::BusNotifications(const QDBusConnection &bus)
    : m_bus(bus), m_service(service(), bus, QDBusServiceWatcher::WatchForOwnerChange) {
    if (!m_bus.isConnected()) {
        m_standing = Standing::Absent;
        return;
    }
    connect(
        &m_service, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString &, const QString &, const QString &owner) { ownerChanged(owner); });
    const std::pair<const char *, const char *> signalsOfIt[] = {
        {"ActionInvoked", SLOT(actionInvoked(QDBusMessage))},
        {"ActivationToken", SLOT(activationGiven(QDBusMessage))},
        {"NotificationClosed", SLOT(closed(QDBusMessage))}};
    for (const auto &[name, slot] : signalsOfIt) {
        m_bus.connect(service(), servicePath(), service(), QString::fromLatin1(name), this, slot);
    }
}

void BusNotifications::registerCategories(const QList<NotificationCategory> &categories) {
    m_categories.clear();
    for (const NotificationCategory &category : categories) {
        m_categories.insert(category.identifier, category);
    }
}

void BusNotifications::become(Standing standing) {
    m_standing = standing;
    if (m_events.known) {
        m_events.known();
    }
}

void BusNotifications::look() {
    if (!m_bus.isConnected()) {
        become(Standing::Absent);
        return;
    }
    QDBusMessage call = askTheBus("NameHasOwner");
    call.setArguments({service()});
    whenAnswered(m_bus, call, this, [this](const QDBusMessage &reply) {
        if (!isError(reply) && reply.arguments().value(0).toBool()) {
            become(Standing::Granted);
        } else {
            lookAmongActivatable();
        }
    });
}

/// A service that does not run may be one that the bus starts when it is called.
void BusNotifications::lookAmongActivatable() {
    whenAnswered(m_bus, askTheBus("ListActivatableNames"), this, [this](const QDBusMessage &reply) {
        const bool known = reply.arguments().value(0).toStringList().contains(service());
        become(known ? Standing::Granted : Standing::Absent);
    });
}

void BusNotifications::ownerChanged(const QString &owner) {
    ++m_reign;
    m_capabilities.reset();
    m_shown.clear();
    m_asking = false;
    m_sending = false;
    if (!owner.isEmpty()) {
        if (!m_waiting.isEmpty()) {
            askCapabilities(); // what waits goes to the one that came
        }
        become(Standing::Granted);
        return;
    }
    // Not tried again: one that dies of a notice would do so without end.
    refuseWaiting(QStringLiteral("the service has gone"));
    look();
}

QString BusNotifications::remedy() const {
    if (m_standing != Standing::Absent) {
        return {};
    }
    return m_bus.isConnected()
               ? French::tr("Aucun service de notifications ne répond ici. Installe ou lance "
                            "celui de ton bureau (dunst, mako…), et ça marchera aussitôt.")
               : French::tr("Je ne trouve pas le bus de session (D-Bus), par où passent les "
                            "notifications. Ouvre vorle depuis ton bureau.");
}

void BusNotifications::post(const Notification &notification) {
    if (!m_bus.isConnected()) {
        refused(notification.identifier, QStringLiteral("there is no session bus"));
        return;
    }
    m_waiting.removeIf(
        [&](const Notification &other) { return other.identifier == notification.identifier; });
    m_waiting.append(notification);
    m_capabilities ? sendNext() : askCapabilities();
}

/// One after the other: what takes a place has to know the number of what it replaces.
void BusNotifications::sendNext() {
    if (!m_sending && !m_waiting.isEmpty()) {
        m_sending = true;
        send(m_waiting.takeFirst());
    }
}

void BusNotifications::askCapabilities() {
    if (std::exchange(m_asking, true)) {
        return;
    }
    whenAnswered(m_bus, callOf("GetCapabilities"), this,
                 [this, reign = m_reign](const QDBusMessage &reply) {
                     if (reign != m_reign) {
                         return; // the one that came since is asked
                     }
                     m_asking = false;
                     if (isError(reply)) {
                         refuseWaiting(reply.errorMessage());
                         return;
                     }
                     const QStringList names = reply.arguments().value(0).toStringList();
                     m_capabilities.emplace(names.begin(), names.end());
                     sendNext();
                 });
}

NotificationCategory BusNotifications::categoryOf(const Notification &notification) const {
    return m_categories.value(notification.category);
}

void BusNotifications::send(const Notification &notification) {
    const auto can = [this](const char *name) {
        return m_capabilities->contains(QString::fromLatin1(name));
    };
    const NotificationCategory category = categoryOf(notification);
    QStringList actions;
    if (can("actions")) {
        actions += {tapName(), French::tr("Ouvrir")};
        for (const NotificationAction &action : category.actions) {
            actions += {action.identifier, action.label};
        }
    }
    QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("fr.vorle.vorle")},
                      {QStringLiteral("x-vorle-section"), notification.section},
                      {QStringLiteral("urgency"),
                       QVariant::fromValue<uchar>(
                           category.weight == NotificationCategory::Weight::Urgent ? 2 : 1)}};
    if (!category.identifier.isEmpty()) {
        hints.insert(QStringLiteral("category"), QStringLiteral("x-vorle.") + category.identifier);
    }
    if (!notification.picture.isEmpty()) {
        hints.insert(QStringLiteral("image-path"),
                     QUrl::fromLocalFile(notification.picture).toString(QUrl::FullyEncoded));
    }
    if (notification.sound == Notification::Sound::Default && can("sound")) {
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    }
    // A title is never markup; a text is where the service says so.
    QString title = notification.title;
    QString body = can("body-markup") ? notification.body.toHtmlEscaped() : notification.body;
    if (!can("body")) {
        title += QStringLiteral(". ") + notification.body;
        body.clear();
    }
    uint replaced = 0;
    for (auto it = m_shown.cbegin(); it != m_shown.cend(); ++it) {
        replaced = it->identifier == notification.identifier ? it.key() : replaced;
    }
    QDBusMessage call = callOf("Notify");
    call.setArguments(
        {QStringLiteral("vorle"), replaced, QString(), title, body, actions, hints, -1});
    whenAnswered(m_bus, call, this,
                 [this, reign = m_reign, identifier = notification.identifier,
                  section = notification.section](const QDBusMessage &reply) {
                     if (reign != m_reign) {
                         return; // gone, with all that it showed
                     }
                     m_sending = false;
                     if (isError(reply)) {
                         refused(identifier, reply.errorMessage());
                         refuseWaiting(reply.errorMessage());
                     } else {
                         m_shown.removeIf([&](const auto &each) {
                             return each.value().identifier == identifier;
                         });
                         m_shown.insert(reply.arguments().value(0).toUInt(), {identifier, section});
                         sendNext();
                     }
                 });
}

void BusNotifications::refuseWaiting(const QString &words) {
    for (const Notification &each : std::exchange(m_waiting, {})) {
        refused(each.identifier, words);
    }
}

/// A service that takes no notice is as good as none.
void BusNotifications::refused(const QString &identifier, const QString &words) {
    m_capabilities.reset();
    if (m_events.failed) {
        m_events.failed(identifier, words);
    }
    become(Standing::Absent);
}

/// Taken as messages: see PortalMotion.
void BusNotifications::actionInvoked(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    const auto shown = m_shown.constFind(arguments.value(0).toUInt());
    if (shown == m_shown.cend() || !m_events.tapped) {
        return;
    }
    const QString action = arguments.value(1).toString();
    const NotificationTap tap{shown->identifier, shown->section,
                              action == tapName() ? QString() : action};
    m_events.tapped(tap);
}

/// Wayland lets a window come to the front for whoever shows the token of a click.
void BusNotifications::activationGiven(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    if (m_shown.contains(arguments.value(0).toUInt())) {
        qputenv("XDG_ACTIVATION_TOKEN", arguments.value(1).toString().toUtf8());
    }
}

void BusNotifications::closed(const QDBusMessage &signal) {
    m_shown.remove(signal.arguments().value(0).toUInt());
}

} // namespace vorle
