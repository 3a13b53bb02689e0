#include "search/run/AboutNames.h"

#include <algorithm>
#include <vector>

namespace vorle {

namespace {

/// In lower case, hyphens as blanks, blanks in a row as one, apostrophes straight.
QString folded(const QString &text) {
    QString fold = text.normalized(QString::NormalizationForm_KC).toCaseFolded();
    for (QChar &c : fold) {
        c = c == u'-' || c == u'\u2010' ? QChar(u' ') : c == u'’' ? QChar(u'\'') : c;
    }
    return fold.simplified();
}

QString withoutAccents(const QString &text) {
    QString bare;
    for (const QChar c : text.normalized(QString::NormalizationForm_KD)) {
        if (!c.isMark()) {
            bare += c;
        }
    }
    return bare;
}

bool isWord(QChar c) { return c.isLetterOrNumber() || c.isMark() || c == u'_'; }

/// Whether a name's end and what follows belong together: "C" goes on in "C++", "C#" and "CSS".
bool goesOn(QChar last, QChar next) {
    return isWord(last) && (isWord(next) || next == u'+' || next == u'#');
}

/// Where a name stands in a text.
struct Occurrence {
    qsizetype begin;
    qsizetype end;
    const QString *name; ///< as the territory spells it
    bool alike;          ///< accents included

    bool overlaps(const Occurrence &other) const { return begin < other.end && other.begin < end; }
    bool isSame(const Occurrence &other) const { return begin == other.begin && end == other.end; }
    qsizetype length() const { return end - begin; }
};

/// Every place where `name` stands in `text` as whole words, both without accents.
void findOccurrences(const QString &text, const QString &bare, const Occurrence &found,
                     std::vector<Occurrence> &occurrences) {
    for (qsizetype at = text.indexOf(bare); at >= 0 && !bare.isEmpty();
         at = text.indexOf(bare, at + 1)) {
        const qsizetype end = at + bare.size();
        const bool begins = at == 0 || !(isWord(text[at - 1]) && isWord(bare.front()));
        if (begins && (end == text.size() || !goesOn(bare.back(), text[end]))) {
            occurrences.push_back({at, end, found.name, found.alike});
        }
    }
}

} // namespace

QStringList namesIn(const QString &about, const QStringList &names) {
    const QString text = folded(about);
    const QString bareText = withoutAccents(text);
    std::vector<Occurrence> occurrences;
    for (const QString &name : names) {
        const QString fold = folded(name);
        findOccurrences(bareText, withoutAccents(fold), {0, 0, &name, text.contains(fold)},
                        occurrences);
    }
    // The longest first: whatever overlaps it is a part of it, or a rest beside it.
    std::ranges::stable_sort(occurrences, std::ranges::greater(), &Occurrence::length);
    std::vector<Occurrence> kept;
    for (const Occurrence &occurrence : occurrences) {
        const bool apart = std::ranges::none_of(kept, [&](const Occurrence &other) {
            return occurrence.overlaps(other) &&
                   !(occurrence.isSame(other) && occurrence.alike == other.alike);
        });
        const bool better =
            occurrence.alike && std::ranges::any_of(kept, [&](const Occurrence &other) {
                return occurrence.isSame(other) && !other.alike;
            });
        if (better) {
            std::erase_if(kept, [&](const Occurrence &other) { return occurrence.isSame(other); });
        }
        if (apart || better) {
            kept.push_back(occurrence);
        }
    }
    std::ranges::stable_sort(kept, {}, &Occurrence::begin);
    QStringList found;
    for (const Occurrence &occurrence : kept) {
        if (!found.contains(*occurrence.name)) {
            found += *occurrence.name;
        }
    }
    return found;
}

bool isSameName(const QString &one, const QString &other) {
    return withoutAccents(folded(one)) == withoutAccents(folded(other));
}

} // namespace vorle
