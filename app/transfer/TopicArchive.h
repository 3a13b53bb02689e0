#pragma once

#include "app/transfer/TopicNotes.h"

#include <QString>

#include <exception>
#include <optional>

namespace vorle {

/// A file or a folder that cannot be exported to or imported from, told in French.
class TransferRefused final : public std::exception {
public:
    explicit TransferRefused(const QString &text) : m_text(text), m_utf8(text.toUtf8()) {}

    const QString &text() const { return m_text; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

/// What an export is made of: "topics.json", which an import reads back to the last field, and the
/// folder "notes", which any editor of Markdown reads.
struct ExportFormats {
    bool json = true;
    bool markdown = true;
};

/// The largest file that an import reads, in bytes: five times what the topics file reaches.
inline constexpr qint64 maxArchiveBytes = 500'000'000;

/// Writes all topics into `folder`, which is made when it is missing. Files that say it already are
/// not touched. An earlier archive that has topics which these lack is kept aside, under the date
/// `now`: it may be all that is left of them. `live` is the topics file itself, never to be written
/// here; `stopped` as writeTopicNotes. Any thread.
/// @throws TransferRefused when "topics.json" in that folder is `live`, or no list of topics;
///         Cancelled; std::system_error for what the system refuses
WrittenFiles exportTopics(const QList<Topic> &topics, const QString &folder, const QString &live,
                          ExportFormats formats, const QDateTime &now,
                          const std::function<bool()> &stopped = {});

/// The topics of an archive: a file as exportTopics writes it, a topics file, or a folder that
/// holds one as "topics.json". Scores and counts out of their range are brought back into it. Any
/// thread.
/// @throws TransferRefused when it is missing, too large, or no list of topics: none is given then;
///         std::system_error when the system does not let it be read
QList<Topic> readTopicArchive(const QString &path);

} // namespace vorle
