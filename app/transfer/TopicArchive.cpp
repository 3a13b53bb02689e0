#include "app/transfer/TopicArchive.h"

#include "base/French.h"
#include "core/Corrections.h"
#include "storage/DurableFile.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace vorle {

namespace {

QString archiveIn(const QString &folder) { return folder + QStringLiteral("/topics.json"); }

/// Where a path leads, by one name whatever leads there; the file need not exist, its folder does.
QString located(const QString &path) {
    const QFileInfo target(linkTarget(path));
    return target.dir().canonicalPath() + u'/' + target.fileName();
}

/// Whether an archive has a topic that `topics` lack. @throws json::DecodeError for what is none
bool hasOthers(const QByteArray &archive, const QList<Topic> &topics) {
    QSet<QUuid> ids;
    for (const Topic &topic : topics) {
        ids.insert(topic.id);
    }
    const auto kept = json::decode<QList<Topic>>(archive);
    return std::any_of(kept.begin(), kept.end(),
                       [&](const Topic &topic) { return !ids.contains(topic.id); });
}

QString asideName(const QString &path, const QDateTime &now) {
    const QString stem = QFileInfo(path).path() + QStringLiteral("/topics-") +
                         now.toString(QStringLiteral("yyyy-MM-dd-HHmmss"));
    QString name = stem + QStringLiteral(".json");
    for (int number = 2; QFileInfo::exists(name); ++number) { // two within one second
        name = stem + u'-' + QString::number(number) + QStringLiteral(".json");
    }
    return name;
}

void writeArchive(const QList<Topic> &topics, const QString &path, const QDateTime &now,
                  WrittenFiles &files) {
    const QByteArray bytes = json::encode(topics, json::Style::Pretty) + '\n';
    if (const auto present = readWhole(path)) {
        if (*present == bytes) {
            ++files.unchanged;
            return;
        }
        try {
            if (!present->isEmpty() && hasOthers(*present, topics)) {
                files.aside = asideName(path, now);
                keepCopy(path, files.aside);
            }
        } catch (const json::DecodeError &) {
            throw TransferRefused(
                French::tr("Ce fichier n’est pas un export de vorle, je n’y touche pas\u00A0: %1")
                    .arg(path));
        }
    }
    replaceWhole(path, bytes);
    ++files.written;
}

/// What a person or another program wrote may say anything.
void bringIntoRange(Topic &topic) {
    topic.score = std::clamp(topic.score, 0, maxScore);
    topic.minutes = std::max(topic.minutes, 0);
    topic.postponedCount = std::max(topic.postponedCount, 0);
    if (topic.correction) {
        const double score = topic.correction->score;
        topic.correction->score = std::clamp(score, 0.0, double(maxScore));
    }
}

} // namespace

WrittenFiles exportTopics(const QList<Topic> &topics, const QString &folder, const QString &live,
                          ExportFormats formats, const QDateTime &now,
                          const std::function<bool()> &stopped) {
    makeFolder(folder);
    WrittenFiles files;
    if (formats.json) {
        const QString path = archiveIn(folder);
        if (!live.isEmpty() && located(path) == located(live)) {
            throw TransferRefused(
                French::tr("Ce dossier est celui de tes sujets\u00A0: choisis-en un autre."));
        }
        writeArchive(topics, path, now, files);
    }
    if (formats.markdown) {
        const WrittenFiles notes =
            writeTopicNotes(topics, folder + QStringLiteral("/notes"), now, stopped);
        files.written += notes.written;
        files.unchanged += notes.unchanged;
        files.left = notes.left;
    }
    return files;
}

QList<Topic> readTopicArchive(const QString &path) {
    const QString file = QFileInfo(path).isDir() ? archiveIn(path) : path;
    std::optional<QByteArray> bytes;
    try {
        bytes = readWhole(file, maxArchiveBytes);
    } catch (const std::system_error &error) {
        if (error.code() == std::errc::file_too_large) {
            throw TransferRefused(
                French::tr("Ce fichier est trop gros pour être des sujets\u00A0: %1").arg(file));
        }
        throw;
    }
    if (!bytes) {
        throw TransferRefused(French::tr("Ce fichier n’existe pas\u00A0: %1").arg(file));
    }
    try {
        auto topics = json::decode<QList<Topic>>(*bytes);
        std::for_each(topics.begin(), topics.end(), bringIntoRange);
        return topics;
    } catch (const json::DecodeError &) {
        throw TransferRefused(
            French::tr("Ce fichier n’est pas une liste de sujets de vorle, je n’ai rien "
                       "importé\u00A0: %1")
                .arg(file));
    }
}

} // namespace vorle
