#pragma once

#include "app/triage/SectionOrder.h"

#include <QString>

namespace vorle {

/// The heading a topic stands under, the same for neighbours in its section's order: its tier,
/// "En cours de lecture", "Ils ont bougé", "Novembre 2026"; "" where there is none. Pure.
QString headingOf(TopicSection section, const PlacedTopic &placed);

} // namespace vorle
