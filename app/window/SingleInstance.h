#pragma once

#include <QLocalServer>
#include <QObject>
#include <QString>

namespace vorle {

/// Lets a second start raise the first: the running app listens on a local socket of the user's
/// alone, named after its topics file. Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(const QString &topicsFile, QObject *parent = nullptr);

    /// Asks the app that runs on these topics to show itself; false when none answers.
    static bool raiseRunning(const QString &topicsFile);

    /// Starts listening. Only for the process that holds the topics' lock: what a crashed app left
    /// of its socket is taken away. False when the socket cannot be made; the app runs without.
    bool listen();

Q_SIGNALS:
    /// A second start asked this one to show itself.
    void raiseAsked();

private:
    QString m_name;
    QLocalServer m_server;
};

} // namespace vorle
