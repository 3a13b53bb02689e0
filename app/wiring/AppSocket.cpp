#include "app/wiring/AppSocket.h"

#include "storage/DurableFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>
#include <QtEndian>

namespace vorle {

namespace {

constexpr qsizetype lengthBytes = 4;
constexpr qint64 readAtOnce = 1 << 16;
/// What a Mac takes, with a zero behind it in 104 bytes; Linux takes four more.
constexpr qsizetype longestPath = 103;

} // namespace

QString appSocketName(const QString &topicsFile) {
    QStringList folders{QDir::tempPath()};
#ifdef Q_OS_MACOS
    // There what nobody opened for three days is swept out of the temporary folder.
    folders.prepend(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                    QStringLiteral("/vorle"));
#endif
    return appSocketName(topicsFile, folders);
}

QString appSocketName(const QString &topicsFile, const QStringList &folders) {
    const QFileInfo file(linkTarget(topicsFile));
    const QString name = QDir(file.absolutePath()).canonicalPath() + u'/' + file.fileName();
    const QByteArray hash = QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha256);
    const QString last = QStringLiteral("/vorle-app-") + QString::fromLatin1(hash.toHex().left(12));
    for (const QString &folder : folders) {
        if (QFile::encodeName(folder + last).size() <= longestPath) {
            return folder + last;
        }
    }
    return folders.constLast() + last;
}

AppConnection::AppConnection(QLocalSocket *socket, qsizetype longest, QObject *parent)
    : QObject(parent), m_socket(socket), m_longest(longest) {
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readAtOnce);
    connect(m_socket, &QLocalSocket::readyRead, this, &AppConnection::read);
    // The other end's last words may have come together with its leaving.
    const auto readThenClose = [this] {
        read();
        close();
    };
    connect(m_socket, &QLocalSocket::disconnected, this, readThenClose);
    connect(m_socket, &QLocalSocket::errorOccurred, this, readThenClose);
}

void AppConnection::send(const AppMessage &message) {
    if (!m_open) {
        return;
    }
    if (m_socket->bytesToWrite() > maxAnswerBytes) {
        close();
        return;
    }
    const QByteArray text = json::encode(message, json::Style::Compact);
    QByteArray length(lengthBytes, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(text.size()), length.data());
    m_socket->write(length + text);
    // The event loop may be about to end, or to be held by a command that does not wait.
    m_socket->flush();
}

void AppConnection::finish() {
    if (m_open) {
        m_socket->disconnectFromServer();
    }
}

void AppConnection::close() {
    if (m_open) {
        m_open = false;
        m_socket->abort();
        Q_EMIT closed();
    }
}

void AppConnection::read() {
    const QPointer<AppConnection> self(this);
    if (m_socket->bytesAvailable() > 0) {
        m_bytes += m_socket->readAll();
    }
    while (self && m_open && m_bytes.size() >= lengthBytes) {
        const qsizetype length = qFromBigEndian<quint32>(m_bytes.constData());
        if (length > m_longest) {
            close();
            return;
        }
        if (m_bytes.size() < lengthBytes + length) {
            return;
        }
        const QByteArray text = m_bytes.mid(lengthBytes, length);
        m_bytes.remove(0, lengthBytes + length);
        AppMessage message;
        try {
            message = json::decode<AppMessage>(text);
        } catch (const json::DecodeError &) {
            close();
            return;
        }
        Q_EMIT received(message);
    }
}

} // namespace vorle
