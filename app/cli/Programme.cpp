#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/cli/TopicCards.h"
#include "app/labels/RunLabels.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "core/WeekProgram.h"

namespace vorle::cli {

namespace {

struct ProgramShown {
    WeekProgram::State state = WeekProgram::State::Empty;
    int budget = 0;
    int done = 0;
    int planned = 0;
    int left = 0;
    QList<Topic> fits;
    QList<Topic> waits;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("state", &ProgramShown::state),
            json::field("budget", &ProgramShown::budget), json::field("done", &ProgramShown::done),
            json::field("planned", &ProgramShown::planned),
            json::field("left", &ProgramShown::left), json::field("fits", &ProgramShown::fits),
            json::field("waits", &ProgramShown::waits));
    }
};

QList<Topic> records(const QList<TopicPtr> &topics) {
    QList<Topic> records;
    for (const TopicPtr &topic : topics) {
        records += *topic;
    }
    return records;
}

} // namespace

Task<ExitStatus> programme(Context &context, OnDemand<TopicStore> topics,
                           OnDemand<Preferences> preferences, const Clock &clock) {
    const TopicStore &store = *topics;
    Console &console = context.console;
    requireReadable(store);
    const WeekProgram program = weekProgram(store.topics(), preferences->settings().weeklyMinutes,
                                            calendarWeek(clock.now()));
    if (context.arguments.json()) {
        const ProgramShown shown{program.state,         program.budget, program.done,
                                 program.planned,       program.left,   records(program.fits),
                                 records(program.waits)};
        console.print(json::encode(shown, json::Style::Pretty));
        co_return ExitStatus::Done;
    }
    const ProgramText said = programText(
        program, nextRunText(preferences->settings(), clock.now(), QTimeZone::systemTimeZone()));
    console.print(console.bold(said.title));
    if (!said.text.isEmpty()) {
        console.print(said.text);
    }
    const QDate today = clock.now().toLocalTime().date();
    if (!program.fits.isEmpty()) {
        console.print(u'\n' + programLines(console, program.fits, today));
    }
    if (!program.waits.isEmpty()) {
        console.print(QStringLiteral("\n── %1 ──\n").arg(waitingHeading()));
        console.print(programLines(console, program.waits, today));
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
