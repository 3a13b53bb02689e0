#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace vorle {

/// What a link into GitHub leads to, told from the address alone. Pure, any thread.

/// A repository's owner and name.
struct Repository {
    QString owner;
    QString name;

    bool operator==(const Repository &) const = default;
};

/// The GitHub repository `link` lies in (its page, a file, a release, raw content), if any.
std::optional<Repository> gitHubRepository(const QString &link);

/// Whether a path's first word is one of GitHub's own pages, which look like an owner: "topics".
bool isGitHubPage(QStringView word);

} // namespace vorle
