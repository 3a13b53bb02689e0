#include "app/diagnostics/Diagnostics.h"
#include "app/labels/AgentLabels.h"
#include "app/labels/ScheduleText.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "core/NumberText.h"

#include <QStringList>

namespace vorle {

namespace {

QString momentText(const std::optional<QDateTime> &moment) {
    return moment ? moment->toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                  : French::tr("jamais");
}

/// "chaque lundi à 8:00"
QString runsAtText(const Schedule &schedule) {
    const QString days = daysText(schedule.weekdays);
    return days.isEmpty()
               ? French::tr("aucun jour")
               : French::tr("%1 à %2").arg(days, timeOfDayText({schedule.hour, schedule.minute}));
}

/// What could not be read or saved, with what the system or an agent is known to have said.
QString problemText(const QString &problem) {
    const std::pair<const char *, QString> phrases[] = {
        {Diagnostics::savingTopics, French::tr("enregistrer les sujets")},
        {Diagnostics::savingSettings, French::tr("enregistrer les réglages")},
        {Diagnostics::noSettings, French::tr("le fichier des réglages ne se lit pas comme tel")},
        {Diagnostics::theTopics, French::tr("lire les sujets")},
        {Diagnostics::theSettings, French::tr("lire les réglages")},
        {Diagnostics::theAgents, French::tr("chercher les IA")},
    };
    for (const auto &[phrase, text] : phrases) {
        const QString begin = QString::fromLatin1(phrase);
        if (problem == begin) {
            return text;
        }
        if (problem.startsWith(begin + u':')) {
            return text + u'\u00A0' + problem.sliced(begin.size());
        }
    }
    return problem;
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
        const auto status = json::fromRaw<TopicStatus>(count.status);
        counts += QStringLiteral("%1 %2").arg(
            status ? statusLabel(*status).toLower() : count.status, numberText(count.topics));
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
            .arg(runsAtText(told.runsAt), momentText(told.nextRun), momentText(told.lastRun)));
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
    QStringList problems;
    for (const QString &problem : told.problems) {
        problems += problemText(problem);
    }
    list(French::tr("Erreurs"), problems);
    list(French::tr("Journal"), told.log);
    if (!told.variables.isEmpty()) {
        add(French::tr("Variables"), told.variables.join(QStringLiteral(", ")));
    }
    return lines.join(u'\n') + u'\n';
}

} // namespace vorle
