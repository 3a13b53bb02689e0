#include "base/SocketWatch.h"

#include <utility>

namespace vorle {

SocketWatch::SocketWatch(std::function<void(int, Ready)> ready) : m_ready(std::move(ready)) {}

void SocketWatch::follow(int socket, bool reading, bool writing) {
    Watched &watched = m_watched[socket];
    const auto want = [&](Notifier &notifier, bool wanted, Ready ready) {
        if (!wanted) {
            notifier.reset();
        } else if (!notifier) {
            notifier = made(socket, ready);
        }
    };
    want(watched.read, reading, Ready::Read);
    want(watched.write, writing, Ready::Write);
}

SocketWatch::Notifier SocketWatch::made(int socket, Ready ready) {
    Notifier notifier(new QSocketNotifier(socket, ready == Ready::Read ? QSocketNotifier::Read
                                                                       : QSocketNotifier::Write));
    QObject::connect(notifier.get(), &QSocketNotifier::activated,
                     [this, socket, ready] { m_ready(socket, ready); });
    return notifier;
}

} // namespace vorle
