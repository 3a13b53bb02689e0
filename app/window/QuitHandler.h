#pragma once

#include <QObject>

namespace vorle {

/// Takes every way in which the system asks the program to quit (the Dock, ⌘Q, a session that
/// ends, a session manager, QCoreApplication::quit()) to one door. The program leaves in its own
/// time, keeping what it has; the system is answered once it has left, and is made to wait a few
/// seconds at most. Main thread; one object a program.
class QuitHandler final : public QObject {
    Q_OBJECT
public:
    /// How long the system is made to wait.
    static constexpr int timeoutMs = 10'000;

    QuitHandler();

    /// The program has left: nothing is under way any more, all is kept. It ends with that status.
    void left(int status = 0);

Q_SIGNALS:
    /// The system wants the program to end: whoever listens leaves, and calls `left()`. Once at
    /// most.
    void quitAsked();
    /// The session may end soon, or not at all: what can be kept at once is to be on disk when
    /// this returns. The program goes on.
    void keepAsked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool m_asked = false;
    bool m_left = false;
};

} // namespace vorle
