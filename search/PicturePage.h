#pragma once

#include <optional>
#include <string_view>

namespace vorle::html {

/// The address of the picture a page names for itself, as written: the first of its og:image,
/// twitter:image, apple-touch-icon and icon that is not empty. Of the page, valid UTF-8, the first
/// 300,000 characters count.
///
/// A meta element is read as MetaTag does; of a link element, whatever the order of its attributes:
///     <link[^>]+rel=["'][^"']*WORD[^"']*["'][^>]+href=["']([^"']+)["']
/// Case is ignored. Pure, any thread; time linear in the page whatever it holds. The view points
/// into `page`.
std::optional<std::string_view> announcedPicture(std::string_view page);

} // namespace vorle::html
