#include "core/GitHubLink.h"

#include "base/WebLink.h"

#include <QStringList>

#include <algorithm>
#include <array>

namespace vorle {

std::optional<Repository> gitHubRepository(const QString &link) {
    const QUrl url = WebLink::parsed(link);
    const QString host = WebLink::site(url);
    const bool raw = host == u"raw.githubusercontent.com";
    const QStringList words = WebLink::segments(url);
    if ((host != u"github.com" && !raw) || words.size() < 2 || (!raw && isGitHubPage(words[0]))) {
        return std::nullopt;
    }
    Repository repository{words[0], words[1]};
    if (repository.name.endsWith(u".git") && repository.name.size() > 4) {
        repository.name.chop(4);
    }
    return repository;
}

bool isGitHubPage(QStringView word) {
    static constexpr std::array<QStringView, 26> pages{
        u"about",       u"advisories",    u"apps",
        u"blog",        u"collections",   u"customer-stories",
        u"enterprise",  u"events",        u"explore",
        u"features",    u"issues",        u"login",
        u"marketplace", u"notifications", u"orgs",
        u"pricing",     u"pulls",         u"readme",
        u"search",      u"security",      u"settings",
        u"sponsors",    u"stars",         u"topics",
        u"trending",    u"users"};
    return std::ranges::find(pages, word) != pages.end();
}

} // namespace vorle
