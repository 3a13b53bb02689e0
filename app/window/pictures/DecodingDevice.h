#pragma once

#include <QByteArray>
#include <QIODevice>

#include <chrono>
#include <functional>

namespace vorle {

/// The bytes of a picture as its decoder reads them: a few thousand at a time, until somebody says
/// stop, or the decoder has worked for longer than any picture takes. It reads no more then, as if
/// the file ended there. For one thread.
class DecodingDevice final : public QIODevice {
    Q_OBJECT
public:
    /// @param stopped  asked at each reading; may be empty
    DecodingDevice(QByteArray bytes, std::function<bool()> stopped);

    /// Whether less was read than is there.
    bool isGivenUp() const { return m_givenUp; }

    static constexpr std::chrono::seconds mostWork{3}; ///< of this thread's own time

    qint64 size() const override { return m_bytes.size(); }
    bool seek(qint64 place) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_at = 0;
    std::function<bool()> m_stopped;
    std::chrono::nanoseconds m_began;
    bool m_givenUp = false;
};

} // namespace vorle
