#pragma once

#include <QString>

namespace vorle {

/// The system's check of who signed a program. Any thread.
class SignatureCheck {
public:
    virtual ~SignatureCheck() = default;

    /// Whether the program is whole as it was signed, and its signature meets `requirement`, which
    /// is written in the system's own language for that. False for whatever cannot be checked.
    virtual bool meets(const QString &program, const QString &requirement) const = 0;
};

} // namespace vorle
