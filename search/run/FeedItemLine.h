#pragma once

#include "search/feeds/FeedParser.h"

namespace vorle {

/// An item's line in a prompt: "[site] title — summary (2026-11-21) link", without what is empty.
/// Held to one line and bounded (see oneLine): nothing in it can close a fence.
QString feedItemLine(const FeedItem &item);

} // namespace vorle
