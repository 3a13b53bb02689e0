#pragma once

#include <QAccessible>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Whether assistive technology asks anything of the program: what is worked out for it alone, and
/// anew with each change of a list, need not be while nobody listens. Main thread.
class Listening final : public QObject, private QAccessible::ActivationObserver {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged FINAL)

public:
    explicit Listening(QObject *parent = nullptr)
        : QObject(parent), m_active(QAccessible::isActive()) {
        QAccessible::installActivationObserver(this);
    }
    ~Listening() override { QAccessible::removeActivationObserver(this); }
    Listening(const Listening &) = delete;
    Listening &operator=(const Listening &) = delete;

    bool isActive() const { return m_active; }

Q_SIGNALS:
    /// Comes before the first question is answered.
    void activeChanged();

private:
    void accessibilityActiveChanged(bool active) override {
        if (active != m_active) {
            m_active = active;
            Q_EMIT activeChanged();
        }
    }

    bool m_active;
};

} // namespace vorle
