#include "app/transfer/TopicNotes.h"

#include "app/labels/TopicLabels.h"
#include "app/transfer/MarkdownText.h"
#include "app/transfer/TopicNote.h"
#include "base/Cancellation.h"
#include "storage/DurableFile.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QMap>
#include <QSet>

namespace vorle {

namespace {

constexpr qint64 maxNoteBytes = 20'000'000; // no note of ours comes near
constexpr qint64 maxIndexBytes = 100'000'000;

QString digestOf(const QByteArray &bytes) {
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

struct IndexEntry {
    QString file;
    QString digest; ///< SHA-256 of what was written, in hexadecimal

    static constexpr auto jsonFields() {
        return std::tuple(json::field("file", &IndexEntry::file),
                          json::field("digest", &IndexEntry::digest));
    }
};

/// What was written under which name, by topic.
using Index = QMap<QString, IndexEntry>;

/// One that does not decode counts as none: notes are then known by their names alone, and what
/// was changed in them by hand is still not overwritten.
Index readIndex(const QString &path, const QDateTime &now) {
    const auto bytes = readWhole(path, maxIndexBytes);
    if (!bytes) {
        return {};
    }
    try {
        return json::decode<Index>(*bytes);
    } catch (const json::DecodeError &) {
        keepCopy(path, backupName(path, now));
        return {};
    }
}

bool isPlainName(const QString &name) {
    return !name.isEmpty() && QFileInfo(name).fileName() == name && name.endsWith(u".md");
}

class NotesFolder {
public:
    NotesFolder(const QString &folder, const QDateTime &now, const QTimeZone &zone)
        : m_folder(folder), m_zone(zone), m_index(readIndex(indexPath(), now)) {
        for (const IndexEntry &entry : std::as_const(m_index)) {
            m_taken.insert(entry.file);
        }
    }

    void write(const Topic &topic) {
        const QString id = identityText(topic.id);
        const QByteArray note = topicNote(topic, m_zone);
        const QString digest = digestOf(note);
        const auto known = m_index.constFind(id);
        const bool named = known != m_index.constEnd() && isPlainName(known->file);
        const QString name = named ? known->file : freeName(topic, id);
        const auto present = readWhole(m_folder + u'/' + name, maxNoteBytes);
        if (present && digestOf(*present) == digest) {
            ++m_outcome.unchanged;
        } else if (present && (!named || digestOf(*present) != known->digest)) {
            m_outcome.left += name;
            return; // what it said when it was written is still what tells that it was changed
        } else {
            replaceWhole(m_folder + u'/' + name, note);
            ++m_outcome.written;
        }
        m_index.insert(id, {name, digest});
        m_taken.insert(name);
    }

    void keepIndex() const {
        const QByteArray bytes = json::encode(m_index, json::Style::Pretty) + '\n';
        if (readWhole(indexPath(), maxIndexBytes) != bytes) {
            replaceWhole(indexPath(), bytes);
        }
    }

    const WrittenFiles &outcome() const { return m_outcome; }

private:
    QString indexPath() const { return m_folder + QStringLiteral("/.vorle-notes.json"); }

    /// Two identities may begin alike; the whole one then tells them apart.
    QString freeName(const Topic &topic, const QString &id) const {
        constexpr qsizetype shortId = 8;
        const QString stem = markdown::fileStem(topic.title);
        const QString whole = id.toLower();
        const QString name = QStringLiteral("%1-%2.md").arg(stem, whole.first(shortId));
        return m_taken.contains(name) ? QStringLiteral("%1-%2.md").arg(stem, whole) : name;
    }

    QString m_folder;
    QTimeZone m_zone;
    Index m_index;
    QSet<QString> m_taken; // names that another topic's note has
    WrittenFiles m_outcome;
};

} // namespace

WrittenFiles writeTopicNotes(const QList<Topic> &topics, const QString &folder,
                             const QDateTime &now, const std::function<bool()> &stopped,
                             const QTimeZone &zone) {
    makeFolder(folder);
    NotesFolder notes(folder, now, zone);
    std::exception_ptr fault;
    try {
        for (const Topic &topic : topics) {
            if (stopped && stopped()) {
                throw Cancelled();
            }
            notes.write(topic);
        }
    } catch (...) { // what was written is known to be ours the next time
        fault = std::current_exception();
    }
    try {
        notes.keepIndex();
    } catch (...) {
        if (!fault) {
            throw;
        }
    }
    if (fault) {
        std::rethrow_exception(fault);
    }
    return notes.outcome();
}

} // namespace vorle
