#pragma once

#include "app/demo/DemoCatalogue.h"
#include "app/demo/DemoPageWriter.h"

#include <optional>

namespace vorle {

/// The path of the one site the demonstration's person trusts: a blog with pages of its own, which
/// also announces pages of others.
inline QString demoBlogPath() { return QStringLiteral("/carnet-du-web/"); }

/// What the blog serves at `path`: its home page, which announces its feed, and that feed (RSS
/// 2.0), both over the pages of `catalogue` that it announced, newest first. Nothing at any other
/// path: what it wrote itself is in the catalogue. `site` is the site's address without a trailing
/// slash, for the links of the feed.
std::optional<DemoBody> blogAnswer(const DemoCatalogue &catalogue, const QString &path,
                                   const QString &site);

} // namespace vorle
