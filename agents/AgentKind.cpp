#include "agents/AgentKind.h"

#include <QCoreApplication>

namespace vorle {

QString displayName(AgentKind kind) {
    return kind == AgentKind::Claude ? QStringLiteral("Claude Code") : QStringLiteral("Codex");
}

QString signInLabel(AgentKind kind) {
    return kind == AgentKind::Claude
               ? QCoreApplication::translate("AgentKind", "Avec ton abonnement Claude")
               : QCoreApplication::translate("AgentKind", "Avec ton compte ChatGPT");
}

QString chatName(AgentKind kind) {
    return kind == AgentKind::Claude ? QStringLiteral("Claude") : QStringLiteral("ChatGPT");
}

} // namespace vorle
