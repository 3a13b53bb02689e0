#include "app/window/AccessibilityBarrier.h"

#include <QAccessibleObject>
#include <QQmlContext>
#include <QQmlProperty>
#include <QQuickWindow>

namespace vorle {

namespace {

/// The items one comes upon inside `item`: those that have something to say, and behind those that
/// have not, theirs.
void collect(const QQuickItem &item, QList<QAccessibleInterface *> &found) {
    for (QQuickItem *child : item.childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        if (QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(child)) {
            found.append(interface);
        } else {
            collect(*child, found);
        }
    }
}

class BarrierInterface final : public QAccessibleObject {
public:
    explicit BarrierInterface(AccessibilityBarrier *barrier) : QAccessibleObject(barrier) {}

    QWindow *window() const override { return barrier() ? barrier()->window() : nullptr; }
    QAccessibleInterface *parent() const override {
        for (QQuickItem *item = barrier()->parentItem(); item != nullptr;
             item = item->parentItem()) {
            if (QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(item)) {
                return interface;
            }
        }
        return QAccessible::queryAccessibleInterface(window());
    }
    QAccessibleInterface *child(int index) const override {
        return children().value(index, nullptr);
    }
    int childCount() const override { return static_cast<int>(children().size()); }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return static_cast<int>(children().indexOf(child));
    }
    QAccessibleInterface *childAt(int x, int y) const override {
        const QList<QAccessibleInterface *> all = children();
        for (auto it = all.crbegin(); it != all.crend(); ++it) {
            if ((*it)->rect().contains(x, y)) {
                QAccessibleInterface *deeper = (*it)->childAt(x, y);
                return deeper != nullptr ? deeper : *it;
            }
        }
        return nullptr;
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? given(QStringLiteral("Accessible.name")).toString()
                                         : QString();
    }
    QAccessible::Role role() const override {
        return static_cast<QAccessible::Role>(given(QStringLiteral("Accessible.role")).toInt());
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !barrier()->isVisible();
        return state;
    }
    QRect rect() const override {
        const QRectF inScene = barrier()->mapRectToScene(barrier()->boundingRect());
        const QPoint corner =
            window() != nullptr ? window()->mapToGlobal(inScene.topLeft().toPoint()) : QPoint();
        return {corner, inScene.size().toSize()};
    }

private:
    AccessibilityBarrier *barrier() const { return static_cast<AccessibilityBarrier *>(object()); }
    /// What the screen says of it with the attached properties.
    QVariant given(const QString &name) const {
        return QQmlProperty(barrier(), name, qmlContext(barrier())).read();
    }
    QList<QAccessibleInterface *> children() const {
        QList<QAccessibleInterface *> found;
        if (!barrier()->active()) {
            collect(*barrier(), found);
        }
        return found;
    }
};

QAccessibleInterface *interfaceOf(const QString & /*className*/, QObject *object) {
    auto *barrier = qobject_cast<AccessibilityBarrier *>(object);
    return barrier != nullptr ? new BarrierInterface(barrier) : nullptr;
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
