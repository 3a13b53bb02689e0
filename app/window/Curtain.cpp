#include "app/window/Curtain.h"

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

class CurtainInterface final : public QAccessibleObject {
public:
    explicit CurtainInterface(Curtain *curtain) : QAccessibleObject(curtain) {}

    QWindow *window() const override { return curtain() ? curtain()->window() : nullptr; }
    QAccessibleInterface *parent() const override {
        for (QQuickItem *item = curtain()->parentItem(); item != nullptr;
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
        state.invisible = !curtain()->isVisible();
        return state;
    }
    QRect rect() const override {
        const QRectF inScene = curtain()->mapRectToScene(curtain()->boundingRect());
        const QPoint corner =
            window() != nullptr ? window()->mapToGlobal(inScene.topLeft().toPoint()) : QPoint();
        return {corner, inScene.size().toSize()};
    }

private:
    Curtain *curtain() const { return static_cast<Curtain *>(object()); }
    /// What the screen says of it with the attached properties.
    QVariant given(const QString &name) const {
        return QQmlProperty(curtain(), name, qmlContext(curtain())).read();
    }
    QList<QAccessibleInterface *> children() const {
        QList<QAccessibleInterface *> found;
        if (!curtain()->drawn()) {
            collect(*curtain(), found);
        }
        return found;
    }
};

QAccessibleInterface *interfaceOf(const QString & /*className*/, QObject *object) {
    auto *curtain = qobject_cast<Curtain *>(object);
    return curtain != nullptr ? new CurtainInterface(curtain) : nullptr;
}

} // namespace

Curtain::Curtain(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
    QAccessible::installFactory(interfaceOf); // once is enough, and again does nothing
}

void Curtain::setDrawn(bool drawn) {
    if (m_drawn == drawn) {
        return;
    }
    m_drawn = drawn;
    Q_EMIT drawnChanged();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace vorle
