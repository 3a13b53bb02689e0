#include "app/window/TextLeading.h"

#include <QTextBlock>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace vorle {

void TextLeading::setDocument(QQuickTextDocument *document) {
    if (m_document != document) {
        m_document = document;
        apply(true);
        Q_EMIT changed();
    }
}

void TextLeading::setText(const QString &text) {
    if (m_text != text) {
        m_text = text;
        apply(true);
        Q_EMIT changed();
    }
}

void TextLeading::apply(bool withText) {
    if (!m_document) {
        return;
    }
    QTextDocument *document = m_document->textDocument();
    document->setUndoRedoEnabled(false);
    QTextBlockFormat format;
    format.setLineHeight(m_line > 0 ? m_line : m_height * 100,
                         m_line > 0 ? QTextBlockFormat::FixedHeight
                                    : QTextBlockFormat::ProportionalHeight);
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    if (withText) {
        document->setPlainText(m_text);
    }
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
    // Else what is shaped to break the lines is thrown away, and shaped again to be drawn.
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        block.layout()->setCacheEnabled(true);
    }
    cursor.endEditBlock();
}

} // namespace vorle
