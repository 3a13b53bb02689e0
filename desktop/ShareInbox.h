#pragma once

#include "base/Async.h"
#include "desktop/InboxFolder.h"
#include "desktop/StuckDrops.h"
#include "storage/FileWatch.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>

namespace vorle {

class DropSignal;

/// Takes in the links that other programs drop into a folder (see InboxFolder): at the start, when
/// the share sheet says that it dropped one, and when the folder changes.
///
/// A file leaves the folder only once what it held is safely kept, and what is dropped under its
/// name meanwhile is another drop. Each is handed over once: one whose saving fails, or that the
/// system does not let go, is only finished later, also after a new start. One that holds no link
/// is looked at again as long as somebody writes into it, then set aside, and never read again. One
/// that cannot be read now stays, and is tried again, less and less often.
///
/// Main thread, which never waits for the disk; what it is given outlives it, and it must outlive
/// the work under way (see `stopped`).
class ShareInbox final : public QObject {
    Q_OBJECT
public:
    using Item = SharedItem;

    enum class Taken {
        Kept,  ///< it is kept elsewhere
        NoLink ///< it holds none
    };
    /// Who keeps what was dropped.
    struct Keeper {
        /// Whether anything may be taken in now. If not, all stays where it is, until look().
        std::function<bool()> mayTake;
        /// Takes it in, in that order. Gives what became of each.
        std::function<QList<Taken>(const QList<Item> &)> take;
        /// Ends once all that was taken in is on the disk; false when that failed, and is to be
        /// asked again later.
        std::function<Task<bool>()> saved;
    };

    struct Pace {
        /// How long a file that is no link must stay as it is before it is set aside.
        std::chrono::milliseconds settled = std::chrono::seconds(20);
        /// How long until what was refused is tried again. A file that goes on being refused waits
        /// twice as long each time, 64 times that at most.
        std::chrono::milliseconds again = std::chrono::seconds(60);
    };

    struct Parts {
        QString folder; ///< made where it is missing
        Keeper keeper;
        DropSignal *signal = nullptr; ///< without one the folder alone tells
        QString topicsFile = {};      ///< see StuckDrops
    };

    /// Links taken in at once.
    static constexpr qsizetype batch = 500;

    ShareInbox(Parts parts, Pace pace, QObject *parent = nullptr);
    ~ShareInbox() override;

    /// Looks into the folder now.
    void look();
    /// Takes no further drop, and ends once what is under way has.
    Task<> stopped();
    /// Where files that are no links are kept.
    QString asideFolder() const { return m_folder.asideFolder(); }

Q_SIGNALS:
    /// So many files held no link, and so many were too large to be one: they were set aside.
    void wasSetAside(qsizetype noLinks, qsizetype tooLarge);
    /// A file could not be read a third time: it stays where it is. Told once of each.
    void cannotRead(const QString &name);
    /// The folder could not be read twice in a row. Told once, until it can be.
    void folderRefused(const std::error_code &why);
    /// Something was dropped that may not be taken in now.
    void heldBack();

private:
    /// A file that is no link, for now.
    struct Unsure {
        InboxFolder::Drop drop;
        QElapsedTimer since; ///< it is as it is
    };
    /// A file that could not be read.
    struct Unread {
        InboxFolder::State state;
        int tries = 0;
        QDeadlineTimer next;
    };
    /// One that was handed over, and not finished.
    struct Handed {
        InboxFolder::Drop drop;
        Taken taken = Taken::Kept;
    };
    enum class Went { Done, More, Badly };

    Task<> drain();
    Task<> loadStuck();
    Task<> retryStuck();
    Task<Went> takeSome();
    Task<std::optional<InboxFolder::Listing>> listing();
    Task<bool> finishHanded();
    Task<> leave(QList<InboxFolder::Drop> kept, QList<InboxFolder::Drop> aside);
    Task<> setAsideSettled();
    void note(const InboxFolder::Drop &drop);
    void noteUnread(const InboxFolder::Drop &drop);
    void forget(const QByteArray &name);
    QHash<QByteArray, InboxFolder::State> known() const;
    void lookLater(bool well);

    InboxFolder m_folder;
    QString m_path;
    StuckDrops m_stuckFile;
    Keeper m_keeper;
    DropSignal *m_signal;
    Pace m_pace;
    std::unique_ptr<FileWatch> m_watch;
    QHash<QByteArray, Unsure> m_unsure;
    QHash<QByteArray, Unread> m_unread;
    QList<Handed> m_handed;
    StuckDrops::Drops m_stuck;
    std::optional<StuckDrops::Drops> m_keptStuck; ///< as their file has them; nothing before load
    QDeadlineTimer m_stuckAgain;                  ///< when they are to be tried again
    QTimer m_later;
    int m_refusals = 0; ///< of the folder, in a row
    bool m_draining = false;
    bool m_lookAgain = false;
    bool m_opened = false;
    bool m_stopped = false;
    TaskGroup m_work;
};

} // namespace vorle
