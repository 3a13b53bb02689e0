#include "app/window/UnderWay.h"

#include "app/models/settings/AgentStates.h"
#include "app/window/CommandServer.h"
#include "app/window/DemoProcess.h"
#include "app/window/MainWindow.h"
#include "app/window/Shell.h"
#include "app/wiring/Application.h"
#include "base/French.h"

namespace vorle {

namespace {

/// What of the person's own words would be gone.
QString writtenText(const Shell &shell, const MainWindow &main) {
    if (main.isWriting()) {
        return French::tr("Tu es en train d’écrire");
    }
    const bool asks = shell.quickCapture()->isShown() && !shell.quickCapture()->isAdded();
    return asks ? French::tr("L’ajout d’un sujet est ouvert") : QString();
}

QString agentText(const Shell &shell) {
    for (const AgentState &agent : shell.agentStates()->states()) {
        if (agent.working) {
            return (agent.installing ? French::tr("L’installation de %1 est en cours")
                                     : French::tr("La connexion à %1 est en cours"))
                .arg(agent.name);
        }
    }
    return {};
}

} // namespace

QString UnderWay::text(const cli::Context *asking) const {
    if (app.engine().phase() != SearchEngine::Phase::Idle) {
        return French::tr("Une fouille est en cours");
    }
    if (app.briefs().running()) {
        return French::tr("Une fiche de lecture est en train d’être écrite");
    }
    if (app.capture().running()) {
        return French::tr("Un lien est en train d’être lu");
    }
    if (commands.isRunning(asking)) {
        return French::tr("Une commande d’un terminal est en cours");
    }
    const auto stage = shell.calibration()->stage();
    if (stage == CalibrationModel::Choosing || stage == CalibrationModel::Scoring) {
        return French::tr("Le premier tri guidé est en cours");
    }
    for (const QString &text :
         {agentText(shell), writtenText(shell, main), shell.screens()->underWay()}) {
        if (!text.isEmpty()) {
            return text;
        }
    }
    return demo.isRunning() ? French::tr("La démonstration est ouverte") : QString();
}

} // namespace vorle
