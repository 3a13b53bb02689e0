#include "app/models/Drafts.h"

namespace vorle {

void Drafts::keep(const QString &line, const QString &text) {
    if (text.trimmed().isEmpty()) {
        m_texts.remove(line);
    } else if (text.size() <= longest) { // else what was kept of it is better than nothing
        m_texts.insert(line, text);
    }
}

void Drafts::take(const QMap<QString, QString> &texts) {
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        keep(it.key(), it.value());
    }
}

} // namespace vorle
