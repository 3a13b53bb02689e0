#include "desktop/InboxFolder.h"

#include "base/Descriptor.h"
#include "base/Text.h"
#include "storage/DurableFile.h"

#include <QFile>
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

namespace vorle {

namespace {

constexpr const char *asideName = "illisibles";
constexpr const char *leavingName = ".parti"; ///< where a file stands while it is taken away
/// What is kept of a page's text: the rest of a drop is let go at once.
constexpr qsizetype pageTextCharacters = 8'000;

Descriptor openFolder(const QString &path) {
    return Descriptor(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

InboxFolder::State stateOf(const struct stat &file) {
#if defined(Q_OS_DARWIN)
    const timespec changed = file.st_mtimespec;
#else
    const timespec changed = file.st_mtim;
#endif
    return {quint64(file.st_dev), quint64(file.st_ino), qint64(file.st_size),
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

QList<Entry> entriesOf(const QString &path) {
    QList<Entry> entries;
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(
        ::opendir(QFile::encodeName(path).constData()), ::closedir);
    while (folder) {
        const dirent *next = ::readdir(folder.get());
        if (next == nullptr) {
            break;
        }
        const QByteArray name(next->d_name);
        if (name.startsWith('.') || !name.endsWith(".json")) {
            continue;
        }
        if (const auto state = stateIn(::dirfd(folder.get()), name)) {
            entries += {name, *state};
        }
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

std::optional<SharedItem> itemIn(int folder, const Entry &entry) {
    const auto bytes =
        entry.state.bytes <= InboxFolder::maxBytes ? bytesOf(folder, entry) : std::nullopt;
    if (!bytes) {
        return std::nullopt;
    }
    try {
        auto item = json::decode<SharedItem>(*bytes);
        if (item.pageText) {
            item.pageText = clampedLines(*item.pageText, pageTextCharacters);
        }
        return item;
    } catch (const std::exception &) { // no link, or not a whole one yet
        return std::nullopt;
    }
}

QByteArray freshName() { return QUuid::createUuid().toByteArray(QUuid::WithoutBraces) + ".json"; }

} // namespace

InboxFolder::InboxFolder(const QString &path) : m_path(path) {}

QString InboxFolder::asideFolder() const { return m_path + u'/' + QString::fromLatin1(asideName); }

InboxFolder::Listing InboxFolder::read(qsizetype most,
                                       const QHash<QByteArray, State> &known) const {
    Listing listing;
    const Descriptor folder = openFolder(m_path);
    const QList<Entry> entries = entriesOf(m_path);
    for (const Entry &entry : entries) {
        const auto before = known.constFind(entry.name);
        if (before != known.cend() && *before == entry.state) {
            continue;
        }
        if (listing.drops.size() == most) {
            listing.more = true;
            break;
        }
        listing.drops += {entry.name, entry.state, itemIn(folder.number(), entry)};
    }
    return listing;
}

/// First out of the way, then looked at: what took its name meanwhile is never touched.
InboxFolder::Left InboxFolder::move(const Drop &drop, const char *into) const {
    const Descriptor folder = openFolder(m_path);
    if (::mkdirat(folder.number(), into, 0700) != 0 && errno != EEXIST) {
        // A full disk lets nothing be made, but what was read may go.
        const bool gone = into == leavingName &&
                          stateIn(folder.number(), drop.name) == drop.state &&
                          ::unlinkat(folder.number(), drop.name.constData(), 0) == 0;
        return gone ? Left::Done : Left::Refused;
    }
    const Descriptor other(
        ::openat(folder.number(), into, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
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

InboxFolder::Left InboxFolder::remove(const Drop &drop) const { return move(drop, leavingName); }

InboxFolder::Left InboxFolder::setAside(const Drop &drop) const { return move(drop, asideName); }

void InboxFolder::open() const {
    makeOwnFolder(m_path);
    const Descriptor folder = openFolder(m_path);
    const QString leaving = m_path + u'/' + QString::fromLatin1(leavingName);
    const Descriptor left = openFolder(leaving);
    for (const Entry &entry : entriesOf(leaving)) {
        ::renameat(left.number(), entry.name.constData(), folder.number(), freshName().constData());
    }
    removeStaleTemporaryFiles(m_path);
}

void InboxFolder::drop(const SharedItem &item) const {
    makeOwnFolder(m_path);
    replaceWhole(m_path + u'/' + QString::fromLatin1(freshName()),
                 json::encode(item, json::Style::Compact));
}

} // namespace vorle
