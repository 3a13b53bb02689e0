#include "app/window/CommandDoor.h"

#include "app/cli/Command.h"
#include "base/French.h"

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
struct CommandDoor::Errand {
    Errand(Application &app, AppConnection &connection, const AppCommand &asked,
           const cli::Command &asCommand)
        : caller(&connection)
        , command(asCommand)
        , console(consoleOf(connection, asked))
        , context{app,
                  console,
                  cli::parseArguments(asCommand, asked.words.sliced(1)),
                  cancel.token(),
                  asked.words,
                  cli::Host::App} {}

    QPointer<AppConnection> caller;
    const cli::Command &command;
    CancelSource cancel;
    cli::Console console;
    cli::Context context;
};

CommandDoor::CommandDoor(Application &app, QObject *parent) : QObject(parent), m_app(app) {}

CommandDoor::~CommandDoor() = default;

void CommandDoor::serve(AppConnection &caller, const AppCommand &asked) {
    if (m_closed) {
        caller.close();
        return;
    }
    std::shared_ptr<Errand> errand;
    try {
        errand = std::make_shared<Errand>(m_app, caller, asked, commandFor(asked));
    } catch (const cli::Failure &failure) {
        consoleOf(caller, asked).say(failure.text());
        end(caller, failure.status());
        return;
    }
    connect(&caller, &AppConnection::closed, &caller, [errand] { errand->cancel.cancel(); });
    connect(&caller, &AppConnection::received, &caller, [errand](const AppMessage &message) {
        if (message.kind == AppMessage::Kind::Cancel) {
            errand->cancel.cancel();
        }
    });
    m_underWay.push_back(errand);
    m_running.add(logged(run(this, errand), QStringLiteral("a command from a terminal")));
}

Task<> CommandDoor::run(QPointer<CommandDoor> self, std::shared_ptr<Errand> errand) {
    const ExitStatus status = co_await cli::runCommand(errand->command, errand->context);
    if (errand->caller) {
        end(*errand->caller, status);
    }
    if (self) {
        self->m_underWay.remove(errand);
    }
}

Task<> CommandDoor::closed() {
    m_closed = true;
    const auto underWay = m_underWay; // a cancelled one may end at once
    for (const auto &errand : underWay) {
        errand->cancel.cancel();
    }
    co_await m_running.join();
}

} // namespace vorle
