#include "core/WeekProgram.h"

#include "core/DurationText.h"

#include <algorithm>

namespace vorle {

namespace {

constexpr int minutesInAWeek = 7 * 24 * 60;

int minutesOf(const Topic &topic) { return std::clamp(topic.minutes, 0, minutesInAWeek); }

bool isDoneWithin(const Topic &topic, const Period &week) {
    return topic.status == TopicStatus::Done && topic.doneAt && week.contains(*topic.doneAt);
}

ProgramText textInProgress(const WeekProgram &program) {
    ProgramText said;
    const qsizetype count = program.fits.size();
    if (count == 0) {
        said.title = program.done == 0 && program.left > 0
                         ? QStringLiteral("Rien ne tient dans ta semaine")
                         : QStringLiteral("Ta semaine est pleine");
    } else {
        said.title = QStringLiteral("Cette semaine\u00A0: %1, %2")
                         .arg(count == 1 ? QStringLiteral("1 sujet")
                                         : QStringLiteral("%1 sujets").arg(count),
                              durationText(program.planned));
    }
    if (program.done == 0) {
        said.text =
            QStringLiteral("Tu as %1 de veille cette semaine.").arg(durationText(program.budget));
    } else {
        said.text = QStringLiteral("Déjà fait\u00A0: %1 sur %2.")
                        .arg(durationText(program.done), durationText(program.budget));
        if (program.left > 0) {
            said.text += QStringLiteral(" Il te reste %1.").arg(durationText(program.left));
        }
    }
    if (program.excess() > 0) {
        said.text +=
            QStringLiteral(" Les urgences dépassent ton temps de %1\u00A0: elles passent quand "
                           "même.")
                .arg(durationText(program.excess()));
    }
    return said;
}

} // namespace

WeekProgram weekProgram(const QList<TopicPtr> &topics, int weeklyMinutes, const Period &week) {
    WeekProgram program;
    program.budget = std::max(0, weeklyMinutes);
    QList<TopicPtr> kept;
    bool anyDone = false;
    for (const TopicPtr &topic : topics) {
        if (topic->status == TopicStatus::Program) {
            kept.append(topic);
        } else if (isDoneWithin(*topic, week)) {
            anyDone = true;
            program.done += minutesOf(*topic);
        }
    }
    program.left = std::max(0, program.budget - program.done);
    for (const TopicPtr &topic : ordered(std::move(kept), soonerInProgram)) {
        const int minutes = minutesOf(*topic);
        if (topic->isUrgent() || program.planned + minutes <= program.left) {
            program.fits.append(topic);
            program.planned += minutes;
        } else {
            program.waits.append(topic);
        }
    }
    if (!program.fits.isEmpty() || !program.waits.isEmpty()) {
        program.state = WeekProgram::State::InProgress;
    } else if (anyDone) {
        program.state = WeekProgram::State::AllDone;
    }
    return program;
}

ProgramText programText(const WeekProgram &program, const QString &nextRun) {
    switch (program.state) {
    case WeekProgram::State::Empty:
        return {
            QStringLiteral("Ton programme est vide."),
            QStringLiteral("Ce que tu gardes au tri arrive ici, rangé par urgence et par note.")};
    case WeekProgram::State::AllDone:
        break;
    case WeekProgram::State::InProgress:
        return textInProgress(program);
    }
    ProgramText said{QStringLiteral("Programme fini, il te reste ") + durationText(program.left),
                     QStringLiteral("Tout ce que tu as gardé est fait.")};
    // With no time left, searching for more would be a strange offer.
    if (program.left > 0) {
        const QString offer = QStringLiteral(
            " Je peux fouiller maintenant pour remplir le reste de ta semaine, sans attendre ");
        said.text += nextRun.isEmpty() ? offer.chopped(QStringView(u", sans attendre ").size())
                                       : offer + nextRun;
        said.text += u'.';
    }
    return said;
}

QString programLineText(const WeekProgram &program) {
    return program.waits.isEmpty()
               ? QString()
               : QStringLiteral("Ce qui suit ne tient pas dans ta semaine, et t’attend");
}

} // namespace vorle
