#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A part of the window whose contents assistive technology does not come upon while it is active,
/// though the eye still sees them: what lies behind a panel. A focus scope. It needs an
/// `Accessible.role`. Main thread.
class AccessibilityBarrier : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool active READ active WRITE setActive NOTIFY activeChanged FINAL)

public:
    explicit AccessibilityBarrier(QQuickItem *parent = nullptr);

    bool active() const { return m_active; }
    void setActive(bool active);

Q_SIGNALS:
    void activeChanged();

private:
    bool m_active = false;
};

} // namespace vorle
