#pragma once

#include "app/triage/SearchIndex.h"

namespace vorle {

/// The text of a topic that a field of the index is made from, as UTF-8. Pure.
QByteArray searchText(const Topic &topic, SearchEntry::Field field);

struct Snippet {
    QString plain;
    QString styled; ///< for Text.StyledText: escaped, what was found in bold
};

/// A line of the topic's text around what was found at `offset` of the folded field. A title is
/// shown anyway: what was found there gives the beginning of the gist. `words` are folded;
/// `near` as markedForSearch has it.
Snippet snippetOf(const Topic &topic, SearchEntry::Field field, qsizetype offset,
                  const QList<QByteArray> &words, bool near);

} // namespace vorle
