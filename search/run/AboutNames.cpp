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
struct Place {
    qsizetype begin;
    qsizetype end;
    const QString *name; ///< as the territory spells it
    bool alike;          ///< accents included

    bool overlaps(const Place &other) const { return begin < other.end && other.begin < end; }
    bool isSame(const Place &other) const { return begin == other.begin && end == other.end; }
    qsizetype length() const { return end - begin; }
};

/// Every place where `name` stands in `text` as whole words, both without accents.
void findPlaces(const QString &text, const QString &bare, const Place &found,
                std::vector<Place> &places) {
    for (qsizetype at = text.indexOf(bare); at >= 0 && !bare.isEmpty();
         at = text.indexOf(bare, at + 1)) {
        const qsizetype end = at + bare.size();
        const bool begins = at == 0 || !(isWord(text[at - 1]) && isWord(bare.front()));
        if (begins && (end == text.size() || !goesOn(bare.back(), text[end]))) {
            places.push_back({at, end, found.name, found.alike});
        }
    }
}

} // namespace

QStringList namesIn(const QString &about, const QStringList &names) {
    const QString text = folded(about);
    const QString bareText = withoutAccents(text);
    std::vector<Place> places;
    for (const QString &name : names) {
        const QString fold = folded(name);
        findPlaces(bareText, withoutAccents(fold), {0, 0, &name, text.contains(fold)}, places);
    }
    // The longest first: whatever overlaps it is a part of it, or a rest beside it.
    std::ranges::stable_sort(places, std::ranges::greater(), &Place::length);
    std::vector<Place> kept;
    for (const Place &place : places) {
        const bool apart = std::ranges::none_of(kept, [&](const Place &other) {
            return place.overlaps(other) && !(place.isSame(other) && place.alike == other.alike);
        });
        const bool better = place.alike && std::ranges::any_of(kept, [&](const Place &other) {
                                return place.isSame(other) && !other.alike;
                            });
        if (better) {
            std::erase_if(kept, [&](const Place &other) { return place.isSame(other); });
        }
        if (apart || better) {
            kept.push_back(place);
        }
    }
    std::ranges::stable_sort(kept, {}, &Place::begin);
    QStringList found;
    for (const Place &place : kept) {
        if (!found.contains(*place.name)) {
            found += *place.name;
        }
    }
    return found;
}

bool isSameName(const QString &one, const QString &other) {
    return withoutAccents(folded(one)) == withoutAccents(folded(other));
}

} // namespace vorle
