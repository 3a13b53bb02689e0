#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <compare>
#include <optional>

namespace vorle {

/// A version number as the package registries write them: semantic versions, and what Python,
/// Gradle and Swift projects write beside them.
struct Version {
    QList<quint64> numbers; ///< at least one; parts that are not written count as 0
    QStringList preRelease; ///< the identifiers behind a "-", or Python's "rc1" as "rc" and "1"
    quint64 post = 0;       ///< Python's ".post1": a correction of the release of that number
};

/// Reads a whole text as a version: blanks around it, a leading "v" and what follows a "+" (the
/// build) are passed over. Nothing for any other text: "1.x", "latest", "^1.2".
std::optional<Version> parseVersion(QStringView text);

/// Orders two versions: by their numbers, then a pre-release below its release, pre-releases by
/// their identifiers as Semantic Versioning 2.0.0 orders them (item 11), letters without regard to
/// case. "1.2" and "1.2.0" are equivalent.
std::weak_ordering compareVersions(const Version &a, const Version &b);

/// Whether `candidate` comes after `inUse`; false when either is no version.
bool isNewer(QStringView candidate, QStringView inUse);

/// Where a version number stands in a text.
struct VersionSpan {
    qsizetype begin;
    qsizetype end;
};

/// The version numbers in a text, in order: "1.2", "1.2.3", "1.2.3-beta1". No two overlap. Pure,
/// any thread; time linear in the text.
QList<VersionSpan> versionSpans(QStringView text);

/// What a page says about the version of a dependency.
struct VersionNews {
    std::optional<QString> currentVersion; ///< the version in use, when one is known
    std::optional<QString> newVersion;     ///< the version the page is about
    /// The page announces a release that the project already has, or has passed: `newVersion` is
    /// then that old one. Never true of a page about a flaw, nor of one that merely speaks of a
    /// version: such a page may be news whatever the version.
    bool notNewer = false;

    bool operator==(const VersionNews &) const = default;
};

/// Picks, among the versions read on a page, the one it announces for `dependency` (as the
/// manifest names it). The title decides when it names the dependency and one version of it; else
/// a title that announces a release of it, and a text that lists its versions newest first. When
/// anything is open the page announces nothing: a wrong version would hide news, or invent it.
/// Pure, any thread; time linear in the text.
VersionNews versionNews(const QString &dependency, const QString &inUse, const QString &title,
                        QStringView pageText);

} // namespace vorle
