#pragma once

#include "app/report/ReportPeriod.h"
#include "core/RunReport.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"

#include <functional>
#include <optional>

namespace vorle {

/// What came of a watch over a period, as numbers.
///
/// Two kinds of count stand side by side. What was *found* in the period (kept, set aside, by score
/// and by source) is told by what it is today: marking a topic done stamps its decision anew, so
/// the day something was kept is not known, and only so do the totals and the parts add up. What
/// was *done* (with its minutes and verdicts) counts on the day it was done, whenever it was found.
struct WatchFigures {
    /// Topics found, by what they are today.
    struct Cohort {
        int found = 0;
        int kept = 0;      ///< in the program, or done
        int later = 0;     ///< in the reserve
        int dismissed = 0; ///< "pas pour moi"
        /// Not decided yet.
        int waiting() const { return found - kept - later - dismissed; }
        int decided() const { return found - waiting(); }

        static constexpr auto jsonFields() {
            return std::tuple(
                json::field("found", &Cohort::found), json::field("kept", &Cohort::kept),
                json::field("later", &Cohort::later), json::field("dismissed", &Cohort::dismissed));
        }
        bool operator==(const Cohort &) const = default;
    };
    struct Part : Cohort {
        QDateTime begin;
        int done = 0;
        int minutes = 0; ///< of what was done

        static constexpr auto jsonFields() {
            return std::tuple_cat(Cohort::jsonFields(),
                                  std::tuple(json::field("begin", &Part::begin),
                                             json::field("done", &Part::done),
                                             json::field("minutes", &Part::minutes)));
        }
        bool operator==(const Part &) const = default;
    };
    /// Topics by the score that the app gave, whatever the user said of it.
    struct Score : Cohort {
        int score = 0;

        static constexpr auto jsonFields() {
            return std::tuple_cat(Cohort::jsonFields(),
                                  std::tuple(json::field("score", &Score::score)));
        }
        bool operator==(const Score &) const = default;
    };
    /// Where topics came from.
    enum class From { Sites, Project, Topics, Captures, Others };
    friend constexpr std::array<std::string_view, 5> rawStrings(From) {
        return {"sites", "project", "topics", "captures", "others"};
    }
    struct Source : Cohort {
        From from = From::Topics;
        QString name; ///< as it is shown

        static constexpr auto jsonFields() {
            return std::tuple_cat(
                std::tuple(json::field("from", &Source::from), json::field("name", &Source::name)),
                Cohort::jsonFields());
        }
        bool operator==(const Source &) const = default;
    };
    /// Scores the user changed in the period.
    struct Changed {
        int up = 0;
        int down = 0;
        double gap = 0;                ///< mean distance of theirs from the app's, in points
        std::optional<QString> reason; ///< the reason given most often, as it is kept

        static constexpr auto jsonFields() {
            return std::tuple(json::field("up", &Changed::up), json::field("down", &Changed::down),
                              json::field("gap", &Changed::gap),
                              json::field("reason", &Changed::reason));
        }
        bool operator==(const Changed &) const = default;
    };
    /// How often a score of 6 or more and a kept topic went together, among kept and dismissed.
    struct Agreement {
        int right = 0;
        int of = 0;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("right", &Agreement::right),
                              json::field("of", &Agreement::of));
        }
        bool operator==(const Agreement &) const = default;
    };
    struct Run {
        QDateTime date;
        int added = 0;
        int calls = 0;
        double seconds = 0;
        double costUSD = 0;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("date", &Run::date), json::field("added", &Run::added),
                              json::field("calls", &Run::calls),
                              json::field("seconds", &Run::seconds),
                              json::field("costUSD", &Run::costUSD));
        }
        bool operator==(const Run &) const = default;
    };

    PeriodKind kind = PeriodKind::Week;
    QDateTime begin;
    QDateTime end;
    bool present = true; ///< the period holds the present moment
    Cohort found;
    int done = 0;
    int minutes = 0; ///< of what was done
    int gems = 0;
    int useful = 0;
    int meh = 0;
    int weeklyMinutes = 0; ///< the time given each week, as it is set now
    int weeks = 0;         ///< calendar weeks that have begun, since the watch's first topic
    int weeksHeld = 0;     ///< of these, with at least that time done
    int minutesLeft = 0;   ///< of the present week
    int partsBegun = 0;    ///< parts that have begun, since the watch's first topic
    QList<Part> parts;
    QList<Score> scores;   ///< of decided topics, lowest first
    QList<Source> sources; ///< best first, captures last
    Changed changed;
    Agreement withReflexes;
    Agreement withoutReflexes;
    QList<Run> runs; ///< oldest first
    int failedRuns = 0;
    int stoppedRuns = 0;
    QList<StepReport> steps; ///< of all runs together; a step without calls is not there

    int budget() const { return weeks * weeklyMinutes; }
    double costUSD() const;
    double seconds() const; ///< that the runs took
    int calls() const;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("kind", &WatchFigures::kind), json::field("begin", &WatchFigures::begin),
            json::field("end", &WatchFigures::end), json::field("found", &WatchFigures::found),
            json::field("done", &WatchFigures::done),
            json::field("minutes", &WatchFigures::minutes),
            json::field("gems", &WatchFigures::gems), json::field("useful", &WatchFigures::useful),
            json::field("meh", &WatchFigures::meh),
            json::field("weeklyMinutes", &WatchFigures::weeklyMinutes),
            json::field("weeks", &WatchFigures::weeks),
            json::field("weeksHeld", &WatchFigures::weeksHeld),
            json::field("minutesLeft", &WatchFigures::minutesLeft),
            json::field("parts", &WatchFigures::parts),
            json::field("scores", &WatchFigures::scores),
            json::field("sources", &WatchFigures::sources),
            json::field("changed", &WatchFigures::changed),
            json::field("withReflexes", &WatchFigures::withReflexes),
            json::field("withoutReflexes", &WatchFigures::withoutReflexes),
            json::field("runs", &WatchFigures::runs),
            json::field("failedRuns", &WatchFigures::failedRuns),
            json::field("stoppedRuns", &WatchFigures::stoppedRuns),
            json::field("steps", &WatchFigures::steps));
    }
    bool operator==(const WatchFigures &) const = default;
};

/// What the figures are worked out from.
struct WatchRecords {
    QList<TopicPtr> topics;   ///< all of them, in the store's order
    QList<RunReport> reports; ///< of all runs, in any order
    int weeklyMinutes = 0;    ///< below 0 counts as 0
    /// How many reflexes stood behind a topic's score; nothing where that is not known.
    std::function<std::optional<qsizetype>(const QUuid &)> reflexesOf = {};
};

/// Pure; takes time in proportion to the topics. `locale` tells where a week begins.
WatchFigures watchFigures(const WatchRecords &records, const ReportPeriod &period,
                          const QDateTime &now, const QLocale &locale = QLocale::system(),
                          const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
