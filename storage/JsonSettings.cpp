#include "storage/JsonSettings.h"

#include "storage/DurableFile.h"
#include "storage/FileLock.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <utility>
#include <vector>

namespace vorle {

namespace {

/// A thousand times what a rich territory takes: more is another file put in its place.
constexpr qint64 maxBytes = 10'000'000;

struct Reading {
    QJsonObject values;
    bool unreadable = false;
    bool exists = false;
    bool empty = false;
};

/// @throws std::system_error
Reading readSettings(const QString &path) {
    const auto bytes = readWhole(path, maxBytes);
    Reading reading;
    reading.exists = bytes.has_value();
    reading.empty = bytes && bytes->isEmpty();
    if (bytes && !bytes->isEmpty()) {
        const auto document = QJsonDocument::fromJson(*bytes);
        reading.unreadable = !document.isObject();
        reading.values = document.object();
    }
    return reading;
}

/// An entry of a list, by what it is known by: a record's address, else itself.
QJsonValue nameOf(const QJsonValue &entry) {
    const QJsonValue address = entry.toObject().value(u"address");
    return address.isString() ? address : entry;
}

using Entry = std::pair<QJsonValue, QJsonValue>; ///< a name and what stands under it
using Entries = std::vector<Entry>;

Entries entriesOf(const QJsonArray &list) {
    Entries entries;
    for (const QJsonValue entry : list) {
        entries.emplace_back(nameOf(entry), entry);
    }
    return entries;
}

Entries entriesOf(const QJsonObject &object) {
    Entries entries;
    for (auto it = object.begin(); it != object.end(); ++it) {
        entries.emplace_back(it.key(), it.value());
    }
    return entries;
}

const QJsonValue *find(const Entries &entries, const QJsonValue &name) {
    for (const Entry &entry : entries) {
        if (entry.first == name) {
            return &entry.second;
        }
    }
    return nullptr;
}

/// Mine in my order, without what they took away; then what only they have.
Entries merged(const Entries &base, const Entries &mine, const Entries &theirs) {
    Entries result;
    for (const Entry &entry : mine) {
        const QJsonValue *before = find(base, entry.first);
        const QJsonValue *other = find(theirs, entry.first);
        const bool mineIsOld = before != nullptr && *before == entry.second;
        if (!mineIsOld) {
            result.push_back(entry);
        } else if (other != nullptr) {
            result.emplace_back(entry.first, *other);
        }
    }
    for (const Entry &entry : theirs) {
        if (find(mine, entry.first) == nullptr && find(base, entry.first) == nullptr) {
            result.push_back(entry);
        }
    }
    return result;
}

/// Writes the changes into the file, or into what was known of it when it holds nothing now. Gives
/// what it then holds. @throws std::system_error
QJsonObject save(const QString &path, const JsonSettings::Changes &changes,
                 const QJsonObject &known, std::optional<QString> &aside) {
    using namespace std::chrono_literals;
    const QString target = linkTarget(path);
    makeFolder(QFileInfo(target).absolutePath());
    FileLock lock(path);
    if (!lock.lockWithin(10s)) {
        throw std::system_error(std::make_error_code(std::errc::device_or_resource_busy));
    }
    const Reading present = readSettings(path);
    QJsonObject values = present.unreadable || present.empty ? known : present.values;
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        const QJsonValue value = mergedSetting(it->base, it->value, values.value(it.key()));
        if (value.isNull() || value.isUndefined()) {
            values.remove(it.key());
        } else {
            values.insert(it.key(), value);
        }
    }
    if (present.exists && !present.unreadable && !present.empty && values == present.values) {
        return values;
    }
    if (present.unreadable) {
        const QString name = backupName(path, QDateTime::currentDateTime());
        keepCopy(path, name);
        aside = name;
    }
    replaceWhole(path, QJsonDocument(values).toJson());
    return values;
}

} // namespace

