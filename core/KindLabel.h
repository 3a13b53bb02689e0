#pragma once

#include "core/Judgment.h"

#include <QString>

namespace vorle {

/// What people read for a kind of item, in French: "Vidéo". Pure.
QString kindLabel(ItemKind kind);

} // namespace vorle
