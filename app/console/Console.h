#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace vorle::cli {

/// The terminal: results on standard output, everything else on standard error. Colours and the
/// moving progress line only where a terminal shows them and NO_COLOR is not set.
class Console {
public:
    enum class Stream { Out, Err };
    /// What the text is shown on.
    struct Terminal {
        bool colours = false;
        bool moving = false; ///< standard error is a terminal: a line can be taken back
        int width = widest;
    };
    /// Columns; wider lines are hard to read.
    static constexpr int widest = 100;
    static constexpr int narrowest = 21;

    /// The terminal the program was started in.
    Console();
    /// Another one, whose bytes `sink` takes.
    Console(Terminal terminal, std::function<void(Stream, const QByteArray &)> sink);

    /// Whether who started the program sees what it complains of: a terminal, or another program. A
    /// desktop's key or menu shows nobody anything.
    static bool isHeard();
    /// Whether everything this process has put on its standard output got there. Looks once more
    /// at what may still be under way.
    static bool wroteAll();

    const Terminal &terminal() const { return m_terminal; }
    /// What another console on this terminal made, as it is.
    void relay(Stream stream, const QByteArray &bytes) const { m_sink(stream, bytes); }

    /// One line (or several) of results.
    void print(const QString &text) const;
    /// JSON as it is.
    void print(const QByteArray &json) const;
    /// A word to the person, above the progress line if there is one.
    void say(const QString &text);

    /// Shows `status` with a bar filled to `done` of `total` and `details` behind it. Where
    /// standard error is no terminal, one plain line each time the status changes.
    void progress(const QString &status, int done, int total, const QString &details);
    /// Takes the progress line away.
    void endProgress();

    QString bold(const QString &text) const { return styled(text, "1"); }
    /// As it is, but for what could command the terminal: for every text of foreign origin.
    QString plain(const QString &text) const { return styled(text, nullptr); }
    QString faint(const QString &text) const { return styled(text, "2"); }
    QString accent(const QString &text) const { return styled(text, "1;38;5;166"); }

    /// `text`, its blanks as French sets them (see frenchSpacing), broken at blanks so that no line
    /// passes the terminal's width (100 columns at most), every line behind `margin` blanks.
    QString wrapped(const QString &text, int margin) const;

private:
    QString styled(const QString &text, const char *code) const;

    Terminal m_terminal;
    std::function<void(Stream, const QByteArray &)> m_sink;
    bool m_lineShown = false;
    QString m_lastStatus;
};

} // namespace vorle::cli
