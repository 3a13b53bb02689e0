#pragma once

#include <QSocketNotifier>

#include <functional>
#include <map>
#include <memory>

namespace vorle {

/// Descriptors that the event loop watches for somebody else's library. Main thread.
class SocketWatch {
public:
    enum class Ready { Read, Write };
    /// @param ready  told from the event loop that a descriptor can be read, or written
    explicit SocketWatch(std::function<void(int, Ready)> ready);

    /// Watches the descriptor for these, and for nothing else any more.
    void follow(int socket, bool reading, bool writing);
    /// Watches it no more: it may be closed on return, also from within `ready`.
    void drop(int socket) { m_watched.erase(socket); }

private:
    /// Disabled at once, for its descriptor is about to be closed; deleted later, for a socket may
    /// be dropped from within its own notification.
    struct Deleter {
        void operator()(QSocketNotifier *notifier) const {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };
    using Notifier = std::unique_ptr<QSocketNotifier, Deleter>;
    struct Watched {
        Notifier read;
        Notifier write;
    };

    Notifier made(int socket, Ready ready);

    std::function<void(int, Ready)> m_ready;
    std::map<int, Watched> m_watched;
};

} // namespace vorle
