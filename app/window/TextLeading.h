#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Sets the lines of a text that can be selected as far apart as those of one that cannot: the
/// element for the former has no line height of its own. And one passage of it as code. Main
/// thread.
class TextLeading : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY changed FINAL)
    /// In heights of a line.
    Q_PROPERTY(qreal height READ height WRITE setHeight NOTIFY changed FINAL)

    /// The passage, "" for none, and its face.
    Q_PROPERTY(QString code READ code WRITE setCode NOTIFY changed FINAL)
    Q_PROPERTY(QString codeFamily READ codeFamily WRITE setCodeFamily NOTIFY changed FINAL)

public:
    using QObject::QObject;

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);
    qreal height() const { return m_height; }
    void setHeight(qreal height);
    QString code() const { return m_code; }
    void setCode(const QString &code);
    QString codeFamily() const { return m_codeFamily; }
    void setCodeFamily(const QString &family);

Q_SIGNALS:
    void changed();

private:
    void apply();

    QPointer<QQuickTextDocument> m_document;
    qreal m_height = 1;
    QString m_code;
    QString m_codeFamily;
    bool m_applying = false;
};

} // namespace vorle
