#pragma once

#include <QString>

namespace vorle {

/// Moves the executable `file`, from wherever it is, to `folder` (made with those above it where it
/// is missing) under `name`, readable and executable by everybody. In one step: what had that name
/// before works until the new one stands there whole, and stays where this fails. A link of that
/// name is replaced, not followed. Any thread.
/// @throws std::system_error, also where `file` is no plain file of one name
void placeExecutable(const QString &file, const QString &folder, const QString &name);

} // namespace vorle
