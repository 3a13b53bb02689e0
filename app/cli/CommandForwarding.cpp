#include "app/cli/CommandForwarding.h"

#include "app/wiring/AppSocket.h"
#include "base/French.h"

#include <QTimer>

#include <utility>

namespace vorle::cli {

namespace {

using Kind = AppMessage::Kind;

/// An app that is busy for longer than this is waited for as another command is.
constexpr int timeoutMs = 2000;

/// One command in the app's hands.
class ForwardedCommand {
public:
    ForwardedCommand(Context &context, QLocalSocket *socket)
        : m_context(context), m_app(socket, AppConnection::maxAnswerBytes) {
        QObject::connect(&m_app, &AppConnection::closed, &m_app, [this] { m_over.fire(); });
        QObject::connect(&m_app, &AppConnection::received, &m_app,
                         [this](const AppMessage &message) { take(message); });
        QTimer::singleShot(timeoutMs, &m_app, [this] {
            if (!m_asked) {
                m_app.close();
            }
        });
    }

    Task<> ended() {
        const auto stop = m_context.cancel.onCancel([this] {
            if (m_asked) {
                m_app.send({.kind = Kind::Cancel});
            } else {
                m_app.close();
            }
        });
        co_await m_over;
    }

    bool wasAsked() const { return m_asked; }
    bool isAppWaiting() const { return m_waits; }
    std::optional<ExitStatus> status() const { return m_status; }

private:
    void take(const AppMessage &message) {
        switch (message.kind) {
        case Kind::Hello:
            if (!m_asked) {
                m_asked = true;
                const Console::Terminal &terminal = m_context.console.terminal();
                m_app.send({.kind = Kind::Command,
                            .command = AppCommand{m_context.words, terminal.colours,
                                                  terminal.moving, terminal.width}});
            }
            break;
        case Kind::Out:
            m_context.console.relay(Console::Stream::Out, message.text.value_or(QByteArray()));
            break;
        case Kind::Err:
            m_context.console.relay(Console::Stream::Err, message.text.value_or(QByteArray()));
            break;
        case Kind::End:
            m_status = message.status == 0   ? ExitStatus::Done
                       : message.status == 2 ? ExitStatus::Usage
                                             : ExitStatus::Failed;
            m_over.fire();
            break;
        case Kind::Waiting: // it has no topics to run the command on yet
            m_waits = true;
            m_app.close();
            break;
        case Kind::Raise:
        case Kind::Command:
        case Kind::Cancel:
            m_app.close();
            break;
        }
    }

    Context &m_context;
    AppConnection m_app;
    OneShot m_over;
    bool m_asked = false;
    bool m_waits = false;
    std::optional<ExitStatus> m_status;
};

} // namespace

Task<std::optional<ExitStatus>> forwardCommand(Context &context, QString topicsFile) {
    const Forwarded forwarded = co_await askApp(context, std::move(topicsFile));
    co_return forwarded.status;
}

Task<Forwarded> askApp(Context &context, QString topicsFile) {
    auto *socket = new QLocalSocket;
    ForwardedCommand forwarded(context, socket);
    socket->connectToServer(appSocketName(topicsFile));
    co_await forwarded.ended();
    if (!forwarded.wasAsked()) {
        context.cancel.throwIfCancelled();
        co_return Forwarded{std::nullopt, forwarded.isAppWaiting()};
    }
    if (!forwarded.status()) {
        throw Failure(French::tr("vorle s’est fermé avant la fin de la commande."));
    }
    co_return Forwarded{forwarded.status()};
}

} // namespace vorle::cli
