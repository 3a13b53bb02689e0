#include "app/window/SingleInstance.h"

#include "base/Log.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLocalSocket>

namespace vorle {

namespace {

constexpr int patienceMs = 2000;

/// In the program's private temporary directory, which only the user can reach; short, since a
/// socket's path may have 104 bytes on a Mac.
QString socketName(const QString &topicsFile) {
    const QByteArray hash = QCryptographicHash::hash(
        QFileInfo(topicsFile).absoluteFilePath().toUtf8(), QCryptographicHash::Sha256);
    return QDir::tempPath() + QStringLiteral("/vorle-app-") +
           QString::fromLatin1(hash.toHex().left(12));
}

} // namespace

SingleInstance::SingleInstance(const QString &topicsFile, QObject *parent)
    : QObject(parent), m_name(socketName(topicsFile)) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
            caller->write("ok\n");
            caller->flush();
            caller->disconnectFromServer();
            Q_EMIT raiseAsked();
        }
    });
}

bool SingleInstance::raiseRunning(const QString &topicsFile) {
    QLocalSocket socket;
    socket.connectToServer(socketName(topicsFile));
    return socket.waitForConnected(patienceMs) && socket.waitForReadyRead(patienceMs) &&
           socket.readAll().startsWith("ok");
}

bool SingleInstance::listen() {
    QLocalServer::removeServer(m_name);
    if (m_server.listen(m_name)) {
        return true;
    }
    logLine(QStringLiteral("a second start will not find this one: ") + m_server.errorString());
    return false;
}

} // namespace vorle
