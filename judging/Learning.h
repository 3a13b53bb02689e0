#pragma once

#include "core/Settings.h"
#include "core/TopicStore.h"
#include "judging/Reflex.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace vorle {

/// What the user's decisions taught. Pure functions of the topics and the settings, any thread;
/// about a tenth of a microsecond a topic, so for the moments somebody asks, not for each key.

/// How many decisions it takes before anything is learned.
inline constexpr int decisionsToLearn = 10;

struct Learned {
    int decisions = 0;      ///< that count, whatever came of them
    QList<Reflex> reflexes; ///< in the order of the rules; those switched off are among them

    bool operator==(const Learned &) const = default;
};

/// Learns from the topics sent out of "À trier" (program, reserve, dismissed, done) and from the
/// scores the user corrected. With `reflexesSince`, only decisions and corrections dated strictly
/// after it count, and one without a date does not. Nothing is learned under `decisionsToLearn`.
///
/// - "stack-first": what touches the user's stack is kept more often than the rest. A decision is
///   of the stack when it is tied to a dependency, to a project together with a version, or when
///   its title names one of their tools; it is kept as "program" or "done".
/// - "kind-…": a kind of item is often set aside. Kinds outside `ItemKind` are passed over.
/// - "long-later": items of an hour or more are put off.
/// - "project-…": one of the user's projects is often set aside, in the order of their names.
/// - "corr-…": a kind's scores are corrected in one direction, by a step of 3 at most. A topic
///   that carried no score, since nothing could be read, has no gap.
Learned learn(const QList<TopicPtr> &topics, const Settings &settings);

/// One of the decisions that a reflex rests on.
struct DecisionBehind {
    TopicPtr topic;
    std::optional<QDateTime> at; ///< when it was taken; of a "corr-…", when the score was corrected
};

/// The decisions (of a "corr-…", the corrections) that a reflex rests on, newest first: those that
/// its evidence counts, found by the same rule. Nothing for an identifier of no rule.
QList<DecisionBehind> decisionsBehind(const QString &reflexId, const QList<TopicPtr> &topics,
                                      const Settings &settings);

/// The reflexes the user left on, in their order: those that apply.
QList<Reflex> reflexesLeftOn(QList<Reflex> reflexes, const Settings &settings);

/// Which reflexes the judge's prompt had no room for, as a French sentence; empty for none.
QString unsentReflexesText(const QList<Reflex> &unsent);

/// What stands over the reflexes of a group: "Ce que je note plus haut".
QString reflexGroupTitle(Reflex::Group group);

/// What is shown in the place of reflexes: how many decisions are still needed, followed by
/// `sampleReflexes()`, or that the decisions draw no rule. Empty when there are reflexes.
QString nothingLearnedText(const Learned &learned);

/// Reflexes with invented figures, to show what will come. They are never applied.
QList<Reflex> sampleReflexes();

/// "Un réflexe coupé …": said beside reflexes that are switched off.
QString switchedOffText();

/// What is asked before `reflexesSince` is set to the present, with the number of reflexes that
/// go.
QString startAgainText(qsizetype reflexes);

} // namespace vorle
