#pragma once

namespace vorle {

/// The system's home-screen widgets, which show what they read from a file. Main thread.
class WidgetTimelines {
public:
    virtual ~WidgetTimelines() = default;

    /// The file has changed: the program's widgets read it again. Nothing where there are none.
    virtual void reload() = 0;
};

} // namespace vorle
