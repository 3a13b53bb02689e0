#pragma once

#include "base/Async.h"

#include <QString>

#include <optional>

namespace vorle {

/// The application that the person looks at, and what it answers to a script. Main thread.
class FrontBrowser {
public:
    virtual ~FrontBrowser() = default;

    /// The bundle identifier of the application in front; empty when there is none.
    virtual QString frontApp() const = 0;
    /// What that AppleScript gives, as text; nothing where it fails or the person does not allow
    /// it. The system may ask them first.
    virtual Task<std::optional<QString>> answer(QString script) = 0;
};

} // namespace vorle
