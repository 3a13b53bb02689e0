#include "platform/ShellWord.h"

#include <algorithm>

namespace vorle {

QString shellWord(const QString &text) {
    const auto isPlain = [](QChar c) {
        return (c.unicode() < 0x80 && c.isLetterOrNumber()) || QStringView(u"/._-+,").contains(c);
    };
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isPlain)) {
        return text;
    }
    QString quoted = text;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

} // namespace vorle
