#pragma once

namespace vorle {

/// What a common browser calls itself: some sites turn others away.
inline constexpr auto browserUserAgent =
    "Mozilla/5.0 (Macintosh; Intel Mac OS X 15_0) AppleWebKit/605.1.15 "
    "(KHTML, like Gecko) Version/18.0 Safari/605.1.15";

} // namespace vorle
