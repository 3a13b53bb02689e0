#pragma once

#include "app/demo/agent/Scout.h"

namespace vorle::demo {

/// Answers the instruction for the items of trusted sites: at most three, newest first as they are
/// listed, each for another project, topic or tool of the person's, their links as they stand.
FoundAnswer screen(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                   const QString &site);

} // namespace vorle::demo
