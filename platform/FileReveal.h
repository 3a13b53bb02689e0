#pragma once

#include <QString>

namespace vorle {

/// Where a file lies, shown in the system's own file browser. Main thread.
class FileReveal {
public:
    virtual ~FileReveal() = default;

    /// What the button that does it is called: "Montrer dans le Finder".
    virtual QString label() const = 0;
    /// Opens the file browser on the file's folder, the file chosen where the system can. False
    /// when the system is known not to have taken it; it is never waited for.
    virtual bool reveal(const QString &path) = 0;
};

} // namespace vorle
