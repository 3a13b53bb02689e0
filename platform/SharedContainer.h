#pragma once

#include <QString>

#include <optional>

namespace vorle {

/// The folder that this program shares with its own share sheet and widget, which the system keeps
/// apart from it. Main thread.
class SharedContainer {
public:
    virtual ~SharedContainer() = default;

    /// Its path; nothing where this build has no right to one, and then those parts are not there
    /// either.
    virtual std::optional<QString> folder() const = 0;
};

} // namespace vorle