QJsonValue mergedSetting(const QJsonValue &base, const QJsonValue &mine, const QJsonValue &theirs) {
    if (mine.isArray() && theirs.isArray()) {
        QJsonArray list;
        for (const Entry &entry : merged(entriesOf(base.toArray()), entriesOf(mine.toArray()),
                                         entriesOf(theirs.toArray()))) {
            list.append(entry.second);
        }
        return list;
    }
    if (mine.isObject() && theirs.isObject()) {
        QJsonObject object;
        for (const Entry &entry : merged(entriesOf(base.toObject()), entriesOf(mine.toObject()),
                                         entriesOf(theirs.toObject()))) {
            object.insert(entry.first.toString(), entry.second);
        }
        return object;
    }
    return mine;
}

JsonSettings::JsonSettings(QString path, std::function<void(const Outcome &)> finished)
    : m_path(std::move(path)), m_finished(std::move(finished)) {
    const Reading reading = readSettings(m_path);
    m_disk = reading.values;
    m_unreadable = reading.unreadable;
    m_empty = reading.empty;
}

JsonSettings::~JsonSettings() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

QJsonValue JsonSettings::value(const QString &key) const {
    const std::lock_guard lock(m_mutex);
    for (const Changes *changes : {&m_waiting, &m_saving}) {
        if (const auto found = changes->constFind(key); found != changes->cend()) {
            return found->value.isNull() ? QJsonValue(QJsonValue::Undefined) : found->value;
        }
    }
    return m_disk.value(key);
}

void JsonSettings::change(const QString &key, const QJsonValue &base, const QJsonValue &value) {
    {
        const std::lock_guard lock(m_mutex);
        const auto waiting = m_waiting.find(key);
        if (waiting != m_waiting.end()) {
            waiting->value = value;
        } else {
            m_waiting.insert(key, {base, value});
        }
        m_asked = true;
    }
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { run(); });
        } catch (const std::system_error &) { // too many processes: late, but on the disk
            std::unique_lock lock(m_mutex);
            saveOnce(lock);
        }
    }
    m_changed.notify_all();
}

bool JsonSettings::refresh() {
    for (;;) {
        std::unique_lock lock(m_mutex);
        const auto saves = m_saves;
        lock.unlock();
        const Reading reading = readSettings(m_path);
        // An editor that writes in place empties the file first.
        if (reading.unreadable || reading.empty) {
            return false;
        }
        lock.lock();
        if (saves == m_saves) { // else what was read may be older than what is known by now
            m_disk = reading.values;
            return true;
        }
    }
}

JsonSettings::Outcome JsonSettings::flush() {
    const auto isIdle = [this] { return !m_busy && !m_asked; };
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, isIdle);
    if (!m_waiting.isEmpty()) { // the disk may have room again
        m_asked = true;
        if (m_thread.joinable()) {
            m_changed.notify_all();
            m_changed.wait(lock, isIdle);
        } else {
            saveOnce(lock);
        }
    }
    return m_last;
}

void JsonSettings::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ending || m_asked; });
        if (!m_asked) {
            return;
        }
        saveOnce(lock);
    }
}

void JsonSettings::saveOnce(std::unique_lock<std::mutex> &lock) {
    m_asked = false;
    m_busy = true;
    m_saving = std::exchange(m_waiting, {});
    const Changes changes = m_saving;
    const QJsonObject known = m_disk;
    Outcome outcome{m_last.number + 1, {}, changes.keys(), {}};
    lock.unlock();
    std::optional<QJsonObject> saved;
    try {
        saved = save(m_path, changes, known, outcome.aside);
    } catch (const std::system_error &error) {
        outcome.error = error.code();
    } catch (const std::bad_alloc &) {
        outcome.error = std::make_error_code(std::errc::not_enough_memory);
    }
    m_finished(outcome);
    lock.lock();
    if (saved) {
        m_disk = *saved;
        ++m_saves;
    } else {
        for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
            const auto newer = m_waiting.constFind(it.key());
            m_waiting.insert(it.key(),
                             {it->base, newer == m_waiting.cend() ? it->value : newer->value});
        }
    }
    m_saving.clear();
    m_busy = false;
    m_last = outcome;
    m_changed.notify_all();
}

} // namespace vorle
