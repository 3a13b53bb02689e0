#pragma once

#include "app/demo/DemoCatalogue.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace vorle {

/// A page as it goes over the wire.
struct DemoBody {
    QByteArray contentType;
    QByteArray bytes;
};

/// The folder of the site where the drawings lie that its pages name as their pictures.
inline QString demoPictureFolder() { return QStringLiteral("/images/"); }

/// What is served at `path`, when it is one of those drawings.
std::optional<DemoBody> pictureAnswer(const QString &path);

/// The page in its shape; for a dead one there is nothing to send and the body is empty.
DemoBody writePage(const DemoPage &page);

} // namespace vorle
