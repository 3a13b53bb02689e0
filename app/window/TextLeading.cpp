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

void TextLeading::apply() {
    if (!m_document || m_applying) {
        return;
    }
    m_applying = true;
    QTextDocument *document = m_document->textDocument();
    document->setUndoRedoEnabled(false);
    QTextBlockFormat format;
    format.setLineHeight(m_line > 0 ? m_line : m_height * 100,
                         m_line > 0 ? QTextBlockFormat::FixedHeight
                                    : QTextBlockFormat::ProportionalHeight);
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(format);
    if (QTextCursor passage =
            m_code.isEmpty() ? QTextCursor()
                             : document->find(m_code, m_codeAt, QTextDocument::FindCaseSensitively);
        passage.hasSelection()) {
        QTextCharFormat code;
        code.setFontFamilies({m_codeFamily});
        if (m_codeSize > 0) {
            code.setProperty(QTextFormat::FontPixelSize, m_codeSize);
        }
        if (m_codeColor.isValid()) {
            code.setForeground(m_codeColor);
        }
        passage.mergeCharFormat(code);
    }
    m_applying = false;
}

} // namespace vorle
