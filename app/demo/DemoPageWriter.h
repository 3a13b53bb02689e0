#pragma once

#include "app/demo/DemoCatalogue.h"

#include <QByteArray>

namespace vorle {

/// A page as it goes over the wire.
struct DemoBody {
    QByteArray contentType;
    QByteArray bytes;
};

/// The page in its shape; for a dead one there is nothing to send and the body is empty.
DemoBody writePage(const DemoPage &page);

} // namespace vorle
