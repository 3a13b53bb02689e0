#pragma once

#include "base/Async.h"
#include "desktop/InboxFolder.h"
#include "storage/FileWatch.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vorle {

class DropSignal;

/// Takes in the links that other programs drop into a folder (see InboxFolder): at the start, when
/// the share sheet says that it dropped one, and when the folder changes.
///
/// A file leaves the folder only once what it held is safely kept, and what is dropped under its
/// name meanwhile is another drop. One that holds no link is looked at again as long as somebody
/// writes into it, then set aside, and never read again. What the disk refuses is tried again
/// later.
///
/// Main thread, which never waits for the disk; what it is given outlives it, and it must outlive
/// the work under way (see `stopped`).
class ShareInbox final : public QObject {
    Q_OBJECT
public:
    using Item = SharedItem;

    enum class Taken {
        Kept,  ///< it is safely on disk elsewhere
        NoLink ///< it holds none
    };
    /// Keeps what was dropped, in that order. Gives what became of each once all is on the disk;
    /// nothing when that failed: it is handed over again, and must then count once.
    using Take = std::function<Task<std::optional<QList<Taken>>>(QList<Item>)>;

    struct Pace {
        /// How long a file that holds no link must stay as it is before it is set aside.
        std::chrono::milliseconds settled = std::chrono::seconds(20);
        /// How long until what was refused is tried again.
        std::chrono::milliseconds again = std::chrono::seconds(60);
    };

    /// Links taken in at once.
    static constexpr qsizetype batch = 500;

    /// `folder` is made where it is missing. `signal` may be null: then the folder alone tells.
    ShareInbox(QString folder, Take take, DropSignal *signal, Pace pace, QObject *parent = nullptr);
    ShareInbox(QString folder, Take take, DropSignal *signal = nullptr)
        : ShareInbox(std::move(folder), std::move(take), signal, Pace{}) {}
    ~ShareInbox() override;

    /// Looks into the folder now.
    void look();
    /// Takes no further drop, and ends once what is under way has.
    Task<> stopped();
    /// Where files that hold no link are kept.
    QString asideFolder() const { return m_folder.asideFolder(); }

Q_SIGNALS:
    /// So many files held no link, and were set aside.
    void wasSetAside(qsizetype files);

private:
    /// A file that holds no link, for now.
    struct Unsure {
        InboxFolder::Drop drop;
        QElapsedTimer since; ///< it is as it is
    };

    Task<> drain();
    Task<std::optional<bool>> takeSome();
    Task<> leave(QList<InboxFolder::Drop> kept, QList<InboxFolder::Drop> aside);
    Task<> setAsideSettled();
    void note(const InboxFolder::Drop &drop);
    QHash<QByteArray, InboxFolder::State> known() const;

    InboxFolder m_folder;
    QString m_path;
    Take m_take;
    DropSignal *m_signal;
    Pace m_pace;
    std::unique_ptr<FileWatch> m_watch;
    QHash<QByteArray, Unsure> m_unsure;
    /// Taken in, but still there: the system did not let them go. Never taken in again.
    QHash<QByteArray, InboxFolder::State> m_stuck;
    QTimer m_later;
    bool m_draining = false;
    bool m_lookAgain = false;
    bool m_opened = false;
    bool m_stopped = false;
    TaskGroup m_work;
};

} // namespace vorle
