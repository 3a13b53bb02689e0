#pragma once

#include "tests/support/Files.h"
#include "tests/support/Wait.h"

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace vorle::test {

/// A message bus of the test's own, which starts no service by itself, and connections to it, which
/// end with it.
class MessageBus {
public:
    MessageBus() {
        const QString rules = m_folder.filePath(QStringLiteral("bus.conf"));
        writeFile(rules, R"(<busconfig><type>session</type><listen>unix:dir=)" +
                             m_folder.path().toUtf8() +
                             R"(</listen><policy context="default"><allow send_destination="*"/>
                             <allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)");
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file"), rules});
        QByteArray address;
        spinUntil([&] {
            address += m_daemon.readAllStandardOutput();
            return address.endsWith('\n') || m_daemon.state() == QProcess::NotRunning;
        });
        m_address = QString::fromLatin1(address.trimmed());
    }
    ~MessageBus() {
        for (const QString &name : std::as_const(m_names)) {
            QDBusConnection::disconnectFromBus(name);
        }
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    MessageBus(const MessageBus &) = delete;
    MessageBus &operator=(const MessageBus &) = delete;

    const QString &address() const { return m_address; }
    /// The connection of that name, the same one each time.
    QDBusConnection connection(const char *name) {
        const QString named = QString::fromLatin1(name);
        m_names += named;
        return QDBusConnection::connectToBus(m_address, named);
    }
    /// Cuts it, as when its process ends: its services go.
    void cut(const char *name) { QDBusConnection::disconnectFromBus(QString::fromLatin1(name)); }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

} // namespace vorle::test
