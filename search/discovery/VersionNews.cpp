#include "search/discovery/Version.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace vorle {

namespace {

/// A version where it stands in a text.
struct Sighting {
    qsizetype begin;
    qsizetype end;
    QString text; ///< as written, without a leading "v"
};

bool isWord(QChar c) { return c.isLetterOrNumber() || c == u'_'; }

bool isVersionCharacter(QChar c) {
    return (c < u'\u0080' && c.isLetterOrNumber()) || c == u'.' || c == u'-' || c == u'+';
}

/// The versions of a text, whole: where "1.2.3-beta" was found in "1.2.3-beta.1.", the latter
/// without its full stop. What is part of something longer ("1.2.x", "a1.2") is no version.
QList<Sighting> sightings(QStringView text) {
    QList<Sighting> found;
    qsizetype passed = 0; // up to here all belongs to what was looked at
    for (const auto &[at, firstEnd] : versionSpans(text)) {
        if (at < passed) {
            continue;
        }
        passed = firstEnd;
        while (passed < text.size() && isVersionCharacter(text[passed])) {
            ++passed;
        }
        qsizetype end = passed;
        while (!text[end - 1].isLetterOrNumber()) { // a version's own last character is one
            --end;
        }
        qsizetype begin = at;
        if (begin > 0 && text[begin - 1].toLower() == u'v') {
            --begin;
        }
        const bool bounded = begin == 0 || (!isWord(text[begin - 1]) && text[begin - 1] != u'.');
        QString whole = text.sliced(at, end - at).toString();
        if (bounded && parseVersion(whole)) {
            found += {begin, end, std::move(whole)};
        }
    }
    return found;
}

/// The names a page may give a dependency, in lower case: "@tanstack/react-query" is called
/// "react-query" and "react query" too.
QStringList namesOf(const QString &dependency) {
    // Last words that name nothing by themselves: "@babel/core".
    static constexpr std::array<QStringView, 14> vague{
        u"api", u"app",    u"client", u"common", u"core",  u"runtime", u"server",
        u"cli", u"plugin", u"sdk",    u"types",  u"utils", u"ui",      u"test"};
    const QString whole = dependency.toLower();
    QStringList names{whole};
    const QString last =
        whole.sliced(std::max(whole.lastIndexOf(u'/'), whole.lastIndexOf(u':')) + 1);
    const bool scoped = last != whole;
    if (scoped && last.size() > 2 && !whole.startsWith(u"@types/") &&
        std::ranges::find(vague, last) == vague.end()) {
        names += last;
    }
    QString spaced = names.last();
    spaced.replace(u'-', u' ').replace(u'_', u' ');
    names += spaced;
    names.removeDuplicates();
    return names;
}

/// Where a text names a dependency: the name by itself, with or without ".js", and not as part of
/// another name ("react" in "react-native", "facebook/react").
class Mentions {
public:
    explicit Mentions(const QString &dependency) : m_names(namesOf(dependency)) {}

    /// Calls `visit(begin, end)` for each mention in `lower`.
    template <class Visit>
    void each(QStringView lower, Visit visit) const {
        for (const QString &name : m_names) {
            for (qsizetype at = lower.indexOf(name); at >= 0;
                 at = lower.indexOf(name, at + name.size())) {
                qsizetype end = at + name.size();
                for (const QStringView suffix : {QStringView(u".js"), QStringView(u"js")}) {
                    if (lower.sliced(end).startsWith(suffix)) {
                        end += suffix.size();
                        break;
                    }
                }
                const bool begins = at == 0 || !continuesName(lower[at - 1]);
                const bool ends = end == lower.size() || !isWord(lower[end]);
                if (begins && ends) {
                    visit(at, end);
                }
            }
        }
    }

private:
    static bool continuesName(QChar c) {
        return isWord(c) || c == u'-' || c == u'/' || c == u'@' || c == u'.';
    }

