#include "search/discovery/Version.h"

#include "base/Text.h"

#include <algorithm>

namespace vorle {

namespace {

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool isLetter(QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }

/// Takes what begins `text` and fits `belongs` off it.
template <class Belongs>
QStringView take(QStringView &text, Belongs belongs) {
    const auto end = std::find_if_not(text.begin(), text.end(), belongs);
    const QStringView taken = text.first(end - text.begin());
    text = text.sliced(taken.size());
    return taken;
}

/// Takes a number; nothing when there is none, or one that no version has.
std::optional<quint64> takeNumber(QStringView &text) {
    const QStringView digits = take(text, isDigit);
    bool fits = false;
    const quint64 number = digits.toULongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

/// Takes ".2.3".
bool takeFurtherNumbers(QStringView &text, Version &version) {
    while (text.size() > 1 && text[0] == u'.' && isDigit(text[1])) {
        text = text.sliced(1);
        const auto number = takeNumber(text);
        if (!number) {
            return false;
        }
        version.numbers.append(*number);
    }
    return true;
}

/// Reads "-beta.1" whole.
bool readPreRelease(QStringView text, Version &version) {
    for (const QStringView identifier : text.sliced(1).split(u'.')) {
        const bool sound = std::all_of(identifier.begin(), identifier.end(), [](QChar c) {
            return isDigit(c) || isLetter(c) || c == u'-';
        });
        if (identifier.isEmpty() || !sound) {
            return false;
        }
        version.preRelease.append(identifier.toString().toLower());
    }
    return true;
}

/// Reads Python's and Java's endings whole: "rc1", ".dev3", ".post2", ".Final".
bool readWordEnding(QStringView text, Version &version) {
    if (text.startsWith(u'.')) {
        text = text.sliced(1);
    }
    const QString word = take(text, isLetter).toString().toLower();
    const bool numbered = !text.isEmpty();
    const quint64 number = takeNumber(text).value_or(0);
    if (!text.isEmpty()) {
        return false;
    }
    if (word == u"post") {
        version.post = number;
        return true;
    }
    if (word == u"final" || word == u"release" || word == u"ga") {
        return !numbered;
    }
    for (const QStringView known :
         {u"a", u"alpha", u"b", u"beta", u"c", u"rc", u"cr", u"m", u"dev", u"pre", u"preview"}) {
        if (word == known) {
            version.preRelease = QStringList{word, QString::number(number)};
            return true;
        }
    }
    return false;
}

std::weak_ordering compareIdentifiers(const QString &a, const QString &b) {
    const auto isNumeric = [](const QString &text) {
        return std::all_of(text.begin(), text.end(), isDigit);
    };
    if (!isNumeric(a) || !isNumeric(b)) {
        // A number stands below a word.
        return isNumeric(a)   ? std::weak_ordering::less
               : isNumeric(b) ? std::weak_ordering::greater
                              : a.compare(b) <=> 0;
    }
    const auto bare = [](QStringView digits) {
        take(digits, [](QChar c) { return c == u'0'; });
        return digits;
    };
    // As text, for a number may have any length.
    const auto byLength = bare(a).size() <=> bare(b).size();
    return byLength != 0 ? std::weak_ordering(byLength) : bare(a).compare(bare(b)) <=> 0;
}

std::weak_ordering comparePreReleases(const QStringList &a, const QStringList &b) {
    if (a.isEmpty() || b.isEmpty()) {
        return a.isEmpty() <=> b.isEmpty();
    }
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i) {
        if (const auto order = compareIdentifiers(a[i], b[i]); order != 0) {
            return order;
        }
    }
    return a.size() <=> b.size();
}

} // namespace

std::optional<Version> parseVersion(QStringView text) {
    text = trimmed(text);
    if (text.startsWith(u'v') || text.startsWith(u'V')) {
        text = text.sliced(1);
    }
    if (const qsizetype build = text.indexOf(u'+'); build >= 0) {
        text = text.first(build);
    }
    Version version;
    const auto first = takeNumber(text);
    if (!first) {
        return std::nullopt;
    }
    version.numbers.append(*first);
    if (!takeFurtherNumbers(text, version)) {
        return std::nullopt;
    }
    const bool sound = text.isEmpty() || (text.startsWith(u'-') ? readPreRelease(text, version)
                                                                : readWordEnding(text, version));
    return sound ? std::optional(std::move(version)) : std::nullopt;
}

std::weak_ordering compareVersions(const Version &a, const Version &b) {
    for (qsizetype i = 0; i < std::max(a.numbers.size(), b.numbers.size()); ++i) {
        if (const auto order = a.numbers.value(i) <=> b.numbers.value(i); order != 0) {
            return order;
        }
    }
    const auto order = comparePreReleases(a.preRelease, b.preRelease);
    return order != 0 ? order : std::weak_ordering(a.post <=> b.post);
}

bool isNewer(QStringView candidate, QStringView inUse) {
    const auto a = parseVersion(candidate);
    const auto b = parseVersion(inUse);
    return a && b && compareVersions(*a, *b) > 0;
}

QList<VersionSpan> versionSpans(QStringView text) {
    const auto digitsFrom = [&](qsizetype at) {
        while (at < text.size() && text[at] >= u'0' && text[at] <= u'9') {
            ++at;
        }
        return at;
    };
    const auto dotted = [&](qsizetype at) { // the end of ".digits" at `at`, or `at`
        const bool dot = at < text.size() && text[at] == u'.';
        const qsizetype end = dot ? digitsFrom(at + 1) : at;
        return end > at + 1 ? end : at;
    };
    const auto isWordCharacter = [](QChar c) { return c < u'\u0080' && c.isLetterOrNumber(); };
    QList<VersionSpan> spans;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype major = digitsFrom(at);
        if (major == at) {
            ++at;
            continue;
        }
        qsizetype end = dotted(major);
        if (end == major) {
            at = major;
            continue;
        }
        end = dotted(end);
        if (end + 1 < text.size() && text[end] == u'-' && isWordCharacter(text[end + 1])) {
            ++end;
            while (end < text.size() && isWordCharacter(text[end])) {
                ++end;
            }
        }
        spans.append({at, end});
        at = end;
    }
    return spans;
}

} // namespace vorle
