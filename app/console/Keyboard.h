#pragma once

#include "base/Async.h"

#include <QString>

#include <optional>

namespace vorle::cli {

/// The keyboard of the terminal the program was started in. Main thread.
class Keyboard {
public:
    /// Whether a person can be asked something: they type on a terminal and read on one.
    static bool available();

    /// The next key as a small letter, without waiting for Enter and without showing it; keys that
    /// are no plain character (arrows, functions, accents) are passed over. Nothing at the end of
    /// the input. The terminal is as it was when this ends, however it ends. @throws Cancelled
    static Task<std::optional<QChar>> key(CancelToken cancel);

    /// The next line, edited as the terminal does, without blanks around it. Nothing at the end of
    /// the input. @throws Cancelled
    static Task<std::optional<QString>> line(CancelToken cancel);
};

} // namespace vorle::cli
