#include "platform/linux/DesktopReveal.h"

#include "base/French.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace vorle {

DesktopReveal::DesktopReveal(const QDBusConnection &bus) : m_bus(bus) {}

QString DesktopReveal::label() const { return French::tr("Montrer dans le dossier"); }

bool DesktopReveal::reveal(const QString &path) {
    const QUrl folder = QUrl::fromLocalFile(QFileInfo(path).absolutePath());
    if (!m_bus.isConnected()) {
        return QDesktopServices::openUrl(folder);
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [folder](QDBusPendingCallWatcher *answered) {
                         const QDBusPendingReply<> reply = *answered;
                         if (reply.isError()) {
                             QDesktopServices::openUrl(folder);
                         }
                         answered->deleteLater();
                     });
    return true;
}

} // namespace vorle
