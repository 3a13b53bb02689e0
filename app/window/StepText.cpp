#include "app/window/StepText.h"

namespace vorle {

void StepText::setText(const QString &text) {
    if (text != m_text) {
        m_text = text;
        m_parts = stepParts(text);
        Q_EMIT changed();
    }
}

} // namespace vorle
