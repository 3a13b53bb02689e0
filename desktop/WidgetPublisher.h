#pragma once

#include "base/Async.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "base/OnDisk.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "desktop/WidgetSnapshot.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>

namespace vorle {

/// Keeps the snapshot for widgets and status bars up to date in a file: after each change of the
/// topics, of the settings that show in it, at a run's beginning and end, and as its words for the
/// next run change with the clock.
///
/// The file is replaced whole, by a thread of the disk's, at most once a second but for the last
/// state (see ended()); nothing is written while nothing changed. One write at a time: a disk that
/// does not answer is waited for there, and what it takes up again is never older than what stands;
/// what it writes so late is told as well (see Parts::published).
/// A write that failed is logged, and tried again with the next change. Main thread; what it is
/// given outlives it.
class WidgetPublisher final : public QObject {
    Q_OBJECT
public:
    struct Parts {
        const TopicStore &store;
        const Preferences &preferences;
        const Clock &clock;
        QString file;     ///< "" for nowhere; its folder is made
        QString pictures; ///< see WidgetSource
        /// The file has changed; main thread.
        std::function<void()> published = {};
        LocalZone zone = {};
        /// How long a write is waited for before it is left to the disk.
        std::chrono::milliseconds patience = maxDiskWait;
    };

    static constexpr std::chrono::milliseconds pause{1000};

    explicit WidgetPublisher(Parts parts, QObject *parent = nullptr);
    ~WidgetPublisher() override;

    /// A run begins, or has ended.
    void setSearching(bool searching);
    /// Has the present state written soon.
    void publish();
    /// Ends once the present state stands in the file, or the disk has not answered in time.
    Task<> ended();
    /// The same for who cannot wait in a coroutine: holds the caller up for `limit` at most.
    void flush(std::chrono::milliseconds limit);

private:
    struct File; ///< shared with the writes under way

    void arm();
    void write();
    void begin();
    void labelsAge();
    std::function<void()> work();
    void tell();
    static Task<> follow(QPointer<WidgetPublisher> self, std::chrono::milliseconds patience,
                         std::function<void()> work);

    Parts m_parts;
    std::shared_ptr<File> m_file;
    bool m_searching = false;
    bool m_due = false;
    quint64 m_states = 0; ///< handed to the disk so far
    quint64 m_told = 0;   ///< of the file's changes
    TaskGroup m_writes;
    QElapsedTimer m_last; ///< since a write began, or was seen to have ended
    QTimer m_timer;       ///< until the next one may
    QTimer m_ageing;      ///< until the words for the next run may be others
};

} // namespace vorle
