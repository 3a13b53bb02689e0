#include "core/ScoreNotes.h"

#include "base/Log.h"
#include "core/BesideTopics.h"
#include "core/DurableFile.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// Gives what went wrong; empty when nothing did. Any thread. `unreadableAt`, when given, asks for
/// the present file to be kept aside first, under that date.
QString written(const QString &file, const std::optional<QDateTime> &unreadableAt,
                QList<ScoreNote> notes) {
    // The same notes always make the same file.
    std::ranges::sort(notes, [](const ScoreNote &a, const ScoreNote &b) {
        return a.at != b.at ? a.at < b.at : a.topic < b.topic;
    });
    try {
        if (unreadableAt) {
            keepAside(file, asideName(file, *unreadableAt));
        }
        const QByteArray text = json::encode(notes, json::Style::Pretty) + '\n';
        const QByteArrayView piece(text);
        replaceWhole(file, {&piece, 1});
    } catch (const std::exception &error) {
        return QString::fromLocal8Bit(error.what());
    }
    return {};
}

} // namespace

ScoreNotes::ScoreNotes(const TopicStore &store, const Clock &clock)
    : m_store(store)
    , m_clock(clock)
    , m_file(besideTopics(store.file(), QStringLiteral("score-notes.json"))) {}

ScoreNotes::Contents ScoreNotes::read(const QString &file) {
    try {
        const auto bytes = file.isEmpty() ? std::nullopt : readWhole(file);
        return {bytes ? json::decode<QList<ScoreNote>>(*bytes) : QList<ScoreNote>(), {}};
    } catch (const std::exception &error) {
        return {{}, QString::fromLocal8Bit(error.what())};
    }
}

void ScoreNotes::take(const Contents &contents) {
    if (std::exchange(m_loaded, true)) {
        return;
    }
    for (const ScoreNote &note : contents.notes) {
        if (!m_notes.contains(note.topic)) { // what came while the file was read is newer
            m_notes.insert(note.topic, note);
        }
    }
    if (!contents.failure.isEmpty()) {
        logLine(QStringLiteral("the notes on scores could not be read: ") + contents.failure);
        m_unreadable = true;
    }
}

std::optional<ScoreNote> ScoreNotes::note(const QUuid &topic) {
    if (!m_loaded) {
        take(read(m_file));
    }
    const auto found = m_notes.constFind(topic);
    return found == m_notes.cend() ? std::nullopt : std::optional(*found);
}

Task<> ScoreNotes::add(QList<ScoreNote> notes) {
    for (const ScoreNote &note : notes) {
        m_notes.insert(note.topic, note);
    }
    m_dirty = true;
    if (m_saving || m_file.isEmpty()) {
        co_return;
    }
    m_saving = true;
    if (!m_loaded) {
        take(co_await onPool([file = m_file] { return read(file); }));
    }
    while (m_dirty) {
        m_dirty = false;
        dropOrphans();
        const auto unreadableAt = m_unreadable ? std::optional(m_clock.now()) : std::nullopt;
        const QString failure =
            co_await onPool([file = m_file, unreadableAt, all = m_notes.values()] {
                return written(file, unreadableAt, all);
            });
        if (failure.isEmpty()) {
            m_unreadable = false;
        } else {
            logLine(QStringLiteral("the notes on scores could not be kept: ") + failure);
        }
    }
    m_saving = false;
}

void ScoreNotes::dropOrphans() {
    if (m_store.setAside()) {
        return; // its topics may come back
    }
    m_notes.removeIf([this](QHash<QUuid, ScoreNote>::iterator entry) {
        return m_store.topic(entry.key()) == nullptr;
    });
}

} // namespace vorle
