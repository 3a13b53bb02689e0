#include "core/TopicWriter.h"

#include <vector>

namespace vorle {

TopicWriter::TopicWriter(QString file, std::optional<QString> aside,
                         std::function<void(Outcome, quint64)> finished)
    : m_file(std::move(file)), m_aside(std::move(aside)), m_finished(std::move(finished)) {}

TopicWriter::~TopicWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void TopicWriter::submit(Snapshot topics) { ask({std::move(topics), ++m_asked}); }

void TopicWriter::prepare(Snapshot topics) { ask({std::move(topics), 0}); }

void TopicWriter::ask(Job job) {
    std::optional<Job> replaced(std::move(job)); // freed outside the lock
    {
        const std::lock_guard lock(m_mutex);
        if (replaced->number > 0 || !m_waiting) {
            m_waiting.swap(replaced);
        }
    }
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { run(); });
        } catch (const std::system_error &) { // too many processes: late, but on the disk
            std::unique_lock lock(m_mutex);
            workOnce(lock);
        }
    }
    m_changed.notify_all();
}

TopicWriter::Outcome TopicWriter::wait() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return !m_busy && !m_waiting; });
    return m_lastOutcome;
}

TopicWriter::Outcome TopicWriter::lastOutcome() const {
    const std::lock_guard lock(m_mutex);
    return m_lastOutcome;
}

void TopicWriter::run() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_ending || m_waiting; });
        if (!m_waiting) {
            return;
        }
        workOnce(lock);
    }
}

void TopicWriter::workOnce(std::unique_lock<std::mutex> &lock) {
    std::optional<Job> job;
    job.swap(m_waiting);
    m_busy = true;
    lock.unlock();
    Outcome outcome = m_lastOutcome; // written here alone
    const quint64 number = job->number;
    std::optional<FormerFile> former; // let go once nobody waits for this save any more
    if (number > 0) {
        outcome = write(job->topics, former);
    } else {
        encodeAll(job->topics);
    }
    job.reset(); // the last hold on replaced topics is let go here, off the main thread
    if (number > 0) {
        m_finished(outcome, number);
    }
    lock.lock();
    m_busy = false;
    m_lastOutcome = outcome;
    m_changed.notify_all();
    if (former) {
        lock.unlock();
        former.reset();
        lock.lock();
    }
}

void TopicWriter::encodeAll(const Snapshot &topics) {
    try {
        for (const auto &topic : topics) {
            encoded(topic);
        }
    } catch (const std::bad_alloc &) {
        return; // the save that needs it will say so
    }
}

TopicWriter::Outcome TopicWriter::write(const Snapshot &topics, std::optional<FormerFile> &former) {
    try {
        std::vector<QByteArrayView> pieces;
        pieces.reserve(static_cast<std::size_t>(topics.size()) + 2);
        pieces.emplace_back("[");
        for (const auto &topic : topics) {
            pieces.emplace_back(encoded(topic));
        }
        if (!topics.isEmpty()) {
            pieces[1] = pieces[1].sliced(1); // no comma before the first
            pieces.emplace_back("\n");
        }
        pieces.emplace_back("]\n");
        if (m_aside) {
            keepCopy(m_file, *m_aside);
            m_aside.reset();
        }
        former = replaceWhole(m_file, pieces);
        return {};
    } catch (const std::system_error &error) {
        return error.code();
    } catch (const std::bad_alloc &) {
        return std::make_error_code(std::errc::not_enough_memory);
    }
}

const QByteArray &TopicWriter::encoded(const TopicPtr &held) {
    const auto &topic = static_cast<const StoredTopic &>(*held);
    if (!topic.m_encoded.isEmpty()) {
        return topic.m_encoded;
    }
    m_scratch.resize(0); // keeps its capacity: growing anew costs more than the encoding
    m_scratch += ",\n  ";
    json::Writer writer(json::Style::Pretty, 1, std::move(m_scratch));
    json::encodeTo<Topic>(writer, topic);
    m_scratch = writer.take();
    topic.m_encoded = QByteArray(m_scratch.constData(), m_scratch.size());
    return topic.m_encoded;
}

} // namespace vorle
