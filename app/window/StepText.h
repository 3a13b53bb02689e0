#pragma once

#include "app/labels/StepCommand.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A first step for QML, taken apart as `stepParts` does. Main thread.
class StepText : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(QString before READ before NOTIFY changed FINAL)
    /// "" where there is none: `before` is then the whole step.
    Q_PROPERTY(QString command READ command NOTIFY changed FINAL)
    Q_PROPERTY(QString after READ after NOTIFY changed FINAL)

public:
    using QObject::QObject;

    QString text() const { return m_text; }
    void setText(const QString &text);
    QString before() const { return m_parts.before; }
    QString command() const { return m_parts.command; }
    QString after() const { return m_parts.after; }

Q_SIGNALS:
    void changed();

private:
    QString m_text;
    StepParts m_parts;
};

} // namespace vorle
