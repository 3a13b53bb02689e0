#pragma once

#include <string_view>
#include <vector>

namespace vorle::html {

/// The addresses of the pictures a page names for itself, as written, the preferred one first: its
/// first og:image, twitter:image, apple-touch-icon and icon that are not empty, each once. Of the
/// page, valid UTF-8, the first 300,000 characters count.
///
/// A meta element is read as MetaTag does; of a link element, whatever the order of its attributes:
///     <link[^>]+rel=["'][^"']*WORD[^"']*["'][^>]+href=["']([^"']+)["']
/// Case is ignored. Pure, any thread; time linear in the page whatever it holds. The views
/// point into `page`.
std::vector<std::string_view> announcedPictures(std::string_view page);

} // namespace vorle::html
