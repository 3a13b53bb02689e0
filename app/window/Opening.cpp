#include "app/window/Opening.h"

#include "app/window/SingleInstance.h"

namespace vorle {

namespace {

constexpr std::chrono::milliseconds pause(50);

} // namespace

Task<Opening::Outcome> Opening::begin(CancelToken cancel) {
    m_since.start();
    while (!m_app.tryLock()) {
        // It may not listen yet, or not any more.
        if (co_await SingleInstance::raiseRunning(m_file)) {
            co_return Outcome::Raised;
        }
        tellWaiting(Holder::App);
        co_await sleepFor(pause, cancel);
    }
    m_instance.listen();
    while (!m_topics.tryLock()) {
        tellWaiting(Holder::Command);
        co_await sleepFor(pause, cancel);
    }
    m_instance.serve();
    co_return Outcome::Open;
}

void Opening::tellWaiting(Holder holder) {
    if (m_told != holder && std::chrono::milliseconds(m_since.elapsed()) >= silentWait) {
        m_told = holder;
        Q_EMIT waiting(holder);
    }
}

QString Opening::text(Holder holder) {
    return holder == Holder::App
               ? tr("vorle est déjà lancé, mais ne répond pas encore. J’attends.")
               : tr("Une commande vorle travaille sur tes sujets. J’ouvre dès qu’elle a fini.");
}

} // namespace vorle
