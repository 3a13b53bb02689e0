#include "app/triage/SearchSnippet.h"

#include "app/triage/Gist.h"
#include "app/triage/SearchFold.h"
#include "app/triage/SearchNear.h"

#include <algorithm>
#include <vector>

namespace vorle {

namespace {

// In bytes: a snippet is one line of a list.
constexpr qsizetype before = 50;
constexpr qsizetype length = 220;

/// The gist's pieces each begin a line, so that none runs into the next.
QByteArray gistText(const Topic &topic) {
    return QStringList{topic.tldr.value_or(QString()), topic.summary, topic.why,
                       topic.project.value_or(QString()), topic.interest.value_or(QString())}
        .join(u'\n')
        .toUtf8();
}

QByteArray writtenText(const Topic &topic) {
    QStringList parts{topic.note.value_or(QString())};
    if (topic.brief) {
        for (const auto *list : {&topic.brief->essentials, &topic.brief->details}) {
            for (const Brief::Part &part : *list) {
                parts << part.title << part.body;
            }
        }
        parts += topic.brief->project.value_or(QString());
        parts += topic.brief->unclear;
        for (const Brief::Source &source : topic.brief->sources) {
            parts << source.title << source.adds;
        }
    }
    return parts.join(u'\n').toUtf8();
}

bool insideCharacter(char c) { return (static_cast<uchar>(c) & 0xC0) == 0x80; }

/// The bytes from `from` on for a snippet, cut where words and characters begin.
QString cut(QByteArrayView text, qsizetype at) {
    qsizetype from = std::max<qsizetype>(0, at - before);
    if (from > 0) {
        while (from < at && text[from] != ' ' && text[from] != '\n') {
            ++from;
        }
    }
    qsizetype to = std::min(text.size(), from + length);
    while (to > at && to < text.size() && insideCharacter(text[to])) {
        --to;
    }
    QString line = QString::fromUtf8(text.sliced(from, to - from)).simplified();
    if (from > 0) {
        line.prepend(QStringLiteral("… "));
    }
    if (to < text.size()) {
        line.append(QStringLiteral(" …"));
    }
    return line;
}

/// Which characters of the line belong to one of the words.
std::vector<bool> marked(const QString &line, const QList<QByteArray> &words, bool near) {
    QByteArray folded;
    std::vector<qsizetype> origin; // of each folded byte
    for (qsizetype i = 0; i < line.size();) {
        const qsizetype size = line[i].isHighSurrogate() && i + 1 < line.size() ? 2 : 1;
        folded += foldedForSearch(QStringView(line).sliced(i, size));
        origin.resize(static_cast<std::size_t>(folded.size()), i);
        i += size;
    }
    std::vector<bool> bold(static_cast<std::size_t>(line.size()), false);
    const auto mark = [&](qsizetype byte) {
        bold[static_cast<std::size_t>(origin[static_cast<std::size_t>(byte)])] = true;
    };
    for (const QByteArray &word : words) {
        bool stands = false;
        for (qsizetype at = folded.indexOf(word); at >= 0; at = folded.indexOf(word, at + 1)) {
            stands = true;
            for (qsizetype i = at; i < at + word.size(); ++i) {
                mark(i);
            }
        }
        const NearWord typed(word);
        const auto place = near && !stands ? typed.in(folded) : std::nullopt;
        if (place) {
            const auto whole = QByteArrayView(folded).sliced(place->offset, place->size);
            for (const qsizetype letter : typed.lettersIn(whole)) {
                mark(place->offset + letter);
            }
        }
    }
    return bold;
}

} // namespace

QString markedForSearch(const QString &line, const QList<QByteArray> &words, bool near) {
    const std::vector<bool> bold = marked(line, words, near);
    QString text;
    for (qsizetype i = 0; i < line.size();) {
        const bool in = bold[static_cast<std::size_t>(i)];
        qsizetype end = i + 1;
        while (end < line.size() &&
               (bold[static_cast<std::size_t>(end)] == in || line[end].isLowSurrogate())) {
            ++end;
        }
        const QString part = line.sliced(i, end - i).toHtmlEscaped();
        text += in ? QStringLiteral("<b>") + part + QStringLiteral("</b>") : part;
        i = end;
    }
    return text;
}

QByteArray searchText(const Topic &topic, SearchEntry::Field field) {
    switch (field) {
    case SearchEntry::Title:
        return topic.title.toUtf8();
    case SearchEntry::Gist:
        return gistText(topic);
    case SearchEntry::Written:
        return writtenText(topic);
    case SearchEntry::Seen:
    case SearchEntry::FieldCount:
        break;
    }
    return topic.seenText.value_or(QByteArray());
}

Snippet snippetOf(const Topic &topic, SearchEntry::Field field, qsizetype offset,
                  const QList<QByteArray> &words, bool near) {
    QByteArray text;
    qsizetype at = 0;
    if (field == SearchEntry::Title) {
        text = gistOf(topic).toUtf8();
    } else {
        text = searchText(topic, field);
        at = unfoldedOffset(text, offset);
    }
    const QString line = cut(text, at);
    return {line, markedForSearch(line, words, near)};
}

} // namespace vorle
