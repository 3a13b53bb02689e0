#pragma once

#include "core/GitHubLink.h"
#include "core/Judgment.h"

#include <QString>
#include <QStringView>
#include <QUrl>

namespace vorle {

/// The address to fetch for `link`: without the query items whose name begins with "utm_"; a file
/// seen on GitHub becomes the file itself on its raw-content host. An invalid QUrl when `link` is
/// no http(s) address.
QUrl readableLink(const QString &link);

/// The form under which two spellings of one link compare equal: scheme and host in lower case,
/// no default port, no credentials, no fragment, no tracking words in the query, no trailing
/// slash. For comparing only, never for fetching. What is no http(s) address stays as it is, but
/// for the blanks around it.
QString canonicalLink(const QString &link);

/// Whether a link names one page among those of its site. A site's front page and its pages for
/// signing in or giving consent do not: links to quite different pages end there.
bool namesOnePage(const QString &link);

/// The kind of thing a link most likely leads to, told from the address alone: "article" when
/// nothing else is recognised.
ItemKind guessKind(const QString &link);

} // namespace vorle
