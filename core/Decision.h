#pragma once

#include "core/Topic.h"

#include <optional>

namespace vorle {

/// Why a decision on a topic is not taken.
enum class Refusal {
    BeingRead,      ///< a captured link: what the judge makes of it will stand in its place
    DismissedUnread ///< a captured link, dismissed before it was judged: nobody has seen it
};

/// Whether a decision that would take the topic to `target` is refused, and why; nothing where it
/// may be taken. What was never judged can be dismissed and nothing else (see isUnjudgedCapture).
/// Pure.
std::optional<Refusal> refusal(const Topic &topic, TopicStatus target);

} // namespace vorle
