#pragma once

#include "platform/WidgetTimelines.h"

namespace vorle {

/// WidgetKit, which speaks Swift alone: a small library of ours beside the program (Widgets.swift)
/// asks it. Where that library was not built there are no widgets either.
class MacWidgetTimelines final : public WidgetTimelines {
public:
    void reload() override;

private:
    void (*m_reload)() = nullptr;
    bool m_looked = false;
};

} // namespace vorle