    QStringList m_names;
};

/// Whether nothing but a word like "version" stands between a name and its version.
bool joinsNameToVersion(QStringView between) {
    static constexpr std::array<QStringView, 7> links{u"version", u"release", u"sdk", u"is",
                                                      u"v",       u"stable",  u"beta"};
    static constexpr QStringView marks(u":@-–—(|,");
    qsizetype at = 0;
    while (at < between.size()) {
        if (isBlank(between[at].unicode()) || marks.contains(between[at])) {
            ++at;
            continue;
        }
        const auto end = std::find_if_not(between.begin() + at, between.end(), isWord);
        const QStringView word = between.sliced(at, end - between.begin() - at);
        if (std::ranges::find(links, word) == links.end()) {
            return false;
        }
        at += word.size();
    }
    // "react-18.2" is a file, "react-native" a name.
    return !between.startsWith(u'-') && between.size() <= 24;
}

/// The versions a text gives right behind a mention of the dependency, each once.
QStringList versionsBehindName(const QString &lower, const QList<Sighting> &seen,
                               const Mentions &mentions) {
    QStringList versions;
    mentions.each(lower, [&](qsizetype, qsizetype end) {
        const auto next = std::lower_bound(
            seen.begin(), seen.end(), end,
            [](const Sighting &sighting, qsizetype at) { return sighting.begin < at; });
        if (next != seen.end() &&
            joinsNameToVersion(QStringView(lower).sliced(end, next->begin - end))) {
            versions += next->text;
        }
    });
    versions.removeDuplicates();
    return versions;
}

/// The version of a forge's release page, "Release v1.2.3 · owner/name · …", which names the
/// repository behind it. A version behind another name's "@" is that package's, not the
/// repository's.
std::optional<QString> versionOfRelease(const QString &lower, const QList<Sighting> &seen,
                                        const QString &dependency) {
    if (seen.size() != 1) {
        return std::nullopt;
    }
    const Sighting &version = seen.first();
    const QString before = lower.first(version.begin).trimmed();
    if (!before.isEmpty() && before != u"release" && before != u"release:") {
        return std::nullopt;
    }
    const QStringList parts = lower.sliced(version.end).split(u'·', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString repository = part.trimmed();
        if (repository.count(u'/') != 1 || repository.contains(u' ')) {
            continue;
        }
        QString name = repository.section(u'/', 1);
        if (name.endsWith(u".js")) {
            name.chop(3);
        }
        if (namesOf(dependency).contains(name)) {
            return version.text;
        }
    }
    return std::nullopt;
}

bool containsAny(QStringView lower, std::initializer_list<QStringView> words) {
    return std::any_of(words.begin(), words.end(),
                       [&](QStringView word) { return lower.contains(word); });
}

bool speaksOfFlaw(QStringView lowerTitle) {
    return containsAny(lowerTitle, {u"cve-", u"vulnerab", u"security", u"advisory", u"exploit",
                                    u"malicious", u"malware", u"compromis", u"ghsa-", u"faille",
                                    u"vulnérab", u"sécurité", u"attack", u"attaque"});
}

bool speaksOfRelease(QStringView lowerTitle) {
    return containsAny(lowerTitle,
                       {u"release", u"announc", u"introducing", u"changelog", u"change log",
                        u"what's new", u"what’s new", u"now available", u"is out", u"is here",
                        u"nouveautés", u"notes de version", u"est disponible", u"annonce"});
}

/// Whether a title announces a release and does nothing else: every word of it is the name, the
/// version or a word of releases. "Migrating to React 18.2" does more.
bool isReleaseTitle(QStringView lower, const QList<Sighting> &seen, const Mentions &mentions) {
    static constexpr std::array<QStringView, 41> releaseWords{
        u"announcing", u"announcement", u"introducing", u"release",    u"releases",  u"released",
        u"notes",      u"changelog",    u"what's",      u"what’s",     u"new",       u"in",
        u"is",         u"out",          u"here",        u"now",        u"available", u"version",
        u"stable",     u"final",        u"sdk",         u"the",        u"of",        u"for",
        u"and",        u"blog",         u"weblog",      u"devblogs",   u"github",    u"npm",
        u"pypi",       u"package",      u"docs",        u"nouveautés", u"notes",     u"de",
        u"annonce",    u"sortie",       u"est",         u"disponible", u"news",
    };
    QString rest = lower.toString();
    const auto blankOut = [&rest](qsizetype begin, qsizetype end) {
        std::fill(rest.begin() + begin, rest.begin() + end, u' ');
    };
    mentions.each(lower, blankOut);
    for (const Sighting &version : seen) {
        blankOut(version.begin, version.end);
    }
    const QStringList words = rest.simplified().split(u' ', Qt::SkipEmptyParts);
    return std::all_of(words.begin(), words.end(), [&](QStringView word) {
        while (!word.isEmpty() && !isWord(word.front())) {
            word = word.sliced(1);
        }
        while (!word.isEmpty() && !isWord(word.back())) {
            word.chop(1);
        }
        return word.isEmpty() || std::ranges::find(releaseWords, word) != releaseWords.end();
    });
}

/// The version of the first heading in a text that lists its versions newest first. A heading is a
/// line that holds a version and at most its date.
std::optional<QString> newestListed(QStringView text) {
    std::optional<QString> first;
    std::optional<Version> newest;
    for (const QStringView line : text.split(u'\n')) {
        if (line.size() > 80) {
            continue;
        }
        const QList<Sighting> seen = sightings(line);
        if (seen.isEmpty()) {
            continue;
        }
        const auto isMark = [](QChar c) { return isBlank(c.unicode()) || c == u'#' || c == u'['; };
        const QStringView before = line.first(seen.first().begin);
        const QStringView after = trimmed(line.sliced(seen.first().end));
        if (!std::all_of(before.begin(), before.end(), isMark) ||
            (!after.isEmpty() && !QStringView(u"](-–—·/").contains(after.front()))) {
            continue;
        }
        auto version = parseVersion(seen.first().text);
        if (!first) {
            first = seen.first().text;
            newest = std::move(version);
        } else if (compareVersions(*version, *newest) > 0) {
            return std::nullopt; // another order, or no list of versions at all
        }
    }
    return first;
}

/// The version the title tells, or nothing while anything is open.
std::optional<QString> versionInTitle(const QString &dependency, const QString &lowerTitle,
                                      const QList<Sighting> &seen, const Mentions &mentions) {
    const QStringList named = versionsBehindName(lowerTitle, seen, mentions);
    if (named.isEmpty()) {
        return versionOfRelease(lowerTitle, seen, dependency);
    }
    return named.size() == 1 ? std::optional(named.first()) : std::nullopt;
}

} // namespace

