#pragma once

#include "judging/Judge.h"

#include <QMap>

#include <exception>
#include <functional>

namespace vorle {

/// The test bench of the judge: sample items with the score an expert gave them, judged as a run
/// judges its candidates, so that an instruction can be tried and measured without touching the
/// user's topics. A bench is sample data of the program (`bench-*.json` among its resources);
/// nothing here knows the topics.

/// Who a bench is judged for, in the place of the user's territory.
struct BenchProfile {
    struct Project {
        QString name;
        QString description;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("name", &Project::name),
                              json::field("description", &Project::description));
        }
        bool operator==(const Project &) const = default;
    };
    struct Interest {
        QString topic;
        int weight = 3; ///< 1 to 5

        static constexpr auto jsonFields() {
            return std::tuple(json::field("topic", &Interest::topic),
                              json::field("weight", &Interest::weight));
        }
        bool operator==(const Interest &) const = default;
    };

    QString name;
    QString job;
    QString language;
    QList<Project> projects;
    QList<Interest> interests;
    QList<QString> reflexes; ///< English instruction lines
    QList<QString> tools;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &BenchProfile::name),
                          json::field("job", &BenchProfile::job),
                          json::field("language", &BenchProfile::language),
                          json::field("projects", &BenchProfile::projects),
                          json::field("interests", &BenchProfile::interests),
                          json::field("reflexes", &BenchProfile::reflexes),
                          json::field("tools", &BenchProfile::tools));
    }
    bool operator==(const BenchProfile &) const = default;
};

/// One sample, as a run would have read it.
struct BenchItem {
    QString id; ///< no other item of any bench has it
    QString title;
    std::optional<ItemKind> kind; ///< guessed; absent: an article
    ReadLevel readLevel = ReadLevel::None;
    QByteArray content;          ///< UTF-8, as read
    std::optional<QString> note; ///< the person's own words when they saved it
    QString origin;              ///< where it was found; a web address becomes its link
    QDateTime collectedAt;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("id", &BenchItem::id), json::field("title", &BenchItem::title),
            json::field("kind", &BenchItem::kind), json::field("readLevel", &BenchItem::readLevel),
            json::field("content", &BenchItem::content), json::field("note", &BenchItem::note),
            json::field("origin", &BenchItem::origin),
            json::field("collectedAt", &BenchItem::collectedAt));
    }
    bool operator==(const BenchItem &) const = default;
};

/// What an expert answered for an item, in the words of a correction.
struct BenchLabel {
    double score = 0; ///< 0 to 10
    QList<QString> tags;
    QString text; ///< why, in French

    static constexpr auto jsonFields() {
        return std::tuple(json::field("score", &BenchLabel::score),
                          json::field("tags", &BenchLabel::tags),
                          json::field("text", &BenchLabel::text));
    }
    bool operator==(const BenchLabel &) const = default;
};

struct Bench {
    BenchProfile profile;
    QList<BenchItem> items;
    QMap<QString, BenchLabel> labels; ///< by item

    static constexpr auto jsonFields() {
        return std::tuple(json::field("profile", &Bench::profile),
                          json::field("items", &Bench::items),
                          json::field("labels", &Bench::labels));
    }
    bool operator==(const Bench &) const = default;
};

/// The program's benches, one a profile; the first is the one previewed.
/// @throws AgentError "Consigne du moteur absente de l’app." when one is missing or unreadable
QList<Bench> loadBenches(const Resources &resources);

/// The bench as a preview judges it: of its first 15 items those with a label, 10 at most.
Bench previewOf(Bench bench);

/// How many calls judging it takes, retries apart.
qsizetype callsOf(const Bench &bench);

/// What the preview's screen says.
QString previewTitle();
QString previewSubtitle();
QString leavePreviewText();

/// One item beside its label and the judgment it got.
struct BenchVerdict {
    BenchItem item;
    std::optional<BenchLabel> label;
    std::optional<Judgment> judgment;

    /// The judge's overall grade less the label's score; nothing without both.
    std::optional<double> gap() const;
};

/// How well judgments agree with their labels. Nothing where there is nothing to measure.
struct BenchFigures {
    qsizetype compared = 0;   ///< items with a label and a judgment
    qsizetype unanswered = 0; ///< items without a judgment
    std::optional<double> meanAbsoluteError;
    std::optional<double> withinOne; ///< the share, 0 to 1, with a gap of at most one point
    /// Spearman's, -1 to 1, equal scores sharing their mean rank; nothing when either side is
    /// constant.
    std::optional<double> rankCorrelation;
    QList<qsizetype> worst; ///< indexes of the widest gaps, widest first, 5 at most, none of 0

    static constexpr auto jsonFields() {
        return std::tuple(json::field("compared", &BenchFigures::compared),
                          json::field("unanswered", &BenchFigures::unanswered),
                          json::field("meanAbsoluteError", &BenchFigures::meanAbsoluteError),
                          json::field("withinOne", &BenchFigures::withinOne),
                          json::field("rankCorrelation", &BenchFigures::rankCorrelation));
    }
};

/// Pure, any thread.
BenchFigures benchFigures(const QList<BenchVerdict> &verdicts);

/// Judges benches with the chosen agent. Main thread; the asker must outlive every call under way.
class JudgeBench {
public:
    struct Outcome {
        QList<BenchVerdict> verdicts; ///< one an item, in their order
        std::optional<double> costUSD;
        std::exception_ptr failure; ///< what kept a batch from being judged, retry included
    };
    /// Told how many items have been through, after each batch.
    using Progress = std::function<void(qsizetype)>;

    explicit JudgeBench(Asker &asker) : m_asker(&asker) {}

    /// In the batches of a run, 2 calls at a time. The day is that of the newest item, so that a
    /// bench reads the same whenever it is judged. Without items the agent is not called. After a
    /// failure no further batch leaves, and what had been judged is kept.
    /// @throws Cancelled
    Task<Outcome> judge(Bench bench, Progress progress, CancelToken cancel);

private:
    struct Session {
        std::shared_ptr<const JudgeContext> context;
        QList<QList<JudgeCandidate>> batches;
        Progress progress;
        CancelToken cancel;
        QHash<QString, Judgment> judgments;
        std::optional<double> costUSD;
        qsizetype done = 0;
    };

    Task<> judgeBatch(Session &session, qsizetype index);

    Asker *m_asker;
};

} // namespace vorle
