#pragma once

#include <QStringList>

namespace vorle::test {

/// What a file, a folder or a title may be called that a shell, a terminal or a reader takes for
/// more than a name, and what strains by its length: line breaks, signs that turn the direction,
/// 255 bytes. "pwned" stands where a program of that name would be run. Always the same.
QStringList strainingNames();
/// Those, and each ASCII sign that is no letter inside, doubled and at both ends: two hundred.
QStringList hostileNames();

} // namespace vorle::test
