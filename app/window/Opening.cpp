#include "app/window/Opening.h"

#include "app/window/SingleInstance.h"

namespace vorle {

Task<Opening::Outcome> Opening::begin(CancelToken cancel) {
    m_since.start();
    if (!co_await m_app.taken([this] { return raised(); }, cancel)) {
        co_return Outcome::Raised;
    }
    m_instance.listen();
    co_await m_topics.taken([this] { return told(Holder::Command); }, cancel);
    m_instance.serve();
    co_return Outcome::Open;
}

/// It may not listen yet, or not any more.
Task<bool> Opening::raised() {
    const bool isRaised = co_await SingleInstance::raiseRunning(m_file);
    co_return isRaised || co_await told(Holder::App);
}

/// Never reason enough to wait no longer.
Task<bool> Opening::told(Holder holder) {
    tellWaiting(holder);
    co_return false;
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
