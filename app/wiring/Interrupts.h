#pragma once

#include "base/Cancellation.h"

#include <QSocketNotifier>

#include <memory>

namespace vorle {

/// Turns the first Ctrl-C (or a polite request to end) into a cancelled token, so that what runs
/// can end its child processes and keep what it has. A second Ctrl-C ends the program at once, as
/// the system would; a polite request may come more than once, and changes nothing then. One object
/// a program, on the main thread.
class Interrupts {
public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts &) = delete;
    Interrupts &operator=(const Interrupts &) = delete;

    CancelToken token() const { return m_source.token(); }

private:
    CancelSource m_source;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace vorle
