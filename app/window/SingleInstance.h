#pragma once

#include "app/AppSocket.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace vorle {

/// Lets a second start raise the first, and a command line reach it: the running app listens on a
/// local socket of the user's alone, named after its topics file. Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString &topicsFile, QObject *parent = nullptr);

    /// Asks the app that runs on these topics to show itself; false when none answers. Holds the
    /// thread for a few seconds at most.
    static bool raiseRunning(const QString &topicsFile);

    /// Starts listening. Only for the process that holds the topics' lock: what a crashed app left
    /// of its socket is taken away. False when the socket cannot be made; the app runs without.
    bool listen();
    /// Takes no further caller.
    void close() { m_server.close(); }

Q_SIGNALS:
    /// A second start asked this one to show itself.
    void raiseAsked();
    /// A command line asks for a command. Whoever listens answers; the connection goes by itself
    /// once it is closed.
    void commandAsked(vorle::AppConnection &caller, const vorle::AppCommand &command);

private:
    void welcome(QLocalSocket *socket);
    void take(AppConnection &caller, const AppMessage &message);

    QString m_name;
    QLocalServer m_server;
};

} // namespace vorle
