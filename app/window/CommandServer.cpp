#include "app/window/CommandServer.h"

#include "app/cli/Command.h"
#include "base/French.h"

#include <algorithm>

namespace vorle {

namespace {

using cli::ExitStatus;

/// The caller's terminal; nothing is told to one that went.
cli::Console consoleOf(AppConnection &caller, const AppCommand &asked) {
    const QPointer<AppConnection> connection(&caller);
    return {{.colours = asked.colours, .moving = asked.moving, .width = asked.width},
            [connection](cli::Console::Stream stream, const QByteArray &bytes) {
                if (connection) {
                    const bool out = stream == cli::Console::Stream::Out;
                    connection->send({.kind = out ? AppMessage::Kind::Out : AppMessage::Kind::Err,
                                      .text = bytes});
                }
            }};
}

void end(AppConnection &caller, ExitStatus status) {
    caller.send({.kind = AppMessage::Kind::End, .status = static_cast<int>(status)});
    caller.finish();
}

/// @throws cli::Failure
const cli::Command &commandFor(const AppCommand &asked) {
    const cli::Command *command = cli::commandNamed(asked.words.value(0));
    if (command == nullptr) {
        throw cli::Failure(French::tr("Commande inconnue\u00A0: %1").arg(asked.words.value(0)),
                           ExitStatus::Usage);
    }
    if (!command->throughApp) {
        throw cli::Failure(French::tr("vorle est ouvert, et cette commande veut tes sujets "
                                      "pour elle seule\u00A0: quitte-le d’abord."));
    }
    return *command;
}

} // namespace

/// One command under way.
struct CommandServer::RunningCommand {
    RunningCommand(AppConnection &connection, const AppCommand &asked,
                   const cli::Command &asCommand)
        : caller(&connection)
        , row(asCommand)
        , console(consoleOf(connection, asked))
        , context{console, cli::parseArguments(asCommand, asked.words.sliced(1)), cancel.token(),
                  asked.words, cli::Host::App} {}

    QPointer<AppConnection> caller;
    const cli::Command &row;
    CancelSource cancel;
    cli::Console console;
    cli::Context context;
};

CommandServer::CommandServer(Runner runner, QObject *parent)
    : QObject(parent), m_runner(std::move(runner)) {}

CommandServer::~CommandServer() = default;

void CommandServer::serve(AppConnection &caller, const AppCommand &asked) {
    if (m_closed) {
        caller.close();
        return;
    }
    std::shared_ptr<RunningCommand> command;
    try {
        command = std::make_shared<RunningCommand>(caller, asked, commandFor(asked));
    } catch (const cli::Failure &failure) {
        consoleOf(caller, asked).say(failure.text());
        end(caller, failure.status());
        return;
    }
    connect(&caller, &AppConnection::closed, &caller, [command] { command->cancel.cancel(); });
    connect(&caller, &AppConnection::received, &caller, [command](const AppMessage &message) {
        if (message.kind == AppMessage::Kind::Cancel) {
            command->cancel.cancel();
        }
    });
    m_underWay.push_back(command);
    m_running.add(
        logged(run(this, m_runner, command), QStringLiteral("a command from a terminal")));
}

Task<> CommandServer::run(QPointer<CommandServer> self, Runner runner,
                          std::shared_ptr<RunningCommand> command) {
    const ExitStatus status = co_await runner(command->row, command->context);
    if (command->caller) {
        end(*command->caller, status);
    }
    if (self) {
        self->m_underWay.remove(command);
    }
}

bool CommandServer::isRunning(const cli::Context *butFor) const {
    return std::ranges::any_of(m_underWay, [butFor](const std::shared_ptr<RunningCommand> &each) {
        return &each->context != butFor;
    });
}

Task<> CommandServer::closed() {
    m_closed = true;
    const auto underWay = m_underWay; // a cancelled one may end at once
    for (const auto &command : underWay) {
        command->cancel.cancel();
    }
    co_await m_running.join();
}

} // namespace vorle
