#include "storage/BesideTopics.h"

#include <QFileInfo>

namespace vorle {

QString sidecarPath(const QString &topicsFile, const QString &name) {
    if (topicsFile.isEmpty()) {
        return {};
    }
    const QFileInfo topics(topicsFile);
    const QString prefix =
        topics.fileName() == u"topics.json" ? QString() : topics.completeBaseName() + u'-';
    return topics.absolutePath() + u'/' + prefix + name;
}

} // namespace vorle
