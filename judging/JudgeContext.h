#pragma once

#include "agents/AgentKind.h"
#include "judging/JudgePrompt.h"
#include "judging/Reflex.h"

namespace vorle {

class Preferences;

/// Whom the judge judges for, and what is known of their taste: the user's (see
/// judgeContextSource), or that of a bench's person.
struct JudgeContextSource {
    JudgeProfile profile;
    QList<Reflex> reflexes = {}; ///< those that apply, in their order
    QList<TopicPtr> topics = {}; ///< all; the examples are chosen among them
};

/// What the judge is told besides the candidates. Made by judgeContext(), for a run, a captured
/// link and a bench alike.
struct JudgeContext {
    JudgeProfile profile;
    QList<Reflex> reflexes = {};   ///< those whose lines are sent
    QList<Reflex> unsent = {};     ///< those the prompt has no room for (see reflexBytes)
    QList<TopicPtr> examples = {}; ///< see exampleTopics
    QDate today;
    std::optional<AgentKind> agent = {}; ///< instead of the chosen one

    /// The English lines of the reflexes.
    QStringList reflexLines() const;
};

/// Pure, any thread.
JudgeContext judgeContext(JudgeContextSource source, const QDate &today,
                          std::optional<AgentKind> agent = std::nullopt);

/// The user's: their territory, what their decisions taught and is not switched off, their topics.
/// `projects` are the watched ones, as they were read. Main thread.
JudgeContextSource judgeContextSource(const Preferences &preferences,
                                      QList<JudgeProfile::Project> projects,
                                      QList<TopicPtr> topics);

} // namespace vorle
