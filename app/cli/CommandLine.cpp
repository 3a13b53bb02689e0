#include "app/cli/CommandLine.h"

#include "app/cli/Command.h"
#include "app/completion/Completions.h"
#include "app/demo/Demonstration.h"
#include "app/wiring/Interrupts.h"
#include "app/wiring/Startup.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

#include <QCoreApplication>

#include <system_error>

namespace vorle::cli {

namespace {

QString helpText() {
    QStringList lines{French::tr("vorle, ta veille technique."), QString(),
                      French::tr("Usage : vorle COMMANDE [OPTIONS]"),
                      French::tr("Sans commande, la fenêtre s’ouvre ; avec --demo, sur des "
                                 "sujets d’exemple."),
                      QString()};
    for (const Command &command : commands()) {
        const QString call = (command.name + u' ' + command.synopsis).trimmed();
        lines += QStringLiteral("  ") + call;
        lines += QStringLiteral("      ") + command.summary;
    }
    lines += QString();
    lines += French::tr("Avec --json, le résultat est du JSON sur la sortie standard. La "
                        "progression et les messages vont sur la sortie d’erreur.");
    return lines.join(u'\n');
}

Task<> runThenQuit(const Command *command, Context &context, Application &app) {
    const ExitStatus status = co_await runCommand(*command, context, app);
    // A command that never waited ends before the event loop starts: the order to leave must wait
    // for it.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [status] { QCoreApplication::exit(static_cast<int>(status)); }, Qt::QueuedConnection);
}

/// What a command asks of the system.
struct Adapters {
    const InstalledApps &installedApps;
    const SharedContainer *container;
    const SignatureCheck *signatures;
    const UpdateConfig &updates;
};

int runHere(const Command &command, const QStringList &words, const Adapters &adapters) {
    const Arguments arguments = parseArguments(command, words.sliced(1));
    Console console;
    std::unique_ptr<Demonstration> demonstration;
    if (arguments.flags.contains(QStringLiteral("demo"))) {
        try {
            demonstration = enterDemonstration();
        } catch (const std::exception &error) {
            console.say(QString::fromUtf8(error.what()));
            return static_cast<int>(ExitStatus::Failed);
        }
    }
    const Interrupts interrupts;
    Application::Setup setup =
        setupFor(demonstration.get(), adapters.installedApps, adapters.container, adapters.updates);
    setup.signatures = adapters.signatures;
    Application app(std::move(setup));
    if (demonstration) {
        demonstration->populate(app.preferences());
    }
    Context context{console, arguments, interrupts.token(), words};
    const Task<> running = runThenQuit(&command, context, app);
    return QCoreApplication::exec();
}

/// What the words ask for, but for whether its result could be written.
int run(Console &console, const QStringList &words, const Adapters &adapters) {
    if (words.isEmpty() || words.first() == u"--help" || words.first() == u"-h" ||
        words.first() == u"aide") {
        console.print(helpText());
        return static_cast<int>(ExitStatus::Done);
    }
    if (words.first() == u"--version") {
        console.print(QStringLiteral("vorle ") + QCoreApplication::applicationVersion());
        return static_cast<int>(ExitStatus::Done);
    }
    if (words.first() == u"completion") {
        QList<CompletedCommand> completed;
        for (const Command &command : commands()) {
            completed +=
                {command.name, command.synopsis, command.summary, command.flags, command.options};
        }
        const auto script = completionScript(words.value(1), completed);
        script ? console.print(script->chopped(1).toUtf8()) // for a program: as it is
               : console.say(
                     French::tr("Usage : vorle completion %1").arg(completedShells().join(u'|')));
        return static_cast<int>(script ? ExitStatus::Done : ExitStatus::Usage);
    }
    const Command *command = commandNamed(words.first());
    if (command == nullptr) {
        console.say(French::tr("Commande inconnue : %1\n\n").arg(words.first()) + helpText());
        return static_cast<int>(ExitStatus::Usage);
    }
    if (words.contains(QStringLiteral("--help"))) {
        console.print(
            French::tr("Usage : vorle %1 %2").arg(command->name, command->synopsis).trimmed() +
            QStringLiteral("\n\n") + command->summary);
        return static_cast<int>(ExitStatus::Done);
    }
    try {
        return runHere(*command, words, adapters);
    } catch (const Failure &failure) {
        console.say(failure.text());
        return static_cast<int>(failure.status());
    } catch (const std::system_error &error) {
        console.say(systemRefusalText(error));
        return static_cast<int>(ExitStatus::Failed);
    }
}

} // namespace

int runCommandLine(const QStringList &words, const InstalledApps &installedApps,
                   const SharedContainer *container, const SignatureCheck *signatures,
                   const UpdateConfig &updates) {
    Console console;
    const int status = run(console, words, {installedApps, container, signatures, updates});
    if (!Console::wroteAll() && status == static_cast<int>(ExitStatus::Done)) {
        console.say(French::tr("Le résultat n’a pas pu être écrit en entier."));
        return static_cast<int>(ExitStatus::Failed);
    }
    return status;
}

} // namespace vorle::cli
