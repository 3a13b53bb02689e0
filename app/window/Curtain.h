#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A part of the window whose contents assistive technology does not come upon while it is drawn,
/// though the eye still sees them: what lies behind a panel. A focus scope. It needs an
/// `Accessible.role`. Main thread.
class Curtain : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool drawn READ drawn WRITE setDrawn NOTIFY drawnChanged FINAL)

public:
    explicit Curtain(QQuickItem *parent = nullptr);

    bool drawn() const { return m_drawn; }
    void setDrawn(bool drawn);

Q_SIGNALS:
    void drawnChanged();

private:
    bool m_drawn = false;
};

} // namespace vorle
