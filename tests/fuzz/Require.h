#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace vorle::fuzz {

/// Ends the process, which the fuzzer takes for a find, where something does not hold: says what,
/// and of which input (a QString, or bytes).
template <typename Input = QByteArray>
void require(bool holds, const char *what, const Input &input = {}) {
    if (holds) {
        return;
    }
    if constexpr (std::is_convertible_v<Input, QStringView>) {
        std::fprintf(stderr, "%s:\n%s\n", what, QStringView(input).toUtf8().constData());
    } else {
        std::fprintf(stderr, "%s:\n%s\n", what, QByteArrayView(input).toByteArray().constData());
    }
    std::abort();
}

} // namespace vorle::fuzz
