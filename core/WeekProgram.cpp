#include "core/WeekProgram.h"

#include "base/French.h"
#include "core/DurationText.h"
#include "core/NumberText.h"

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
                         ? French::tr("Rien ne tient dans ta semaine")
                         : French::tr("Ta semaine est pleine");
    } else {
        said.title = French::tr("%1, %2").arg(
            count == 1 ? French::tr("1 sujet") : French::tr("%1 sujets").arg(numberText(count)),
            durationText(program.planned));
        if (program.done == 0) {
            said.title += French::tr(" sur %1").arg(durationText(program.budget));
        }
    }
    if (program.done > 0) {
        said.text = French::tr("Déjà fait\u00A0: %1 sur %2.")
                        .arg(durationText(program.done), durationText(program.budget));
        if (program.left > 0) {
            said.text += French::tr(" Il te reste %1.").arg(durationText(program.left));
        }
    }
    if (program.excess() > 0) {
        said.text +=
            French::tr(" Les urgences dépassent ton temps de %1\u00A0: elles passent quand "
                       "même.")
                .arg(durationText(program.excess()));
    }
    said.text = said.text.trimmed();
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
    for (const TopicPtr &topic : ordered(std::move(kept), programOrder)) {
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
        return {French::tr("Ton programme est vide."),
                French::tr("Ce que tu gardes au tri arrive ici, rangé par urgence et par note.")};
    case WeekProgram::State::AllDone:
        break;
    case WeekProgram::State::InProgress:
        return textInProgress(program);
    }
    ProgramText said{French::tr("Programme fini, il te reste ") + durationText(program.left),
                     French::tr("Tout ce que tu as gardé est fait.")};
    // With no time left, searching for more would be a strange offer.
    if (program.left > 0) {
        said.text +=
            nextRun.isEmpty()
                ? French::tr(" Je peux fouiller maintenant pour remplir le reste de ta semaine.")
                : French::tr(" Je peux fouiller maintenant pour remplir le reste de ta semaine, "
                             "sans attendre %1.")
                      .arg(nextRun);
    }
    return said;
}

QString waitingHeading() {
    return French::tr("Ce qui suit ne tient pas dans ta semaine, et t’attend");
}

} // namespace vorle
