#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>

namespace vorle {

/// The demonstration as a process of its own: its topics, settings, agent and lock are its alone,
/// and nothing of it comes back but its end. Main thread.
class DemoProcess final : public QObject {
    Q_OBJECT
public:
    /// Set in the environment of a demonstration that was opened from the app: it shows the way
    /// back.
    static constexpr const char *returnVariable = "VORLE_DEMO_RETURN";

    /// @param program  what is started, with `arguments`: this program with "--demo"
    explicit DemoProcess(QString program, QStringList arguments = {QStringLiteral("--demo")},
                         QObject *parent = nullptr);
    /// Ends a demonstration that is still open.
    ~DemoProcess() override;

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// Opens it; nothing while it is open.
    void start();
    /// Asks it to end, as quitting it would; nothing while none is open.
    void stop();

Q_SIGNALS:
    void started();
    /// It was closed, or could not be opened: then `problem` is a French sentence, else "".
    void ended(const QString &problem);

private:
    QProcess m_process;
    QString m_program;
    QStringList m_arguments;
};

} // namespace vorle
