#pragma once

#include <QAccessibleObject>
#include <QQuickItem>
#include <QQuickWindow>

namespace vorle {

/// What assistive technology is told of an item whose parts are not simply its children: its name,
/// role and description are what QML gives it. Main thread; goes with the item.
class AccessibleParts : public QAccessibleObject {
public:
    explicit AccessibleParts(QQuickItem *item) : QAccessibleObject(item) {}

    QWindow *window() const override { return item()->window(); }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override { return parts().value(index, nullptr); }
    int childCount() const override { return static_cast<int>(parts().size()); }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return static_cast<int>(parts().indexOf(child));
    }
    QAccessibleInterface *childAt(int x, int y) const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QRect rect() const override;

protected:
    QQuickItem *item() const { return static_cast<QQuickItem *>(object()); }
    /// What one comes upon inside the item: what has something to say, and behind what has not,
    /// theirs.
    virtual QList<QAccessibleInterface *> parts() const;
};

/// A list whose rows are told from top to bottom: the view makes them, and their headings, in the
/// order in which they come into sight.
class AccessibleList final : public AccessibleParts {
public:
    using AccessibleParts::AccessibleParts;

protected:
    QList<QAccessibleInterface *> parts() const override;
};

} // namespace vorle
