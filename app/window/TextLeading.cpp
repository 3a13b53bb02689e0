#include "app/window/TextLeading.h"

#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace vorle {

void TextLeading::setDocument(QQuickTextDocument *document) {
    if (m_document == document) {
        return;
    }
    m_document = document;
    if (document != nullptr) {
        // Setting a text makes plain blocks of it.
        connect(document->textDocument(), &QTextDocument::contentsChanged, this,
                &TextLeading::apply);
    }
    apply();
    Q_EMIT changed();
}

void TextLeading::setHeight(qreal height) {
    if (m_height != height) {
        m_height = height;
        apply();
        Q_EMIT changed();
    }
}

void TextLeading::setCode(const QString &code) {
    if (m_code != code) {
        m_code = code;
        apply();
        Q_EMIT changed();
    }
}

void TextLeading::setCodeFamily(const QString &family) {
    if (m_codeFamily != family) {
        m_codeFamily = family;
        apply();
        Q_EMIT changed();
    }
}

void TextLeading::apply() {
    if (!m_document || m_applying) {
        return;
    }
    m_applying = true;
    QTextDocument *document = m_document->textDocument();
    document->setUndoRedoEnabled(false);
    QTextBlockFormat format;
    format.setLineHeight(m_height * 100, QTextBlockFormat::ProportionalHeight);
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
    if (QTextCursor passage = m_code.isEmpty() ? QTextCursor() : document->find(m_code);
        passage.hasSelection()) {
        QTextCharFormat code;
        code.setFontFamilies({m_codeFamily});
        passage.mergeCharFormat(code);
    }
    m_applying = false;
}

} // namespace vorle
