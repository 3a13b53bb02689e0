#pragma once

#include "app/wiring/AppSocket.h"
#include "base/Async.h"

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace vorle {

/// Lets a second start raise the first, and a command line reach it: the running app listens on a
/// local socket of the user's alone, named after its topics file. Whether it listens or not says
/// nothing about whether it runs: that is what the right to be the app tells. Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString &topicsFile, QObject *parent = nullptr);

    /// Asks the app that runs on these topics to show itself; false when none answers within a few
    /// seconds, or it is about to end.
    static Task<bool> raiseRunning(QString topicsFile);

    /// Starts listening. Only for the process that has the right to be the app: what a crashed one
    /// left of its socket is taken away. False when the socket cannot be made; the app runs
    /// without.
    bool listen();
    /// The same once more where the socket is gone from the disk: systems sweep their temporary
    /// folders. Does nothing before the first time, or after close().
    void listenWhereGone();
    /// From now on commands are taken too: the topics are this process's.
    void serve() { m_serving = true; }
    /// Takes no further caller, and answers none that has not asked yet.
    void close();

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
    bool m_serving = false;
    bool m_closed = false;
};

} // namespace vorle
