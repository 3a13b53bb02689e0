#include "app/transfer/TopicArchive.h"

#include "base/French.h"
#include "core/Corrections.h"
#include "storage/DurableFile.h"

#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace vorle {

namespace {

QString archiveIn(const QString &folder) { return folder + QStringLiteral("/topics.json"); }

bool isListOfTopics(const QByteArray &bytes) {
    try {
        static_cast<void>(json::decode<QList<Topic>>(bytes));
        return true;
    } catch (const json::DecodeError &) {
        return false;
    }
}

void writeArchive(const QList<Topic> &topics, const QString &path, WrittenFiles &files) {
    const QByteArray bytes = json::encode(topics, json::Style::Pretty) + '\n';
    if (const auto present = readWhole(path)) {
        if (*present == bytes) {
            ++files.unchanged;
            return;
        }
        if (!present->isEmpty() && !isListOfTopics(*present)) {
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
                          ExportFormats formats, const std::function<bool()> &stopped) {
    makeFolder(folder);
    WrittenFiles files;
    if (formats.json) {
        const QString path = archiveIn(folder);
        const QFileInfo target(linkTarget(path));
        if (!live.isEmpty() && target.exists() &&
            target.canonicalFilePath() == QFileInfo(live).canonicalFilePath()) {
            throw TransferRefused(
                French::tr("Ce dossier est celui de tes sujets\u00A0: choisis-en un autre."));
        }
        writeArchive(topics, path, files);
    }
    if (formats.markdown) {
        const WrittenFiles notes =
            writeTopicNotes(topics, folder + QStringLiteral("/notes"), stopped);
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
