#include "desktop/InboxFolder.h"

#include "base/Descriptor.h"
#include "base/Text.h"
#include "storage/DurableFile.h"

#include <QFile>
#include <QTimeZone>
#include <QUuid>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <system_error>

namespace vorle {

namespace {

constexpr const char *asideName = "illisibles";
constexpr const char *leavingName = ".parti"; ///< where a file stands while it is taken away
/// What is kept of a page's text: the rest of a drop is let go at once.
constexpr qsizetype pageTextCharacters = 8'000;
/// What is looked at for that: megabytes would only be taken apart to be dropped.
constexpr qsizetype pageTextLooked = 64 * pageTextCharacters;

[[noreturn]] void refuse(const QString &path) {
    throw std::system_error(errno, std::generic_category(), path.toStdString());
}

/// @throws std::system_error where it is not there or is another user's
Descriptor openFolder(const QString &path) {
    Descriptor folder(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat state{};
    if (!folder.isOpen() || ::fstat(folder.number(), &state) != 0) {
        refuse(path);
    }
    if (state.st_uid != ::geteuid()) {
        errno = EPERM;
        refuse(path);
    }
    return folder;
}

/// A folder inside, never what a link leads to.
Descriptor openInside(int folder, const char *name) {
    return Descriptor(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

InboxFolder::State stateOf(const struct stat &file) {
#if defined(Q_OS_DARWIN)
    const timespec changed = file.st_mtimespec;
#else
    const timespec changed = file.st_mtim;
#endif
    return {quint64(file.st_ino), qint64(file.st_size),
            qint64(changed.tv_sec) * 1'000'000'000 + changed.tv_nsec};
}

/// The state of a regular file; nothing for anything else, links included.
std::optional<InboxFolder::State> stateIn(int folder, const QByteArray &name) {
    struct stat file{};
    if (::fstatat(folder, name.constData(), &file, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(file.st_mode)) {
        return std::nullopt;
    }
    return stateOf(file);
}

struct Entry {
    QByteArray name;
    InboxFolder::State state;
};

/// The files that may be drops, the oldest first.
/// @throws std::system_error: half a list would have the rest taken for gone
QList<Entry> entriesOf(int number, const QString &path, DiskPulse &pulse) {
    QList<Entry> entries;
    const int own = ::openat(number, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(own < 0 ? nullptr : ::fdopendir(own),
                                                      ::closedir);
    if (!folder) {
        const int refusal = errno;
        ::close(own);
        errno = refusal;
        refuse(path);
    }
    while (!pulse.isStopped()) {
        errno = 0;
        const dirent *next = ::readdir(folder.get());
        if (next == nullptr) {
            break;
        }
        const QByteArray name(next->d_name);
        if (name.startsWith('.') || !name.endsWith(".json")) {
            continue;
        }
        pulse.beat();
        if (const auto state = stateIn(number, name)) {
            entries += {name, *state};
        }
    }
    if (errno != 0) {
        refuse(path);
    }
    std::ranges::sort(entries, [](const Entry &a, const Entry &b) {
        return a.state.changed != b.state.changed ? a.state.changed < b.state.changed
                                                  : a.name < b.name;
    });
    return entries;
}

/// The bytes of a file that is still the one that was listed; nothing where it is not, or cannot be
/// read.
std::optional<QByteArray> bytesOf(int folder, const Entry &entry) {
    const Descriptor file(
        ::openat(folder, entry.name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat now{};
    if (!file.isOpen() || ::fstat(file.number(), &now) != 0 || stateOf(now) != entry.state) {
        return std::nullopt;
    }
    QByteArray bytes(entry.state.bytes, Qt::Uninitialized);
    qsizetype read = 0;
    while (read < bytes.size()) {
        const ssize_t got = ::read(file.number(), bytes.data() + read, size_t(bytes.size() - read));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return std::nullopt;
        }
        read += got;
    }
    return bytes;
}

InboxFolder::Drop dropIn(int folder, const Entry &entry) {
    using Content = InboxFolder::Content;
    if (entry.state.bytes > InboxFolder::maxBytes) {
        return {entry.name, entry.state, Content::NoLink};
    }
    const auto bytes = bytesOf(folder, entry);
    if (!bytes) {
        return {entry.name, entry.state, Content::Unread};
    }
    try {
        auto item = json::decode<SharedItem>(*bytes);
        if (item.pageText) {
            item.pageText = clampedLines(item.pageText->left(pageTextLooked), pageTextCharacters);
        }
        if (!item.sharedAt) {
            item.sharedAt =
                QDateTime::fromMSecsSinceEpoch(entry.state.changed / 1'000'000, QTimeZone::utc());
        }
        return {entry.name, entry.state, Content::Link, std::move(item)};
    } catch (const std::bad_alloc &) { // says nothing of what it holds
        return {entry.name, entry.state, Content::Unread};
    } catch (const std::exception &) { // no link, or not a whole one yet
        return {entry.name, entry.state, Content::NoLink};
    }
}

QByteArray freshName() { return QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + ".json"; }

} // namespace

InboxFolder::InboxFolder(const QString &path) : m_path(path) {}

QString InboxFolder::asideFolder() const { return m_path + u'/' + QString::fromLatin1(asideName); }

InboxFolder::Listing InboxFolder::read(qsizetype most, const QHash<QByteArray, State> &known,
                                       DiskPulse &pulse) const {
    Listing listing;
    const Descriptor folder = openFolder(m_path);
    const QList<Entry> entries = entriesOf(folder.number(), m_path, pulse);
    QHash<QByteArray, State> gone = known;
    qint64 bytes = 0;
    for (const Entry &entry : entries) {
        gone.remove(entry.name);
        const auto before = known.constFind(entry.name);
        if (listing.more || (before != known.cend() && *before == entry.state)) {
            continue;
        }
        const qint64 cost = entry.state.bytes <= maxBytes ? entry.state.bytes : 0;
        if (listing.drops.size() == most || (bytes > 0 && bytes + cost > maxBytesAtOnce) ||
            pulse.isStopped()) {
            listing.more = true;
            continue;
        }
        bytes += cost;
        listing.drops += dropIn(folder.number(), entry);
        pulse.beat();
    }
    listing.gone = gone.keys();
    return listing;
}

/// First out of the way, then looked at once more: what takes its name meanwhile is never lost.
InboxFolder::Left InboxFolder::move(const Drop &drop, const char *into) const {
    const Descriptor folder = openFolder(m_path);
    if (stateIn(folder.number(), drop.name) != drop.state) {
        return Left::Another;
    }
    ::mkdirat(folder.number(), into, 0700); // mostly it is there
    const Descriptor other = openInside(folder.number(), into);
    if (!other.isOpen()) {
        // A full disk lets nothing be made, and what has that name may be no folder. What was read
        // may go all the same.
        const bool mayGo = into == leavingName;
        return mayGo && ::unlinkat(folder.number(), drop.name.constData(), 0) == 0 ? Left::Done
                                                                                   : Left::Refused;
    }
    struct stat taken{};
    const bool isTaken =
        ::fstatat(other.number(), drop.name.constData(), &taken, AT_SYMLINK_NOFOLLOW) == 0;
    const QByteArray name = isTaken ? freshName() : drop.name;
    if (::renameat(folder.number(), drop.name.constData(), other.number(), name.constData()) != 0) {
        return errno == ENOENT ? Left::Another : Left::Refused;
    }
    if (stateIn(other.number(), name) != drop.state) {
        ::renameat(other.number(), name.constData(), folder.number(), freshName().constData());
        return Left::Another;
    }
    if (into == leavingName) {
        ::unlinkat(other.number(), name.constData(), 0);
    }
    return Left::Done;
}

InboxFolder::Left InboxFolder::leave(const Drop &drop, const char *into) const {
    try {
        return move(drop, into);
    } catch (const std::system_error &) { // the folder itself
        return Left::Refused;
    }
}

InboxFolder::Left InboxFolder::remove(const Drop &drop) const { return leave(drop, leavingName); }

InboxFolder::Left InboxFolder::setAside(const Drop &drop) const { return leave(drop, asideName); }

void InboxFolder::open() const {
    makeOwnFolder(m_path);
    const Descriptor folder = openFolder(m_path);
    if (const Descriptor left = openInside(folder.number(), leavingName); left.isOpen()) {
        DiskPulse pulse;
        for (const Entry &entry : entriesOf(left.number(), m_path, pulse)) {
            ::renameat(left.number(), entry.name.constData(), folder.number(),
                       freshName().constData());
        }
    }
    removeStaleTemporaryFiles(m_path);
}

void InboxFolder::drop(const SharedItem &item) const {
    makeOwnFolder(m_path);
    openFolder(m_path); // or nobody would ever take it in
    replaceWhole(m_path + u'/' + QString::fromLatin1(freshName()),
                 json::encode(item, json::Style::Compact), AtLink::Replace);
}

} // namespace vorle
