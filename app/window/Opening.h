#pragma once

#include "base/Async.h"
#include "base/Cancellation.h"
#include "storage/StoreLock.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <chrono>
#include <optional>

namespace vorle {

class SingleInstance;

/// How a start becomes the one app on its topics, or finds the one there is. Of any number of
/// starts at once one goes on and the others raise it; one that comes while an app ends opens when
/// it has; one that comes while a command changes the topics waits for it. Main thread; what it is
/// given outlives the wait.
class Opening final : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        Open,  ///< both rights are held, commands are taken: the windows may be made
        Raised ///< another process is the app, and shows itself
    };
    /// Who is waited for.
    enum class Holder { App, Command };
    Q_ENUM(Holder)

    /// How long a start waits before there is a word on it: an app that opens or ends takes less.
    static constexpr std::chrono::milliseconds silentWait = std::chrono::milliseconds(700);

    Opening(StoreLock &app, StoreLock &topics, SingleInstance &instance, QString topicsFile)
        : m_app(app), m_topics(topics), m_instance(instance), m_file(std::move(topicsFile)) {}

    /// @throws std::system_error when a lock file cannot be opened, Cancelled
    Task<Outcome> begin(CancelToken cancel);

    /// What is said while `holder` is waited for, in French.
    static QString text(Holder holder);

Q_SIGNALS:
    /// This takes longer than an opening should, because of that one. Again when it is another.
    void waiting(vorle::Opening::Holder holder);

private:
    Task<bool> raised();
    Task<bool> told(Holder holder);
    void tellWaiting(Holder holder);

    StoreLock &m_app;
    StoreLock &m_topics;
    SingleInstance &m_instance;
    QString m_file;
    QElapsedTimer m_since;
    std::optional<Holder> m_told;
};

} // namespace vorle
