#include "platform/linux/PortalRequest.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QUuid>

namespace vorle {

namespace {

QString requestInterface() { return QStringLiteral("org.freedesktop.portal.Request"); }

} // namespace

QString portalService() { return QStringLiteral("org.freedesktop.portal.Desktop"); }

QString portalPath() { return QStringLiteral("/org/freedesktop/portal/desktop"); }

PortalRequest::PortalRequest(const QDBusConnection &bus, QObject *owner, Done done)
    : QObject(owner), m_bus(bus), m_done(std::move(done)) {}

QPointer<PortalRequest>
PortalRequest::ask(const QDBusConnection &bus, const QString &interface, const QString &method,
                   const std::function<QVariantList(QVariantMap options)> &arguments,
                   QObject *owner, Done done) {
    auto *request = new PortalRequest(bus, owner, std::move(done));
    const QString token = QStringLiteral("vorle_") + QUuid::createUuid().toString(QUuid::Id128);
    // Heard before it is asked: the answer may come first.
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    request->listenAt(portalPath() + QStringLiteral("/request/") + sender + u'/' + token);
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService(), portalPath(), interface, method);
    call.setArguments(arguments({{QStringLiteral("handle_token"), token}}));
    const auto *watcher = new QDBusPendingCallWatcher(request->m_bus.asyncCall(call), request);
    connect(watcher, &QDBusPendingCallWatcher::finished, request,
            [request](QDBusPendingCallWatcher *called) {
                const QDBusPendingReply<QDBusObjectPath> reply = *called;
                if (reply.isError()) {
                    request->end(Answer::Failed, {});
                    return;
                }
                request->m_taken = true;
                if (reply.value().path() != request->m_path) {
                    request->listenAt(reply.value().path()); // an older portal names it itself
                }
            });
    return request;
}

void PortalRequest::takeBack() {
    if (std::exchange(m_done, {})) {
        // After the question itself: a portal that wakes up late reads both.
        m_bus.send(QDBusMessage::createMethodCall(portalService(), m_path, requestInterface(),
                                                  QStringLiteral("Close")));
        deleteLater();
    }
}

void PortalRequest::listenAt(const QString &path) {
    if (!m_path.isEmpty()) {
        m_bus.disconnect(portalService(), m_path, requestInterface(), QStringLiteral("Response"),
                         this, SLOT(answered(QDBusMessage)));
    }
    m_path = path;
    m_bus.connect(portalService(), m_path, requestInterface(), QStringLiteral("Response"), this,
                  SLOT(answered(QDBusMessage)));
}

void PortalRequest::answered(const QDBusMessage &signal) {
    const QVariantList arguments = signal.arguments();
    const uint response = arguments.value(0, 2U).toUInt();
    const auto results = qdbus_cast<QVariantMap>(arguments.value(1));
    end(response == 0 ? Answer::Given : response == 1 ? Answer::Refused : Answer::Failed, results);
}

void PortalRequest::end(Answer answer, const QVariantMap &results) {
    if (const Done done = std::exchange(m_done, {})) {
        deleteLater();
        done(answer, results);
    }
}

} // namespace vorle
