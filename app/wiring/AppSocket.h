#pragma once

#include "base/Json.h"

#include <QLocalSocket>
#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <tuple>

namespace vorle {

/// What a command line asks the running app to do in its place, and the terminal it is shown on.
struct AppCommand {
    QList<QString> words; ///< as typed, the command's name first
    bool colours = false;
    bool moving = false; ///< lines may be taken back
    int width = 0;       ///< columns

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("words", &AppCommand::words), json::field("colours", &AppCommand::colours),
            json::field("moving", &AppCommand::moving), json::field("width", &AppCommand::width));
    }
};

/// One message over the running app's local socket. The app greets; the caller, once greeted and
/// not before, asks for one thing; the app answers with any number of `Out` and `Err` and one
/// `End`, then closes. A caller that closes first has cancelled. An app that still waits for its
/// topics greets with `Waiting`, and can only be raised.
struct AppMessage {
    enum class Kind {
        Hello,
        Waiting,
        Raise,   ///< show yourself
        Command, ///< with `command`
        Cancel,  ///< stop the command, keeping what it has
        Out,     ///< `text` for standard output
        Err,     ///< `text` for standard error
        End      ///< with `status`, the caller's exit status
    };

    Kind kind = Kind::Hello;
    std::optional<AppCommand> command = {};
    std::optional<QByteArray> text = {};
    std::optional<int> status = {};

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("kind", &AppMessage::kind), json::field("command", &AppMessage::command),
            json::field("text", &AppMessage::text), json::field("status", &AppMessage::status));
    }
};

constexpr std::array<std::string_view, 8> rawStrings(AppMessage::Kind) {
    return {"hello", "waiting", "raise", "command", "cancel", "out", "err", "end"};
}

/// Where the app that runs on these topics listens: in a folder that only the user can enter.
/// Several names of one file give one socket, as they give one lock.
/// @throws std::system_error for a loop of links
QString appSocketName(const QString &topicsFile);

/// The same below the first of these folders where the path is one that a socket may have, on any
/// system; below the last where none is. Every process has to be given the same folders.
QString appSocketName(const QString &topicsFile, const QStringList &folders);

/// One end of a connection to the running app: each message is JSON behind its length in four
/// bytes, the highest first. What is no such message ends the connection. Main thread; slots of its
/// signals delete it with deleteLater() alone.
class AppConnection final : public QObject {
    Q_OBJECT
public:
    static constexpr qsizetype maxRequestBytes = 1 << 20; ///< bytes of a message to the app
    static constexpr qsizetype maxAnswerBytes = 64 << 20;

    /// Takes over the socket, connected or about to be. A message of more than `longest` bytes is
    /// none.
    AppConnection(QLocalSocket *socket, qsizetype longest, QObject *parent = nullptr);

    /// Nothing happens once the connection is closed. One whose other end reads too little is
    /// closed rather than kept in memory.
    void send(const AppMessage &message);
    /// Sends what is left, then closes.
    void finish();
    /// Closes at once.
    void close();

Q_SIGNALS:
    void received(const vorle::AppMessage &message);
    /// Once, whoever closed.
    void closed();

private:
    void read();

    QLocalSocket *m_socket;
    qsizetype m_longest;
    QByteArray m_bytes; ///< come, and not yet a whole message
    bool m_open = true;
};

} // namespace vorle
