#pragma once

#include <QString>
#include <QStringList>

namespace vorle::cli {

/// The terminal: results on standard output, everything else on standard error. Colours and the
/// moving progress line only where a terminal shows them and NO_COLOR is not set.
class Console {
public:
    Console();

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

    /// `text` broken at blanks so that no line passes the terminal's width (100 columns at most),
    /// every line behind `margin` blanks.
    QString wrapped(const QString &text, int margin) const;

private:
    QString styled(const QString &text, const char *code) const;

    bool m_colours;
    bool m_moving; ///< standard error is a terminal
    int m_width;
    bool m_lineShown = false;
    QString m_lastStatus;
};

} // namespace vorle::cli
