#pragma once

#include "base/Json.h"
#include "base/OnDisk.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// One link that another program dropped. The keys of its file, in this order; all but the address
/// may be absent.
struct SharedItem {
    std::optional<QString> title = {}; ///< as the sharing app has it
    QString url;
    std::optional<QString> note = {};     ///< typed in the share sheet
    std::optional<QString> project = {};  ///< that the link was tied to
    std::optional<QString> pageText = {}; ///< at most 8,000 characters are kept
    std::optional<QDateTime> sharedAt = {};

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("title", &SharedItem::title), json::field("url", &SharedItem::url),
            json::field("note", &SharedItem::note), json::field("project", &SharedItem::project),
            json::field("pageText", &SharedItem::pageText),
            json::field("sharedAt", &SharedItem::sharedAt));
    }
    bool operator==(const SharedItem &) const = default;
};

/// The folder that links are dropped into: one file each, "<UUID>.json", made under a name that
/// begins with a dot and renamed once it is whole. Every regular file whose name ends in ".json"
/// and begins with no dot is read, whoever called it what.
///
/// The folder may be reached by a symbolic link: a person may have put it elsewhere. It must be the
/// user's own, or who owns it could have others of their files taken for drops. Nothing inside is
/// reached by a link.
///
/// Any thread, one at a time; a folder on a disk that is gone holds the caller up.
class InboxFolder {
public:
    /// A larger file is not read.
    static constexpr qint64 maxBytes = 4 << 20;
    /// What is read in one listing, but for a single file.
    static constexpr qint64 maxBytesAtOnce = 32 << 20;

    explicit InboxFolder(const QString &path);

    /// What tells a file from the one that had its name before, and from what it held before.
    struct State {
        quint64 number = 0;
        qint64 bytes = 0;
        qint64 changed = 0; ///< nanoseconds

        bool operator==(const State &) const = default;
    };
    enum class Content {
        Link,   ///< `item` is it
        NoLink, ///< it holds none, or not yet; of one over maxBytes nothing was read
        Unread  ///< it could not be read now: refused by the system, or being replaced
    };
    struct Drop {
        QByteArray name; ///< as the disk has it
        State state;
        Content content = Content::NoLink;
        SharedItem item = {}; ///< dated by its file where it is not dated itself
    };
    struct Listing {
        QList<Drop> drops;      ///< the oldest first
        QList<QByteArray> gone; ///< of those known: no longer there
        bool more = false;      ///< there are others
    };
    /// Reads so many files, and maxBytesAtOnce. Those of `known` whose state is the same are passed
    /// over. Gives a sign of life with each file, and ends early where nobody waits any more.
    /// @throws std::system_error when the folder is not there, cannot be read or is another user's
    Listing read(qsizetype most, const QHash<QByteArray, State> &known, DiskPulse &pulse) const;

    enum class Left {
        Done,    ///< it left the folder
        Another, ///< it was gone already; what has its name is not what was read, and stays
        Refused  ///< the system did not let it be moved: it stays
    };
    /// Takes a file away that was read. Throws nothing.
    Left remove(const Drop &drop) const;
    /// Puts a file that is no link into the folder "illisibles" inside. Throws nothing.
    Left setAside(const Drop &drop) const;
    QString asideFolder() const;

    /// Makes the folder, and puts what an end in the middle of remove() left back into it.
    /// @throws std::system_error as read(), and when it cannot be made
    void open() const;

    /// Drops a link as other programs do: durably, in one step.
    /// @throws std::system_error
    void drop(const SharedItem &item) const;

private:
    Left leave(const Drop &drop, const char *into) const;
    Left move(const Drop &drop, const char *into) const;

    QString m_path;
};

} // namespace vorle