VersionNews versionNews(const QString &dependency, const QString &inUse, const QString &title,
                        QStringView pageText) {
    VersionNews news;
    if (!inUse.isEmpty()) {
        news.currentVersion = inUse;
    }
    const QString lowerTitle = title.toLower();
    if (!parseVersion(inUse) || dependency.isEmpty() || lowerTitle.size() != title.size() ||
        speaksOfFlaw(lowerTitle)) {
        return news; // the versions a flaw names are those that have it
    }
    const QList<Sighting> seen = sightings(title);
    const Mentions mentions(dependency);
    if (const auto told = versionInTitle(dependency, lowerTitle, seen, mentions)) {
        news.notNewer =
            !isNewer(*told, inUse) && (isReleaseTitle(lowerTitle, seen, mentions) ||
                                       versionOfRelease(lowerTitle, seen, dependency).has_value());
        if (news.notNewer || isNewer(*told, inUse)) {
            news.newVersion = told;
        }
        return news;
    }
    bool named = false;
    mentions.each(lowerTitle, [&](qsizetype, qsizetype) { named = true; });
    // A version in the title that is not the dependency's own makes the page about something else.
    if (named && seen.isEmpty() && speaksOfRelease(lowerTitle)) {
        const auto listed = newestListed(pageText);
        if (listed && isNewer(*listed, inUse)) {
            news.newVersion = listed; // an old one may be a figure that only looks like a version
        }
    }
    return news;
}

} // namespace vorle
