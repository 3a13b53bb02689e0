#include "app/cli/Keyboard.h"

#include "base/Text.h"

#include <QSocketNotifier>

#include <array>
#include <termios.h>
#include <unistd.h>

namespace vorle::cli {

namespace {

constexpr char endOfInput = 0x04; // Ctrl-D, where the terminal hands keys over as they come
constexpr char escape = 0x1B;

/// Keys as they come, unseen, for as long as it lives; Ctrl-C stays what it is.
class KeyByKey {
public:
    KeyByKey() : m_changed(tcgetattr(STDIN_FILENO, &m_before) == 0) {
        if (m_changed) {
            termios mode = m_before;
            mode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
            mode.c_cc[VMIN] = 1;
            mode.c_cc[VTIME] = 0;
            tcsetattr(STDIN_FILENO, TCSADRAIN, &mode);
        }
    }
    ~KeyByKey() {
        if (m_changed) {
            tcsetattr(STDIN_FILENO, TCSADRAIN, &m_before);
        }
    }
    KeyByKey(const KeyByKey &) = delete;
    KeyByKey &operator=(const KeyByKey &) = delete;

private:
    termios m_before{};
    bool m_changed;
};

/// What was typed, at most a terminal's line; empty at the end of the input.
Task<QByteArray> typed(CancelToken cancel) {
    cancel.throwIfCancelled();
    const OneShot ready;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&notifier, ready] {
        notifier.setEnabled(false);
        ready.fire();
    });
    const auto registration = cancel.onCancel([ready] { ready.fire(); });
    co_await ready;
    cancel.throwIfCancelled();
    std::array<char, 4096> bytes{};
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    co_return count > 0 ? QByteArray(bytes.data(), static_cast<qsizetype>(count)) : QByteArray();
}

} // namespace

bool Keyboard::available() {
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

Task<std::optional<QChar>> Keyboard::key(CancelToken cancel) {
    const KeyByKey mode;
    while (true) {
        const QByteArray bytes = co_await typed(cancel);
        if (bytes.isEmpty() || bytes.front() == endOfInput) {
            co_return std::nullopt;
        }
        const QString text = QString::fromUtf8(bytes);
        if (bytes.front() != escape && !text.isEmpty()) {
            co_return text.front().toLower();
        }
    }
}

Task<std::optional<QString>> Keyboard::line(CancelToken cancel) {
    const QByteArray bytes = co_await typed(std::move(cancel));
    co_return bytes.isEmpty() ? std::nullopt
                              : std::optional(trimmed(QString::fromUtf8(bytes)).toString());
}

} // namespace vorle::cli
