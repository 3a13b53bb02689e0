#pragma once

#include <QString>

#include <system_error>

namespace vorle {

/// What the system refused, as the end of a French sentence: "il n’y a plus de place sur le
/// disque". A code without words of ours is named by its number. Any thread.
QString systemErrorText(const std::error_code &code);

/// The same as a whole sentence, for the user: "Le système a refusé : …", with the path where the
/// error carries one.
QString systemRefusalText(const std::system_error &error);

} // namespace vorle
