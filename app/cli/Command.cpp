#include "app/cli/Command.h"

#include "app/cli/TopicArgument.h"
#include "app/transfer/TopicArchive.h"
#include "app/wiring/Application.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

#include <algorithm>
#include <system_error>

namespace vorle::cli {

namespace {

/// What is to be told whatever the command was: how the files were found, and settings that did not
/// reach the disk.
ExitStatus concluded(Context &context, Application &app, ExitStatus status) {
    const auto problem = app.settingsProblem();
    for (const QString &notice : app.notices()) {
        context.console.say(notice);
    }
    if (!problem || status != ExitStatus::Done) { // what failed has said why
        return status;
    }
    context.console.say(*problem);
    return ExitStatus::Failed;
}

Task<ExitStatus> ran(const Command &command, Context &context, Application &app) {
    QString text;
    try {
        // A demonstration's topics are made anew where they are opened: not under whoever shows
        // them already.
        if (context.arguments.flags.contains(QStringLiteral("demo")) && !app.lock().isHeld()) {
            if (const auto status = co_await holdTopics(context, topicsToChange(app))) {
                co_return *status;
            }
        }
        co_return co_await command.run(context, app);
    } catch (const Failure &failure) {
        context.console.say(failure.text());
        co_return failure.status();
    } catch (const Cancelled &) {
        text = French::tr("Arrêté.");
    } catch (const AgentError &error) {
        text = error.text();
    } catch (const RunRefused &refused) {
        text = refused.text();
    } catch (const TransferRefused &refused) {
        text = refused.text();
    } catch (const std::system_error &error) {
        text = systemRefusalText(error);
    } catch (const std::exception &error) {
        text = French::tr("Erreur inattendue : %1").arg(QString::fromUtf8(error.what()));
    }
    context.console.say(text);
    co_return ExitStatus::Failed;
}

} // namespace

Task<ExitStatus> runCommand(const Command &command, Context &context, Application &app) {
    const ExitStatus status = co_await ran(command, context, app);
    if (context.host == Host::OwnProcess) {
        co_await app.published();
    }
    co_return concluded(context, app, status);
}

Arguments parseArguments(const Command &command, const QStringList &words) {
    Arguments arguments;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString &word = words[i];
        if (optionsEnded || !word.startsWith(u"--")) {
            arguments.positional += word;
            continue;
        }
        if (word == u"--") {
            optionsEnded = true;
            continue;
        }
        const qsizetype equals = word.indexOf(u'=');
        const QString name = word.sliced(2, (equals < 0 ? word.size() : equals) - 2);
        if (command.options.contains(name)) {
            if (equals < 0 && i + 1 == words.size()) {
                throw Failure(French::tr("L’option --%1 attend une valeur.").arg(name),
                              ExitStatus::Usage);
            }
            arguments.options[name] = equals < 0 ? words[++i] : word.sliced(equals + 1);
        } else if (command.flags.contains(name) && equals < 0) {
            arguments.flags.insert(name);
        } else {
            throw Failure(French::tr("Option inconnue pour « %1 » : %2").arg(command.name, word),
                          ExitStatus::Usage);
        }
    }
    if (arguments.positional.size() < command.minArguments ||
        arguments.positional.size() > command.maxArguments) {
        throw Failure(
            French::tr("Usage : vorle %1 %2").arg(command.name, command.synopsis).trimmed(),
            ExitStatus::Usage);
    }
    return arguments;
}

} // namespace vorle::cli
