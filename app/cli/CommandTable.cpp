// The commands there are, and what of the application each is handed.

#include "app/cli/Handlers.h"
#include "app/wiring/Application.h"
#include "base/French.h"

#include <algorithm>

namespace vorle::cli {

namespace {

template <class T>
OnDemand<T> on(Application &app, T &(Application::*part)()) {
    return OnDemand<T>([&app, part]() -> T & { return (app.*part)(); });
}

InstalledAppsList apps(const Application &app) { return app.appLister(); }

} // namespace

TopicsToChange topicsToChange(Application &app) {
    return {[&app] { return app.topicsFile(); }, on(app, &Application::lock),
            OnDemand<TopicStore>([&app]() -> TopicStore & {
                app.widget(); // tells of what is going to change
                return app.store();
            }),
            on(app, &Application::preferences)};
}

const QList<Command> &commands() {
    static const QString json = QStringLiteral("json");
    static const QString demo = QStringLiteral("demo");
    static const QList<Command> all{
        {.name = QStringLiteral("fouille"),
         .synopsis = QStringLiteral("[--suite | --laisser] [--demo]"),
         .summary = French::tr("lance une fouille et montre ce qu’elle rapporte ; --suite reprend "
                               "celle que la limite de ton IA a coupée, --laisser l’abandonne"),
         .flags = {json, QStringLiteral("suite"), QStringLiteral("laisser"), demo},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return fouille(c, topicsToChange(app), on(app, &Application::engine), app.clock());
             }},
        {.name = QStringLiteral("consignes"),
         .synopsis = {},
         .summary = French::tr("montre ce qu’une fouille enverrait à l’IA, sans rien envoyer"),
         .flags = {json},
         .run =
             [](Context &c, Application &app) {
                 return consignes(c,
                                  {on(app, &Application::preferences), on(app, &Application::store),
                                   on(app, &Application::asker), app.clock(), apps(app)});
             }},
        {.name = QStringLiteral("sujets"),
         .synopsis = QStringLiteral("[ID | --statut S] [--demo]"),
         .summary = French::tr("liste tes sujets ; avec un identifiant, ouvre ce sujet et "
                               "montre de quoi sa note est faite"),
         .maxArguments = 1,
         .flags = {json, demo},
         .options = {QStringLiteral("statut")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return sujets(c, on(app, &Application::store), on(app, &Application::preferences),
                               on(app, &Application::provenance),
                               on(app, &Application::rediscoveries), app.clock());
             }},
        {.name = QStringLiteral("ajouter"),
         .synopsis = French::tr("URL|FICHIER [--titre T] [--note N] [--projet P] [--deposer] "
                                "[--demo]"),
         .summary = French::tr("ajoute un lien, le lit et le juge ; --deposer le laisse à l’app, "
                               "qui le prend quand elle est ouverte, comme un fichier de lien"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json, QStringLiteral("deposer"), demo},
         .options = {QStringLiteral("titre"), QStringLiteral("note"), QStringLiteral("projet")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return ajouter(c,
                                {topicsToChange(app), on(app, &Application::capture),
                                 [&app] { return app.sharedPath(QStringLiteral("Inbox")); }},
                                app.clock());
             }},
        {.name = QStringLiteral("capturer"),
         .synopsis = French::tr("[URL] [--titre T]"),
         .summary = French::tr("ouvre la capture rapide, sur ce lien si tu en donnes un ; rien "
                               "n’est ajouté sans toi"),
         .maxArguments = 1,
         .flags = {json},
         .options = {QStringLiteral("titre")},
         .throughApp = true,
         .run = [](Context &c,
                   Application &app) { return capturer(c, [&app] { return app.topicsFile(); }); }},
        {.name = QStringLiteral("trier"),
         .synopsis = French::tr("ID garder|plus-tard|pas-pour-moi|fait|retirer|retrier "
                                "[--avis meh|useful|gem]"),
         .summary = French::tr("prend une décision sur un sujet"),
         .minArguments = 2,
         .maxArguments = 2,
         .flags = {json},
         .options = {QStringLiteral("avis")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return trier(c, topicsToChange(app), on(app, &Application::capture), app.clock());
             }},
        {.name = QStringLiteral("corriger"),
         .synopsis = French::tr("ID NOTE [--raison MOT[,MOT]] [--texte T] | ID --retirer"),
         .summary = French::tr("donne ta note à un sujet, de 0 à 10, à la place de la mienne"),
         .minArguments = 1,
         .maxArguments = 2,
         .flags = {json, QStringLiteral("retirer")},
         .options = {QStringLiteral("raison"), QStringLiteral("texte")},
         .throughApp = true,
         .run = [](Context &c,
                   Application &app) { return corriger(c, topicsToChange(app), app.clock()); }},
        {.name = QStringLiteral("programme"),
         .synopsis = QStringLiteral("[--demo]"),
         .summary = French::tr("montre ce qui tient dans ta semaine, et ce qui attend"),
         .flags = {json, demo},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return programme(c, on(app, &Application::store),
                                  on(app, &Application::preferences), app.clock());
             }},
        {.name = QStringLiteral("bilan"),
         .synopsis = QStringLiteral("[--periode semaine|mois|annee] [--markdown] [--demo]"),
         .summary = French::tr("dit ce que ta veille a donné : trouvé, gardé, fait, le temps, "
                               "les sources, le coût"),
         .flags = {json, QStringLiteral("markdown"), demo},
         .options = {QStringLiteral("periode")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return bilan(c, on(app, &Application::store), on(app, &Application::preferences),
                              on(app, &Application::provenance), app.clock());
             }},
        {.name = QStringLiteral("calibrer"),
         .synopsis = QStringLiteral("[--passer | --reprendre]"),
         .summary = French::tr("un premier tri guidé, pour accorder mes notes aux tiennes"),
         .flags = {json, QStringLiteral("passer"), QStringLiteral("reprendre")},
         .run = [](Context &c,
                   Application &app) { return calibrer(c, topicsToChange(app), app.clock()); }},
        {.name = QStringLiteral("fiche"),
         .synopsis = QStringLiteral("ID [--refaire]"),
         .summary = French::tr("montre la fiche de lecture d’un sujet, et l’écrit s’il n’en a "
                               "pas encore"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json, QStringLiteral("refaire")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return fiche(c, topicsToChange(app), on(app, &Application::briefs),
                              app.resources(), app.clock());
             }},
        {.name = QStringLiteral("lire"),
         .synopsis = QStringLiteral("URL"),
         .summary = French::tr("montre ce que vorle lit d’une page"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json},
         .run = [](Context &c,
                   Application &app) { return lire(c, on(app, &Application::reader)); }},
        {.name = QStringLiteral("flux"),
         .synopsis = French::tr("ADRESSE [--direct]"),
         .summary = French::tr("cherche le flux d’un site et montre ce qu’il annonce"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json, QStringLiteral("direct")},
         .run =
             [](Context &c, Application &app) {
                 return flux(c, on(app, &Application::feeds), app.clock());
             }},
        {.name = QStringLiteral("decouverte"),
         .synopsis = French::tr("[DOSSIER]"),
         .summary = French::tr("montre les dépendances reconnues dans un dossier ; sans "
                               "dossier, tes apps et le métier proposé"),
         .maxArguments = 1,
         .flags = {json},
         .run =
             [](Context &c, Application &app) {
                 return decouverte(c, on(app, &Application::preferences), apps(app));
             }},
        {.name = QStringLiteral("reflexes"),
         .synopsis =
             QStringLiteral("[montrer ID | couper ID | remettre ID | repartir --oui] [--demo]"),
         .summary = French::tr("montre ce que j’ai appris de tes tris, ou les décisions "
                               "derrière un réflexe ; en coupe ou remet un, ou repart de zéro"),
         .maxArguments = 2,
         .flags = {json, QStringLiteral("oui"), demo},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return reflexes(c, on(app, &Application::store),
                                 on(app, &Application::preferences), app.clock());
             }},
        {.name = QStringLiteral("projet"),
         .synopsis = French::tr("[ajouter DOSSIER [--nom N] [--description D] | retirer NOM]"),
         .summary = French::tr("liste, ajoute ou retire les projets suivis"),
         .maxArguments = 2,
         .flags = {json},
         .options = {QStringLiteral("nom"), QStringLiteral("description")},
         .run = [](Context &c,
                   Application &app) { return projet(c, on(app, &Application::preferences)); }},
        {.name = QStringLiteral("reglages"),
         .synopsis = French::tr("[CLE [VALEUR_JSON]]"),
         .summary = French::tr("lit ou change un réglage"),
         .maxArguments = 2,
         .flags = {json},
         .run = [](Context &c,
                   Application &app) { return reglages(c, on(app, &Application::preferences)); }},
        {.name = QStringLiteral("exporter"),
         .synopsis = French::tr("DOSSIER [--format json|markdown]"),
         .summary = French::tr("écrit tous tes sujets dans un dossier : topics.json, que "
                               "« importer » relit, et des notes en Markdown"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json},
         .options = {QStringLiteral("format")},
         .run = [](Context &c,
                   Application &app) { return exporter(c, on(app, &Application::store)); }},
        {.name = QStringLiteral("importer"),
         .synopsis = French::tr("FICHIER|DOSSIER"),
         .summary = French::tr("ajoute les sujets d’un export ; ceux que tu as déjà restent "
                               "comme ils sont"),
         .minArguments = 1,
         .maxArguments = 1,
         .flags = {json},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return importer(c, topicsToChange(app), on(app, &Application::capture));
             }},
        {.name = QStringLiteral("reparer"),
         .synopsis = {},
         .summary = French::tr("reprend ce qui est lisible d’un fichier de sujets abîmé ; l’ancien "
                               "fichier est gardé à côté"),
         .flags = {json},
         .throughApp = true,
         .run = [](Context &c, Application &app) { return reparer(c, topicsToChange(app)); }},
        {.name = QStringLiteral("banc"),
         .synopsis = QStringLiteral("[--apercu]"),
         .summary = French::tr("fait juger le banc d’essai par ton IA et la compare aux notes "
                               "d’un expert, sans toucher à tes sujets"),
         .flags = {json, QStringLiteral("apercu")},
         .run =
             [](Context &c, Application &app) {
                 return banc(c, on(app, &Application::agent), on(app, &Application::asker),
                             app.resources());
             }},
        {.name = QStringLiteral("agents"),
         .synopsis = {},
         .summary = French::tr("dit quelles IA sont prêtes, déconnectées ou absentes"),
         .flags = {json},
         .run = [](Context &c,
                   Application &app) { return agents(c, on(app, &Application::agent)); }},
        {.name = QStringLiteral("installer"),
         .synopsis = QStringLiteral("[claude|codex]"),
         .summary = French::tr("installe ton IA, celle que tu as choisie ou celle que tu nommes ; "
                               "déjà là, elle est remplacée par la dernière"),
         .maxArguments = 1,
         .flags = {json},
         .run = [](Context &c,
                   Application &app) { return installer(c, on(app, &Application::agentSetup)); }},
        {.name = QStringLiteral("connecter"),
         .synopsis = QStringLiteral("[claude|codex]"),
         .summary = French::tr("te connecte à ton IA, avec ton abonnement Claude ou ton compte "
                               "ChatGPT, dans une page de ton navigateur"),
         .maxArguments = 1,
         .flags = {json},
         .run = [](Context &c,
                   Application &app) { return connecter(c, on(app, &Application::agentSetup)); }},
        {.name = QStringLiteral("integrer"),
         .synopsis = QStringLiteral("[--retirer]"),
         .summary = French::tr("sous Linux, ajoute « Ajouter à vorle » à ton gestionnaire de "
                               "fichiers et ouvre les adresses vorle: avec vorle"),
         .flags = {json, QStringLiteral("retirer")},
         .run = [](Context &c, Application &app) { return integrer(c, app.resources()); }},
        {.name = QStringLiteral("widget"),
         .synopsis = QStringLiteral("[--format json|waybar|polybar]"),
         .summary = French::tr("dit en une ligne où en est ta veille, pour une barre d’état ou "
                               "un widget"),
         .flags = {json},
         .options = {QStringLiteral("format")},
         .run =
             [](Context &c, Application &app) {
                 return widget(
                     c, [&app] { return app.widgetFile(); },
                     [&app] { return app.lock().isHeldElsewhere(); }, app.clock());
             }},
        {.name = QStringLiteral("mise-a-jour"),
         .synopsis = QStringLiteral("[--installer]"),
         .summary = French::tr("dit s’il y a une nouvelle version de vorle ; --installer "
                               "l’installe, et relance l’app si elle est ouverte"),
         .flags = {json, QStringLiteral("installer")},
         .throughApp = true,
         .run =
             [](Context &c, Application &app) {
                 return miseAJour(c, {app.updateConfig(), app.updatedProgram(),
                                      [&app] { return app.topicsFile(); },
                                      on(app, &Application::appLock)});
             }},
        {.name = QStringLiteral("diagnostic"),
         .synopsis = {},
         .summary = French::tr("dit versions, fichiers, IA et dernières erreurs, sans rien de tes "
                               "sujets : à joindre à un retour"),
         .flags = {json},
         .throughApp = true,
         .run = [](Context &c,
                   Application &app) { return diagnostic(c, app.diagnosticSources()); }},
    };
    return all;
}

const Command *commandNamed(const QString &name) {
    const auto &all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Command &command) { return command.name == name; });
    return found == all.end() ? nullptr : &*found;
}

} // namespace vorle::cli
