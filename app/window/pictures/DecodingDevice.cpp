#include "app/window/pictures/DecodingDevice.h"

#include <algorithm>
#include <cstring>

#include <ctime>

namespace vorle {

namespace {

/// What this thread has worked so far: a machine that is busy elsewhere makes no picture slow.
std::chrono::nanoseconds work() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace

DecodingDevice::DecodingDevice(QByteArray bytes, std::function<bool()> stopped)
    : m_bytes(std::move(bytes)), m_stopped(std::move(stopped)), m_began(work()) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 DecodingDevice::readData(char *data, qint64 maxSize) {
    m_givenUp = m_givenUp || (m_stopped && m_stopped()) || work() - m_began > mostWork;
    if (m_givenUp) {
        return -1;
    }
    const qint64 count = std::clamp<qint64>(m_bytes.size() - m_at, 0, maxSize);
    std::memcpy(data, m_bytes.constData() + m_at, static_cast<std::size_t>(count));
    m_at += count;
    return count;
}

bool DecodingDevice::seek(qint64 place) {
    m_at = std::clamp<qint64>(place, 0, m_bytes.size());
    return QIODevice::seek(place);
}

} // namespace vorle
