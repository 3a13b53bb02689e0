#include "app/cli/Command.h"

#include "app/cli/CommandForwarding.h"
#include "app/cli/TopicArgument.h"
#include "app/transfer/TopicArchive.h"
#include "base/French.h"
#include "base/SystemErrorText.h"

#include <algorithm>
#include <system_error>

namespace vorle::cli {

const QList<Command> &commands() {
    static const QString json = QStringLiteral("json");
    static const QString demo = QStringLiteral("demo");
    static const QList<Command> all{
        {.name = QStringLiteral("fouille"),
         .synopsis = QStringLiteral("[--demo]"),
         .summary = French::tr("lance une fouille et montre ce qu’elle rapporte"),
         .flags = {json, demo},
         .throughApp = true,
         .run = fouille},
        {.name = QStringLiteral("consignes"),
         .synopsis = {},
         .summary = French::tr("montre ce qu’une fouille enverrait à l’IA, sans rien envoyer"),
         .flags = {json},
         .run = consignes},
        {.name = QStringLiteral("sujets"),
         .synopsis = QStringLiteral("[ID | --statut S] [--demo]"),
         .summary = French::tr("liste tes sujets ; avec un identifiant, ouvre ce sujet et "
                               "montre de quoi sa note est faite"),
         .most = 1,
         .flags = {json, demo},
         .options = {QStringLiteral("statut")},
         .throughApp = true,
         .run = sujets},
        {.name = QStringLiteral("trier"),
         .synopsis = French::tr("ID garder|plus-tard|pas-pour-moi|fait|retirer|retrier "
                                "[--avis meh|useful|gem]"),
         .summary = French::tr("prend une décision sur un sujet"),
         .fewest = 2,
         .most = 2,
         .flags = {json},
         .options = {QStringLiteral("avis")},
         .throughApp = true,
         .run = trier},
        {.name = QStringLiteral("corriger"),
         .synopsis = French::tr("ID NOTE [--raison MOT[,MOT]] [--texte T] | ID --retirer"),
         .summary = French::tr("donne ta note à un sujet, de 0 à 10, à la place de la mienne"),
         .fewest = 1,
         .most = 2,
         .flags = {json, QStringLiteral("retirer")},
         .options = {QStringLiteral("raison"), QStringLiteral("texte")},
         .throughApp = true,
         .run = corriger},
        {.name = QStringLiteral("programme"),
         .synopsis = QStringLiteral("[--demo]"),
         .summary = French::tr("montre ce qui tient dans ta semaine, et ce qui attend"),
         .flags = {json, demo},
         .throughApp = true,
         .run = programme},
        {.name = QStringLiteral("bilan"),
         .synopsis = QStringLiteral("[--periode semaine|mois|annee] [--markdown] [--demo]"),
         .summary = French::tr("dit ce que ta veille a donné : trouvé, gardé, fait, le temps, "
                               "les sources, le coût"),
         .flags = {json, QStringLiteral("markdown"), demo},
         .options = {QStringLiteral("periode")},
         .throughApp = true,
         .run = bilan},
        {.name = QStringLiteral("calibrer"),
         .synopsis = QStringLiteral("[--passer | --reprendre]"),
         .summary = French::tr("un premier tri guidé, pour accorder mes notes aux tiennes"),
         .flags = {json, QStringLiteral("passer"), QStringLiteral("reprendre")},
         .run = calibrer},
        {.name = QStringLiteral("fiche"),
         .synopsis = QStringLiteral("ID [--refaire]"),
         .summary = French::tr("montre la fiche de lecture d’un sujet, et l’écrit s’il n’en a "
                               "pas encore"),
         .fewest = 1,
         .most = 1,
         .flags = {json, QStringLiteral("refaire")},
         .throughApp = true,
         .run = fiche},
        {.name = QStringLiteral("lire"),
         .synopsis = QStringLiteral("URL"),
         .summary = French::tr("montre ce que vorle lit d’une page"),
         .fewest = 1,
         .most = 1,
         .flags = {json},
         .run = lire},
        {.name = QStringLiteral("flux"),
         .synopsis = French::tr("ADRESSE [--direct]"),
         .summary = French::tr("cherche le flux d’un site et montre ce qu’il annonce"),
         .fewest = 1,
         .most = 1,
         .flags = {json, QStringLiteral("direct")},
         .run = flux},
        {.name = QStringLiteral("decouverte"),
         .synopsis = French::tr("[DOSSIER]"),
         .summary = French::tr("montre les dépendances reconnues dans un dossier ; sans "
                               "dossier, tes apps et le métier proposé"),
         .most = 1,
         .flags = {json},
         .run = decouverte},
        {.name = QStringLiteral("reflexes"),
         .synopsis = QStringLiteral("[couper ID | remettre ID | repartir --oui] [--demo]"),
         .summary = French::tr("montre ce que j’ai appris de tes tris ; coupe ou remet un "
                               "réflexe, ou repart de zéro"),
         .most = 2,
         .flags = {json, QStringLiteral("oui"), demo},
         .throughApp = true,
         .run = reflexes},
        {.name = QStringLiteral("projet"),
         .synopsis = French::tr("[ajouter DOSSIER [--nom N] [--description D] | retirer NOM]"),
         .summary = French::tr("liste, ajoute ou retire les projets suivis"),
         .most = 2,
         .flags = {json},
         .options = {QStringLiteral("nom"), QStringLiteral("description")},
         .run = projet},
        {.name = QStringLiteral("reglages"),
         .synopsis = French::tr("[CLE [VALEUR_JSON]]"),
         .summary = French::tr("lit ou change un réglage"),
         .most = 2,
         .flags = {json},
         .run = reglages},
        {.name = QStringLiteral("exporter"),
         .synopsis = French::tr("DOSSIER [--format json|markdown]"),
         .summary = French::tr("écrit tous tes sujets dans un dossier : topics.json, que "
                               "« importer » relit, et des notes en Markdown"),
         .fewest = 1,
         .most = 1,
         .flags = {json},
         .options = {QStringLiteral("format")},
         .run = exporter},
        {.name = QStringLiteral("importer"),
         .synopsis = QStringLiteral("FICHIER"),
         .summary = French::tr("ajoute les sujets d’un export ; ceux que tu as déjà restent "
                               "comme ils sont"),
         .fewest = 1,
         .most = 1,
         .flags = {json},
         .throughApp = true,
         .run = importer},
        {.name = QStringLiteral("reparer"),
         .synopsis = {},
         .summary = French::tr("reprend ce qui est lisible d’un fichier de sujets abîmé ; l’ancien "
                               "fichier est gardé à côté"),
         .flags = {json},
         .throughApp = true,
         .run = reparer},
        {.name = QStringLiteral("banc"),
         .synopsis = QStringLiteral("[--apercu]"),
         .summary = French::tr("fait juger le banc d’essai par ton IA et la compare aux notes "
                               "d’un expert, sans toucher à tes sujets"),
         .flags = {json, QStringLiteral("apercu")},
         .run = banc},
        {.name = QStringLiteral("agents"),
         .synopsis = {},
         .summary = French::tr("dit quelles IA sont prêtes, déconnectées ou absentes"),
         .flags = {json},
         .run = agents},
    };
    return all;
}

const Command *commandNamed(const QString &name) {
    const auto &all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Command &command) { return command.name == name; });
    return found == all.end() ? nullptr : &*found;
}

