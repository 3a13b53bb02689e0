#include "app/window/AccessibilityBarrier.h"

#include "app/window/AccessibleParts.h"

#include <QAccessible>

namespace vorle {

namespace {

class BarrierInterface final : public AccessibleParts {
public:
    using AccessibleParts::AccessibleParts;

protected:
    QList<QAccessibleInterface *> parts() const override {
        const auto *barrier = qobject_cast<const AccessibilityBarrier *>(object());
        return barrier->active() ? QList<QAccessibleInterface *>() : AccessibleParts::parts();
    }
};

QAccessibleInterface *interfaceOf(const QString &className, QObject *object) {
    if (auto *barrier = qobject_cast<AccessibilityBarrier *>(object)) {
        return new BarrierInterface(barrier);
    }
    return className == u"QQuickListView" ? new AccessibleList(qobject_cast<QQuickItem *>(object))
                                          : nullptr;
}

} // namespace

AccessibilityBarrier::AccessibilityBarrier(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
    QAccessible::installFactory(interfaceOf); // once is enough, and again does nothing
}

void AccessibilityBarrier::setActive(bool active) {
    if (m_active == active) {
        return;
    }
    m_active = active;
    Q_EMIT activeChanged();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace vorle
