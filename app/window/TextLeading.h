#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Sets the lines of a text that can be selected as far apart as those of one that cannot: the
/// element for the former has no line height of its own. And one passage of it as code. It sets the
/// text too, as one change of the document: the element would lay it out once with its own lines
/// and again with these. Main thread.
class TextLeading : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// Of a text that is made wholly: one that is not would not tell of the words it is given.
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY changed FINAL)
    Q_PROPERTY(QString text MEMBER m_text WRITE setText NOTIFY changed FINAL)
    /// In heights of a line.
    Q_PROPERTY(qreal height READ height WRITE setHeight NOTIFY changed FINAL)

    /// In pixels, whatever stands in it; 0: by `height`.
    Q_PROPERTY(qreal line MEMBER m_line WRITE setLine NOTIFY changed FINAL)

    /// The passage, "" for none, where it begins, and how it is set; a size of 0 is the text's own.
    Q_PROPERTY(QString code READ code WRITE setCode NOTIFY changed FINAL)
    Q_PROPERTY(int codeAt MEMBER m_codeAt WRITE setCodeAt NOTIFY changed FINAL)
    Q_PROPERTY(QString codeFamily READ codeFamily WRITE setCodeFamily NOTIFY changed FINAL)
    Q_PROPERTY(int codeSize MEMBER m_codeSize WRITE setCodeSize NOTIFY changed FINAL)
    Q_PROPERTY(QColor codeColor MEMBER m_codeColor WRITE setCodeColor NOTIFY changed FINAL)

public:
    using QObject::QObject;

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);
    void setText(const QString &text);
    qreal height() const { return m_height; }
    void setHeight(qreal height) { set(m_height, height); }
    void setLine(qreal line) { set(m_line, line); }
    QString code() const { return m_code; }
    void setCode(const QString &code) { set(m_code, code); }
    void setCodeAt(int place) { set(m_codeAt, place, !m_code.isEmpty()); }
    QString codeFamily() const { return m_codeFamily; }
    void setCodeFamily(const QString &family) { set(m_codeFamily, family, !m_code.isEmpty()); }
    void setCodeSize(int size) { set(m_codeSize, size, !m_code.isEmpty()); }
    void setCodeColor(const QColor &color) { set(m_codeColor, color, !m_code.isEmpty()); }

Q_SIGNALS:
    void changed();

private:
    template <class Value>
    void set(Value &member, const Value &value, bool seen = true) {
        if (member != value) {
            member = value;
            if (seen) {
                apply(false);
            }
            Q_EMIT changed();
        }
    }
    void apply(bool withText);

    QPointer<QQuickTextDocument> m_document;
    QString m_text;
    qreal m_height = 1;
    qreal m_line = 0;
    QString m_code;
    int m_codeAt = 0;
    QString m_codeFamily;
    int m_codeSize = 0;
    QColor m_codeColor;
};

} // namespace vorle
