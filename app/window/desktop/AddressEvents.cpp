#include "app/window/desktop/AddressEvents.h"

#include <QCoreApplication>
#include <QFileOpenEvent>
#include <QUrl>

#include <utility>

namespace vorle {

AddressEvents::AddressEvents() { qApp->installEventFilter(this); }

void AddressEvents::follow(std::function<void(const QString &)> opened) {
    m_opened = std::move(opened);
    if (const auto waiting = std::exchange(m_waiting, std::nullopt); waiting && m_opened) {
        m_opened(*waiting);
    }
}

bool AddressEvents::eventFilter(QObject *watched, QEvent *event) {
    if (watched != qApp || event->type() != QEvent::FileOpen) {
        return QObject::eventFilter(watched, event);
    }
    const QString address =
        static_cast<QFileOpenEvent *>(event)->url().toString(QUrl::FullyEncoded);
    if (m_opened) {
        m_opened(address);
    } else {
        m_waiting = address;
    }
    return true;
}

} // namespace vorle
