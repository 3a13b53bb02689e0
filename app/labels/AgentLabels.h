#pragma once

#include "agents/AgentLocator.h"
#include "agents/setup/AgentPackage.h"
#include "agents/setup/Downloader.h"
#include "agents/setup/SetupError.h"

#include <QString>

namespace vorle {

// Pure, any thread.

/// Whether an agent can work, in a word: "prêt", "déconnecté", "introuvable".
QString readinessLabel(AgentReadiness readiness);

/// What has to be had to use it: "Avec un abonnement Claude, Pro ou plus".
QString installOfferText(AgentKind kind);
/// What signing in allows: "Tu autorises vorle à utiliser ton abonnement Claude, Pro ou plus".
QString signInConsentText(AgentKind kind);
/// "Je fouillerai avec ton abonnement Claude."
QString agentReadyText(AgentKind kind);
/// What a run takes of it.
QString quotaText();

/// "Installation… 42 %"; without a number where `percent` is below 0.
QString installingText(int percent);
QString installingNote();
/// How far an installation is, 0-100; -1 where that cannot be told.
int installPercent(const DownloadProgress &progress);
/// Why an agent could not be installed; without an error, whatever the reason.
QString installFailureText();
QString installFailureText(const SetupError &error, AgentKind kind);
/// What is doubtful of an agent that was installed; "" where nothing is. `found` is the program
/// that is used for it.
QString installDoubtText(InstallEnd end, AgentKind kind, const QString &found);

/// Where to confirm that one signs in.
QString signInPageText();
QString signInFailureText();

} // namespace vorle
