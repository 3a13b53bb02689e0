#pragma once

#include "core/Settings.h"

#include <QImage>
#include <QString>

#include <optional>

namespace vorle {

/// A score's badge as a picture of its own, for a notification: the disc of the cards, light, on
/// nothing, its digits set in `family`. Without a score it shows a dash. Any thread; needs a
/// QGuiApplication.
QImage scorePicture(std::optional<int> score, Accent accent, const QString &family);

} // namespace vorle
