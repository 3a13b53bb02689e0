#include "app/console/Console.h"

#include "base/FrenchSpacing.h"
#include "base/Text.h"

#include <QByteArray>

#include <cstdio>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vorle::cli {

namespace {

constexpr int barCells = 24;

int terminalWidth() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= Console::narrowest) {
        return size.ws_col;
    }
    return Console::widest;
}

/// Text without what could command the terminal or turn its lines around: control characters (save
/// line breaks and tabs) and marks of direction. Titles, pages and answers come from strangers.
QString harmless(const QString &text) {
    QString out = withoutHidden(text);
    out.removeIf([](QChar c) {
        const char16_t code = c.unicode();
        return (code < 0x20 && code != u'\n' && code != u'\t') || (code >= 0x7F && code < 0xA0);
    });
    return out;
}

void write(FILE *stream, const QByteArray &bytes) {
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

/// On a terminal a log line first takes the progress line away; the next progress draws it again.
void logAboveProgress(QtMsgType, const QMessageLogContext &, const QString &line) {
    write(stderr, "\r\033[K" + line.toUtf8() + '\n');
}

} // namespace

Console::Console()
    : Console({.colours = isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR"),
               .moving = isatty(STDERR_FILENO) != 0,
               .width = terminalWidth()},
              [](Stream stream, const QByteArray &bytes) {
                  write(stream == Stream::Out ? stdout : stderr, bytes);
              }) {
    if (m_terminal.moving) {
        qInstallMessageHandler(logAboveProgress);
    }
}

Console::Console(Terminal terminal, std::function<void(Stream, const QByteArray &)> sink)
    : m_terminal(terminal), m_sink(std::move(sink)) {
    m_terminal.width = std::clamp(m_terminal.width, narrowest, widest);
}

bool Console::isHeard() {
    struct stat state{};
    return ::isatty(STDERR_FILENO) == 1 ||
           (::fstat(STDERR_FILENO, &state) == 0 && S_ISFIFO(state.st_mode));
}

bool Console::wroteAll() { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }

void Console::print(const QString &text) const { m_sink(Stream::Out, text.toUtf8() + '\n'); }

void Console::print(const QByteArray &json) const { m_sink(Stream::Out, json + '\n'); }

void Console::say(const QString &text) {
    endProgress();
    m_sink(Stream::Err, harmless(text).toUtf8() + '\n');
}

void Console::progress(const QString &status, int done, int total, const QString &details) {
    if (!m_terminal.moving) {
        if (status != m_lastStatus && !status.isEmpty()) {
            m_sink(Stream::Err, status.toUtf8() + '\n');
        }
        m_lastStatus = status;
        return;
    }
    const int filled = total > 0 ? barCells * std::clamp(done, 0, total) / total : 0;
    const QString bar = QString(filled, u'█') + QString(barCells - filled, u'░');
    const QString line = bar + QStringLiteral("  ") + status + QStringLiteral("  ") + details;
    // A line that wraps could not be taken back.
    m_sink(Stream::Err, "\r\033[K" + firstCharacters(line, m_terminal.width - 1).toUtf8());
    m_lineShown = true;
}

void Console::endProgress() {
    if (m_lineShown) {
        m_sink(Stream::Err, "\r\033[K");
        m_lineShown = false;
    }
}

QString Console::wrapped(const QString &text, int margin) const {
    const QString indent(margin, u' ');
    const qsizetype room = std::max(20, m_terminal.width - margin);
    QStringList lines;
    QString line;
    for (const QString &word : frenchSpacing(harmless(text)).split(u' ', Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && characterCount(line) + 1 + characterCount(word) > room) {
            lines += indent + line;
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    lines += indent + line;
    return lines.join(u'\n');
}

QString Console::styled(const QString &text, const char *code) const {
    const QString shown = harmless(text);
    return m_terminal.colours && code != nullptr
               ? QStringLiteral("\033[") + QLatin1StringView(code) + u'm' + shown +
                     QStringLiteral("\033[0m")
               : shown;
}

} // namespace vorle::cli
