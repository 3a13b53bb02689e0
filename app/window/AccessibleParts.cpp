#include "app/window/AccessibleParts.h"

#include <QQmlContext>
#include <QQmlProperty>

#include <algorithm>

namespace vorle {

namespace {

/// What the screen says of it with the attached properties.
QVariant given(QQuickItem &item, const QString &name) {
    return QQmlProperty(&item, name, qmlContext(&item)).read();
}

void collect(const QQuickItem &item, QList<QAccessibleInterface *> &found) {
    for (QQuickItem *child : item.childItems()) {
        if (!child->isVisible()) {
            continue;
        }
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(child);
        // An item that was one before it was passed over stays known.
        if (interface != nullptr && !given(*child, QStringLiteral("Accessible.ignored")).toBool()) {
            found.append(interface);
        } else {
            collect(*child, found);
        }
    }
}

} // namespace

QList<QAccessibleInterface *> AccessibleParts::parts() const {
    QList<QAccessibleInterface *> found;
    collect(*item(), found);
    return found;
}

QAccessibleInterface *AccessibleParts::parent() const {
    for (QQuickItem *above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
        QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(above);
        if (interface != nullptr && !given(*above, QStringLiteral("Accessible.ignored")).toBool()) {
            return interface;
        }
    }
    return QAccessible::queryAccessibleInterface(window());
}

QAccessibleInterface *AccessibleParts::childAt(int x, int y) const {
    const QList<QAccessibleInterface *> all = parts();
    for (auto it = all.crbegin(); it != all.crend(); ++it) {
        if ((*it)->rect().contains(x, y)) {
            QAccessibleInterface *deeper = (*it)->childAt(x, y);
            return deeper != nullptr ? deeper : *it;
        }
    }
    return nullptr;
}

QString AccessibleParts::text(QAccessible::Text kind) const {
    switch (kind) {
    case QAccessible::Name:
        return given(*item(), QStringLiteral("Accessible.name")).toString();
    case QAccessible::Description:
        return given(*item(), QStringLiteral("Accessible.description")).toString();
    default:
        return {};
    }
}

QAccessible::Role AccessibleParts::role() const {
    return static_cast<QAccessible::Role>(
        given(*item(), QStringLiteral("Accessible.role")).toInt());
}

QAccessible::State AccessibleParts::state() const {
    QAccessible::State state;
    state.invisible = !item()->isVisible();
    state.disabled = !item()->isEnabled();
    // A scope has the focus while something in it has.
    state.focused = item()->hasActiveFocus() && !item()->isFocusScope();
    return state;
}

QRect AccessibleParts::rect() const {
    const QRectF inScene = item()->mapRectToScene(item()->boundingRect());
    const QPoint corner =
        window() != nullptr ? window()->mapToGlobal(inScene.topLeft().toPoint()) : QPoint();
    return {corner, inScene.size().toSize()};
}

QList<QAccessibleInterface *> AccessibleList::parts() const {
    QList<QAccessibleInterface *> found = AccessibleParts::parts();
    const auto place = [](const QAccessibleInterface *part) {
        const QRect rect = part->rect();
        return std::pair(rect.top(), rect.left());
    };
    std::ranges::stable_sort(found, {}, place);
    return found;
}

} // namespace vorle
