#include "platform/macos/FinderReveal.h"

#include "base/French.h"

#include <QProcess>

namespace vorle {

QString FinderReveal::label() const { return French::tr("Montrer dans le Finder"); }

bool FinderReveal::reveal(const QString &path) {
    return QProcess::startDetached(QStringLiteral("/usr/bin/open"), {QStringLiteral("-R"), path});
}

} // namespace vorle
