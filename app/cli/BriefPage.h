#pragma once

#include "app/console/Console.h"
#include "core/Topic.h"

namespace vorle::cli {

/// A topic's reading note as a person reads it in a terminal; the topic must have one. `minutes`,
/// known only of a note just written, says how long that takes.
QString briefPage(const Console &console, const Topic &topic, std::optional<int> minutes);

} // namespace vorle::cli
