#include "app/window/QuitHandler.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QSessionManager>
#include <QTimer>

#include <utility>

namespace vorle {

QuitHandler::QuitHandler() {
    qApp->installEventFilter(this);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &QuitHandler::keepAsked);
}

void QuitHandler::left(int status) {
    m_left = true;
    // From the event loop, which may not have started yet.
    QMetaObject::invokeMethod(
        qApp, [status] { QCoreApplication::exit(status); }, Qt::QueuedConnection);
}

bool QuitHandler::eventFilter(QObject *watched, QEvent *event) {
    if (watched != qApp || event->type() != QEvent::Quit) {
        return QObject::eventFilter(watched, event);
    }
    const bool first = !std::exchange(m_asked, true);
    if (first && !m_left) {
        Q_EMIT quitAsked();
    }
    if (first && !m_left) {
        // A session that ends waits for the answer alone, and kills who has given it.
        QEventLoop leaving;
        QTimer::singleShot(timeoutMs, &leaving, &QEventLoop::quit);
        leaving.exec(); // left() ends it, as it ends every loop
    }
    event->setAccepted(m_left);
    return true;
}

} // namespace vorle