namespace {

/// What is to be told whatever the command was: how the files were found, and settings that did not
/// reach the disk.
ExitStatus concluded(Context &context, ExitStatus status) {
    const auto problem = context.app.settingsProblem();
    for (const QString &notice : context.app.notices()) {
        context.console.say(notice);
    }
    if (!problem || status != ExitStatus::Done) { // what failed has said why
        return status;
    }
    context.console.say(*problem);
    return ExitStatus::Failed;
}

Task<ExitStatus> ran(const Command &command, Context &context) {
    QString text;
    try {
        // A demonstration's topics are made anew where they are opened: not under whoever shows
        // them already.
        if (context.arguments.flags.contains(QStringLiteral("demo")) &&
            !context.app.lock().isHeld()) {
            co_await holdTopics(context);
        }
        co_return co_await command.run(context);
    } catch (const CommandForwarded &handed) {
        co_return handed.status();
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

Task<ExitStatus> runCommand(const Command &command, Context &context) {
    const ExitStatus status = co_await ran(command, context);
    co_return concluded(context, status);
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
    if (arguments.positional.size() < command.fewest ||
        arguments.positional.size() > command.most) {
        throw Failure(
            French::tr("Usage : vorle %1 %2").arg(command.name, command.synopsis).trimmed(),
            ExitStatus::Usage);
    }
    return arguments;
}

} // namespace vorle::cli
