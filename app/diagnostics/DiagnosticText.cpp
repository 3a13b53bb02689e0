#include "app/diagnostics/Diagnostics.h"
#include "app/labels/AgentLabels.h"
#include "base/French.h"
#include "core/NumberText.h"

#include <QStringList>

namespace vorle {

namespace {

QString momentText(const std::optional<QDateTime> &moment) {
    return moment ? moment->toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                  : French::tr("jamais");
}

} // namespace

QString diagnosticText(const Diagnostics &told) {
    QStringList lines{
        QStringLiteral("vorle %1 · Qt %2 · %3").arg(told.version, told.qt, told.compiler),
        QStringLiteral("%1 · %2 · %3 · %4")
            .arg(told.system, told.architecture, told.surface, told.zone),
        momentText(told.date)};
    const auto add = [&lines](const QString &name, const QString &text) {
        lines += French::tr("%1\u00A0: %2").arg(name, text);
    };
    for (const Diagnostics::File &file : told.files) {
        add(file.path, file.bytes
                           ? (*file.bytes == 1 ? French::tr("%1 octet") : French::tr("%1 octets"))
                                 .arg(numberText(*file.bytes))
                           : French::tr("absent"));
    }
    QStringList counts;
    for (const Diagnostics::Count &count : told.topics) {
        counts += QStringLiteral("%1 %2").arg(count.status, numberText(count.topics));
    }
    add(French::tr("Sujets"),
        told.damaged ? French::tr("fichier illisible") : counts.join(QStringLiteral(", ")));
    for (const Diagnostics::Agent &agent : told.agents) {
        add(agent.name + (agent.chosen ? French::tr(" (choisi)") : QString()),
            readinessLabel(agent.state) +
                (agent.path ? QStringLiteral(" · ") + *agent.path : QString()));
    }
    add(French::tr("Modèle"), told.model.value_or(French::tr("celui par défaut")));
    add(French::tr("Fouilles"),
        French::tr("%1 · prochaine %2 · dernière %3")
            .arg(told.schedule.isEmpty() ? French::tr("aucun jour") : told.schedule,
                 momentText(told.nextRun), momentText(told.lastRun)));
    for (const Diagnostics::Run &run : told.runs) {
        QStringList facts{French::tr("%1 s").arg(qRound64(run.seconds)),
                          French::tr("sujets %1").arg(run.added)};
        if (run.stopped) {
            facts += French::tr("arrêtée");
        }
        if (run.failed) {
            facts += French::tr("échec\u00A0: %1").arg(*run.failed);
        }
        for (const QString &kind : run.scopes) {
            facts += French::tr("recherche\u00A0: %1").arg(kind);
        }
        add(QStringLiteral("  ") + momentText(run.date), facts.join(QStringLiteral(" · ")));
    }
    const auto list = [&](const QString &name, const QList<QString> &texts) {
        if (!texts.isEmpty()) {
            add(name, QStringLiteral("\n  ") + texts.join(QStringLiteral("\n  ")));
        }
    };
    list(French::tr("Erreurs"), told.problems);
    list(French::tr("Journal"), told.log);
    if (!told.variables.isEmpty()) {
        add(French::tr("Variables"), told.variables.join(QStringLiteral(", ")));
    }
    return lines.join(u'\n') + u'\n';
}

} // namespace vorle
