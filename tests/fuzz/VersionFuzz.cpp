#include "search/discovery/Version.h"
#include "tests/fuzz/Require.h"

// Lines: a dependency, the version in use, a page's title; the rest is the page. Whatever they are,
// the version a page announces stands in it, is one, and is newer than the one in use or told not
// to be.
namespace {

using namespace vorle;
using fuzz::require;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QString input =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    qsizetype end = 0;
    for (const auto &[from, to] : versionSpans(input)) {
        require(end <= from && from < to && to <= input.size(), "spans overlap", input);
        end = to;
    }
    const QString dependency = input.section(u'\n', 0, 0);
    const QString inUse = input.section(u'\n', 1, 1);
    const QString title = input.section(u'\n', 2, 2);
    const QString text = input.section(u'\n', 3);
    const VersionNews news = versionNews(dependency, inUse, title, text);
    if (news.newVersion) {
        const QString &version = *news.newVersion;
        require(parseVersion(version).has_value(), "not a version", input);
        require(title.contains(version) || text.contains(version), "not on the page", input);
        require(news.notNewer != isNewer(version, inUse), "neither news nor old", input);
    }
    require(!news.notNewer || news.newVersion, "old without a version", input);
    return 0;
}
