#include "base/Text.h"
#include "search/discovery/Version.h"
#include "tests/fuzz/Require.h"
#include "update/Appcast.h"
#include "update/Installation.h"
#include "update/UpdateError.h"

// Whatever a feed's bytes are, they are refused as one, or every release read from them is whole
// and within its bounds, and the one that is chosen is the newest that suits and newer than what
// runs.
namespace {

using namespace vorle;
using fuzz::require;

bool isWhole(const Release &release) {
    constexpr qsizetype signatureBytes = 64;
    return isReleaseVersion(release.version) && !release.version.contains(u'/') &&
           release.archive.isValid() && !release.archive.isRelative() &&
           !release.archive.host().isEmpty() && release.bytes > 0 &&
           release.bytes <= Release::maxArchiveBytes && release.signature.size() == signatureBytes;
}

bool isShowable(const QString &notes) {
    constexpr qsizetype longest = 4100;
    return notes.size() <= longest && notes == clampedLines(notes, longest) &&
           !notes.contains(u'\0') && !notes.contains(u'\u202E');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QUrl base(QStringLiteral("https://example.org/feed/appcast.xml"));
    const QString inUse = QStringLiteral("1.4.0");
    QList<Release> releases;
    try {
        releases = readAppcast(bytes, base);
    } catch (const UpdateError &) {
        return 0;
    }
    for (const Release &release : releases) {
        require(isWhole(release), "not a whole release", bytes);
        require(isShowable(release.notes), "notes that cannot be shown", bytes);
    }
    const Machine machine{QStringLiteral("linux"), QStringLiteral("x86_64"),
                          QStringLiteral("2.36")};
    const auto newest = newestRelease(releases, machine, inUse);
    require(!newest || (releases.contains(*newest) && isNewer(newest->version, inUse) &&
                        newest->system.startsWith(u"linux")),
            "not a release for this machine", bytes);
    for (const Release &release : releases) {
        const bool suits = release.system == u"linux" && release.minimumSystem.isEmpty();
        require(!suits || !isNewer(release.version, newest ? newest->version : inUse),
                "a newer one was passed over", bytes);
    }
    return 0;
}
