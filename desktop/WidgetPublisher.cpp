#include "desktop/WidgetPublisher.h"

#include "base/Log.h"
#include "base/OnDisk.h"
#include "storage/DurableFile.h"

#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <system_error>
#include <utility>

namespace vorle {

/// The file as its writers share it. They come one after the other; the main thread asks only
/// whether one is at it.
struct WidgetPublisher::File {
    std::atomic<int> writers = 0;
    std::atomic<quint64> changes = 0;
    std::atomic<quint64> tried = 0; ///< the newest state that a write was tried of
    std::mutex mutex;               // guards what follows
    quint64 state = 0;
    QByteArray bytes;

    void put(const QString &path, quint64 number, const WidgetSource &source) {
        const std::lock_guard guard(mutex);
        if (number < state) {
            return;
        }
        tried = number;
        state = number;
        const QByteArray now = json::encode(widgetSnapshot(source));
        if (now == bytes) {
            return;
        }
        try {
            makeFolder(QFileInfo(path).path());
            replaceWhole(path, now);
            bytes = now;
            ++changes;
        } catch (const std::system_error &error) {
            logLine(QStringLiteral("the widget's file could not be written: ") +
                    QString::fromLocal8Bit(error.what()));
        }
    }
};

WidgetPublisher::WidgetPublisher(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)), m_file(std::make_shared<File>()) {
    connect(&m_parts.store, &TopicStore::topicChanged, this, &WidgetPublisher::publish);
    connect(&m_parts.store, &TopicStore::topicsAdded, this, &WidgetPublisher::publish);
    connect(&m_parts.store, &TopicStore::topicsReset, this, &WidgetPublisher::publish);
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::schedule, &Settings::weeklyMinutes,
                                 &Settings::accent, &Settings::lastSearch, &Settings::servedSlot)) {
            publish();
        }
    });
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &WidgetPublisher::write);
    m_ageing.setSingleShot(true);
    m_ageing.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_ageing, &QTimer::timeout, this, &WidgetPublisher::publish);
    m_last.start(); // a start has better things to do
    publish();
}

WidgetPublisher::~WidgetPublisher() = default;

void WidgetPublisher::setSearching(bool searching) {
    m_searching = searching;
    publish();
}

void WidgetPublisher::publish() {
    m_due = !m_parts.file.isEmpty();
    arm();
}

void WidgetPublisher::arm() {
    if (m_timer.isActive()) {
        return;
    }
    if (m_file->writers > 0) {
        m_timer.start(m_parts.patience); // looked at again as soon as it ends, where it is followed
        return;
    }
    if (m_due) {
        const auto since =
            std::chrono::milliseconds(m_last.isValid() ? m_last.elapsed() : pause.count());
        m_timer.start(std::max(std::chrono::milliseconds(0), pause - since));
    }
}

/// What the file has been changed by since, however late.
void WidgetPublisher::tell() {
    // One that nobody began on in time was dropped.
    m_due = m_due || (m_file->writers == 0 && m_file->tried < m_states);
    const quint64 changes = m_file->changes;
    if (std::exchange(m_told, changes) != changes) {
        m_last.start(); // a slow disk's write ends when the next one would be due
        if (m_parts.published) {
            m_parts.published();
        }
    }
}

std::function<void()> WidgetPublisher::work() {
    const Settings &settings = m_parts.preferences.settings();
    const QDateTime now = m_parts.clock.now();
    const QTimeZone zone = m_parts.zone;
    m_due = false;
    m_last.start();
    labelsAge();
    // Goes with the work, whether it was done or dropped.
    ++m_file->writers;
    const std::shared_ptr<void> turn(nullptr, [file = m_file](void *) { --file->writers; });
    return [turn, file = m_file, path = m_parts.file, number = ++m_states,
            source = WidgetSource{
                .topics = m_parts.store.topics(),
                .weeklyMinutes = settings.weeklyMinutes,
                .accent = settings.accent,
                .nextSearch = settings.schedule.nextRun(now, zone, settings.believedSlot(now)),
                .searching = m_searching,
                .now = now,
                .zone = zone,
                .pictures = m_parts.pictures}] { file->put(path, number, source); };
}

/// The words for the next run change each minute within the hour before it, else with the day.
void WidgetPublisher::labelsAge() {
    const Settings &settings = m_parts.preferences.settings();
    const QDateTime now = m_parts.clock.now();
    const auto next = settings.schedule.nextRun(now, m_parts.zone, settings.believedSlot(now));
    constexpr qint64 near = 70 * 60;
    const bool soon = next && now.secsTo(*next) <= near;
    m_ageing.start(soon ? std::chrono::minutes(1) : std::chrono::minutes(10));
}

void WidgetPublisher::write() {
    tell();
    const bool mayBegin =
        m_file->writers == 0 && (!m_last.isValid() || m_last.hasExpired(pause.count()));
    if (m_due && mayBegin) {
        begin();
    } else {
        arm();
    }
}

void WidgetPublisher::begin() { m_writes.add(follow(this, m_parts.patience, work())); }

/// Past the disk's patience the write is left to it; the next one waits for its end all the same.
Task<> WidgetPublisher::follow(QPointer<WidgetPublisher> self, std::chrono::milliseconds patience,
                               std::function<void()> work) {
    co_await endsOnDisk([work = std::move(work)](DiskPulse &) { work(); }, patience);
    if (!self) {
        co_return;
    }
    self->tell();
    self->m_timer.stop();
    self->arm();
}

Task<> WidgetPublisher::ended() {
    co_await m_writes.join();
    tell();
    m_timer.stop();
    if (m_due && m_file->writers == 0) {
        begin();
        co_await m_writes.join();
    }
    m_timer.stop();
    m_ageing.stop();
}

void WidgetPublisher::flush(std::chrono::milliseconds limit) {
    if (m_due || m_file->writers > 0) {
        endsOnDiskWithin(work(), limit);
        tell();
    }
}

} // namespace vorle
