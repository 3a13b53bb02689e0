#pragma once

#include <QCoreApplication>

namespace vorle {

/// The texts people read, wherever no class has a `tr()` of its own: written in French, which is
/// the key of the current locale's table, and given back as that table has them.
/// `French::tr("Arrêté.")` is what the tools that collect texts for translation understand outside
/// of such classes; `scripts/check-french` finds texts that pass by it. Any thread, and before the
/// application object is made too.
class French {
    Q_DECLARE_TR_FUNCTIONS(vorle::French)
};

} // namespace vorle
