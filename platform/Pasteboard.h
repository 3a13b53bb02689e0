#pragma once

#include <QString>

namespace vorle {

/// The general pasteboard: what the user copies and pastes. Main thread; never fails.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// The text on it, of several addresses the first, in full; empty when it holds none.
    virtual QString text() const = 0;
    /// Clears it, whatever it holds, and puts the text on it.
    virtual void replace(const QString &text) = 0;
};

} // namespace vorle
