#include "app/window/Announcer.h"

#include <QAccessible>

namespace vorle {

Announcer::Announcer(QQuickItem *parent) : QQuickItem(parent) {
    using namespace std::chrono_literals;
    setVisible(false);
    m_soon.setSingleShot(true);
    m_soon.setInterval(150ms);
    connect(&m_soon, &QTimer::timeout, this, &Announcer::speak);
    m_said.setSingleShot(true);
    m_said.setInterval(8s);
    connect(&m_said, &QTimer::timeout, this, [this] { setVisible(false); });
}

void Announcer::say(const QString &words) {
    if (!words.isEmpty()) {
        m_next = words;
        m_soon.start();
    }
}

void Announcer::speak() {
    m_words = m_next;
    Q_EMIT wordsChanged();
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(this, m_words);
    QAccessible::updateAccessibility(&event);
#else
    setVisible(false);
    setVisible(true);
    m_said.start();
#endif
}

void Announcer::pointAt(QQuickItem *item) {
    if (item == nullptr) {
        return;
    }
    Q_EMIT pointedAt(item);
    if (QAccessible::isActive()) { // else nothing need be made for it
        for (const QAccessible::Event kind : {QAccessible::Focus, QAccessible::Selection}) {
            QAccessibleEvent event(item, kind);
            QAccessible::updateAccessibility(&event);
        }
    }
}

} // namespace vorle
