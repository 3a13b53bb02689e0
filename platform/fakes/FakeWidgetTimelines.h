#pragma once

#include "platform/WidgetTimelines.h"

namespace vorle::test {

/// Counts how often the widgets were told to read again.
class FakeWidgetTimelines final : public WidgetTimelines {
public:
    int reloads = 0;

    void reload() override { ++reloads; }
};

} // namespace vorle::test
