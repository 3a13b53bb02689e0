#include "app/labels/AgentLabels.h"

#include "base/French.h"

#include <algorithm>

namespace vorle {

QString readinessLabel(AgentReadiness readiness) {
    switch (readiness) {
    case AgentReadiness::Ready:
        return French::tr("prêt");
    case AgentReadiness::SignedOut:
        return French::tr("déconnecté");
    case AgentReadiness::Missing:
        return French::tr("introuvable");
    }
    return {};
}

QString installOfferText(AgentKind kind) {
    return kind == AgentKind::Claude ? French::tr("Avec un abonnement Claude, Pro ou plus")
                                     : French::tr("Avec un compte ChatGPT, même gratuit");
}

QString signInConsentText(AgentKind kind) {
    return kind == AgentKind::Claude
               ? French::tr("Tu autorises vorle à utiliser ton abonnement Claude, Pro ou plus")
               : French::tr("Tu autorises vorle à utiliser ton compte ChatGPT, même gratuit");
}

QString agentReadyText(AgentKind kind) {
    return kind == AgentKind::Claude ? French::tr("Je fouillerai avec ton abonnement Claude.")
                                     : French::tr("Je fouillerai avec ton compte ChatGPT.");
}

QString quotaText() {
    return French::tr("Chaque fouille compte dans ton quota, comme une conversation. Par défaut, "
                      "une par semaine, le lundi.");
}

QString installingText(int percent) {
    const QString start = French::tr("Installation… ");
    return percent < 0 ? start.trimmed() : start + French::tr("%1\u202F%").arg(percent);
}

QString installingNote() { return French::tr("Environ une minute, rien à faire de ton côté."); }

int installPercent(const DownloadProgress &progress) {
    return progress.expected > 0 ? static_cast<int>(std::clamp<qint64>(
                                       progress.received * 100 / progress.expected, 0, 100))
                                 : -1;
}

QString installFailureText() {
    return French::tr("L’installation n’a pas abouti\u00A0: vérifie ta connexion à Internet.");
}

QString installFailureText(const SetupError &error, AgentKind kind) {
    switch (error.kind()) {
    case SetupError::Case::NoNpm:
        return French::tr("Pour installer %1, il me faut npm\u00A0: installe-le (sous Debian ou "
                          "Ubuntu, le paquet «\u202Fnpm\u202F»), puis réessaie.")
            .arg(displayName(kind));
    case SetupError::Case::NpmDoesNotRun:
        return French::tr("Pour installer %1, il me faut npm, et celui que je trouve ne démarre "
                          "pas\u00A0: il lui manque Node, ou une version de Node qui marche. "
                          "Installe-le (sous Debian ou Ubuntu, les paquets «\u202Fnodejs\u202F» et "
                          "«\u202Fnpm\u202F»), puis réessaie.")
            .arg(displayName(kind));
    case SetupError::Case::UnderWay:
        return French::tr("Une installation est déjà en cours, dans une autre fenêtre ou un "
                          "terminal\u00A0: laisse-la finir, puis réessaie.");
    default:
        return installFailureText();
    }
}

QString installDoubtText(InstallEnd end, AgentKind kind, const QString &found) {
    switch (end) {
    case InstallEnd::Checked:
        return {};
    case InstallEnd::Silent:
        return French::tr("%1 est installé, mais n’a pas répondu en une minute\u00A0: ta machine "
                          "est peut-être très occupée.")
            .arg(displayName(kind));
    case InstallEnd::Hidden:
        return French::tr("%1 est installé, mais un autre programme du même nom passe avant lui, "
                          "et c’est lui qui servira\u00A0: %2")
            .arg(displayName(kind), found);
    }
    return {};
}

QString signInPageText() {
    return French::tr("Valide la connexion dans la page qui vient de s’ouvrir.");
}

QString signInFailureText() {
    return French::tr("Connexion pas aboutie\u00A0: la page a été fermée, ou le délai est passé.");
}

} // namespace vorle
