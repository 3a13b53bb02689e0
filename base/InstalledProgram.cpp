#include "base/InstalledProgram.h"

#include "base/InstallationLayout.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace vorle {

QString installationFolder(const QString &program) {
    const auto named = [](const char *text) { return QString::fromLatin1(text); };
    const QString path = QFileInfo(program).canonicalFilePath();
    const QString inside = u'/' + named(layout::program); // of a version
    if (!path.endsWith(inside)) {
        return {};
    }
    const QFileInfo version(path.chopped(inside.size()));
    const QString suffix = u'/' + named(layout::versions);
    if (!version.path().endsWith(suffix)) {
        return {};
    }
    const QString folder = version.path().chopped(suffix.size());
    const QFileInfo launcher(folder + u'/' + named(layout::launcher));
    const bool whole = QFileInfo(folder + u'/' + named(layout::current)).isSymLink() &&
                       launcher.isFile() && launcher.isExecutable();
    return whole ? folder : QString();
}

QString programToStart() {
    const QString own = QCoreApplication::applicationFilePath();
    const QString folder = installationFolder(own);
    return folder.isEmpty() ? own : folder + u'/' + QString::fromLatin1(layout::launcher);
}

} // namespace vorle
