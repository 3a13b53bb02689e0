#include "app/console/Keyboard.h"

#include "base/Text.h"

#include <QSocketNotifier>

#include <array>
#include <poll.h>
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

/// Ends when something was typed, or the input ended. @throws Cancelled
Task<> somethingTyped(CancelToken cancel) {
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
}

/// One byte; nothing at the end of the input. Waits when there is none.
std::optional<char> nextByte() {
    char byte = 0;
    return read(STDIN_FILENO, &byte, 1) == 1 ? std::optional(byte) : std::nullopt;
}

bool moreTyped() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, 0) == 1 && (input.revents & POLLIN) != 0;
}

/// Takes the rest of what a special key sends after the escape: "[A", "[3~", "OP".
void skipSpecialKey() {
    const auto kind = moreTyped() ? nextByte() : std::nullopt;
    if (kind == 'O' && moreTyped()) {
        nextByte();
    }
    bool ended = kind != '[';
    while (!ended && moreTyped()) {
        const auto byte = nextByte();
        ended = !byte || (*byte >= '@' && *byte <= '~');
    }
}

} // namespace

bool Keyboard::available() {
    return isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
}

Task<std::optional<QChar>> Keyboard::key(CancelToken cancel) {
    const KeyByKey mode;
    while (true) {
        co_await somethingTyped(cancel);
        // One at a time: what is typed ahead waits for the next question.
        const auto byte = nextByte();
        if (!byte || *byte == endOfInput) {
            co_return std::nullopt;
        }
        if (*byte == escape) {
            skipSpecialKey();
        } else if (*byte > 0) {
            co_return QChar::fromLatin1(*byte).toLower();
        }
    }
}

Task<std::optional<QString>> Keyboard::line(CancelToken cancel) {
    co_await somethingTyped(std::move(cancel));
    std::array<char, 4096> bytes{}; // a terminal's longest line
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    co_return count > 0
        ? std::optional(
              trimmed(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(count))).toString())
        : std::nullopt;
}

} // namespace vorle::cli
