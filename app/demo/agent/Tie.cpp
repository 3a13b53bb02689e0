#include "app/demo/agent/Tie.h"

#include "app/demo/DemoCatalogue.h"

#include <algorithm>
#include <array>

namespace vorle::demo {

namespace {

/// Words that tell no subject from another, folded and singular.
bool isCommon(const QString &word) {
    static constexpr std::array<QStringView, 46> words{
        u"de",     u"des",    u"du",       u"la",        u"le",          u"un",       u"une",
        u"et",     u"ou",     u"en",       u"au",        u"aux",         u"sur",      u"sou",
        u"dan",    u"par",    u"pour",     u"avec",      u"san",         u"chez",     u"vers",
        u"entre",  u"leur",   u"ses",      u"mes",       u"tout",        u"toute",    u"plus",
        u"ville",  u"maison", u"monde",    u"annee",     u"application", u"mobile",   u"site",
        u"projet", u"outil",  u"logiciel", u"technique", u"methode",     u"pratique", u"nouveau",
        u"the",    u"of",     u"and",      u"for",
    };
    return std::ranges::find(words, word) != words.end();
}

/// A folded word without the mark of its plural: "locaux" and "local" are one.
QString singular(const QString &word) {
    if (word.size() > 4 && word.endsWith(u"aux")) {
        return word.chopped(3) + QStringLiteral("al");
    }
    return word.size() > 3 && (word.endsWith(u's') || word.endsWith(u'x')) ? word.chopped(1) : word;
}

QStringList wordsOf(const QString &text) {
    QStringList words;
    for (const QString &word : foldedWords(text).split(u' ', Qt::SkipEmptyParts)) {
        words += singular(word);
    }
    return words;
}

/// Whether two words are one, endings of long ones apart: "accessibilité", "accessibility".
bool same(const QString &word, const QString &other) {
    const qsizetype ending = word.size() >= 8 ? 2 : word.size() >= 6 ? 1 : 0;
    return ending == 0 ? word == other : other.startsWith(word.chopped(ending));
}

/// Whether the distinctive words of `subject` occur among `words`: both of two, two of three,
/// three of four. A subject without any must stand in `text` as it is.
bool speaksOf(const QString &text, const QStringList &words, const QString &subject) {
    int distinctive = 0;
    int held = 0;
    for (const QString &word : wordsOf(subject)) {
        if (word.size() >= 2 && !isCommon(word)) {
            ++distinctive;
            held += std::any_of(words.begin(), words.end(),
                                [&](const QString &other) { return same(word, other); });
        }
    }
    return distinctive == 0 ? !subject.isEmpty() && text.contains(subject, Qt::CaseInsensitive)
                            : held >= (distinctive <= 2 ? distinctive : distinctive - 1);
}

} // namespace

Tie tieOf(const QString &opening, const QString &text, const ProfileRead &profile) {
    const QString folded = foldedWords(opening);
    for (const auto &project : profile.projects) {
        if (holdsWords(folded, foldedWords(project.name))) {
            return {Tie::Kind::Project, project.name, {}, 0};
        }
    }
    const QStringList words = wordsOf(opening);
    Tie tie;
    for (const auto &interest : profile.interests) {
        if (interest.weight > tie.weight && speaksOf(opening, words, interest.topic)) {
            tie = {Tie::Kind::Interest, interest.topic, {}, interest.weight};
        }
    }
    if (tie.kind != Tie::Kind::None) {
        return tie;
    }
    const QString whole = folded + u' ' + foldedWords(text);
    for (const auto &project : profile.projects) {
        for (const QString &label : project.labels) {
            if (holdsWords(whole, foldedWords(label))) {
                return {Tie::Kind::Project, project.name, label, 0};
            }
        }
    }
    for (const auto &project : profile.projects) {
        if (speaksOf(opening, words, project.description)) {
            return {Tie::Kind::Project, project.name, {}, 0};
        }
    }
    for (const QString &tool : profile.tools) {
        if (holdsWords(folded, foldedWords(tool))) {
            return {Tie::Kind::Tool, tool, {}, 0};
        }
    }
    return tie;
}

} // namespace vorle::demo
