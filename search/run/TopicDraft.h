#pragma once

#include "core/ScoreProvenanceLog.h"
#include "core/Topic.h"
#include "judging/Judge.h"
#include "search/run/Pipeline.h"
#include "search/web/PageReader.h"

namespace vorle {

/// How a candidate, its page and its judgment make a topic. Pure.

/// The declared topics of the scope that the candidate says it answers, the longest name first (see
/// namesIn).
QStringList topicsOf(const Candidate &candidate, const PlannedScope &planned);

/// The dependency of the scope's project that the candidate says it is about, as the project spells
/// it.
std::optional<QString> dependencyOf(const Candidate &candidate, const PlannedScope &planned);

/// What the judge reads of a page: its text, or its title and description when there is no more.
QByteArray judgedContent(const ReadPage &page);

/// The topic, "pending", with a new identity; without the moment it was found, its origin and its
/// place in the territory. A page that could not be read gives no score, whatever the judge said.
Topic draftTopic(const Candidate &candidate, const ReadPage &page, const Judgment &judgment);

/// What stood behind the judgment of `topic`, as the candidate was shown to the judge.
ScoreProvenance draftProvenance(const JudgeContext &context, const JudgeCandidate &candidate,
                                const Judgment &judgment, const QUuid &topic, const QDateTime &now);

/// The sources of a page: the candidate's link, then the page it led to when that is another one,
/// so that the next run knows both. A redirect to a site's front page or to a sign-in tells nothing
/// of what was there.
QList<TopicSource> sourcesOf(const Candidate &candidate, const ReadPage &page);

/// Whether the candidate answers the scope's project, one of its dependencies or one of its
/// declared topics: for a link that another scope brought.
bool concerns(const Candidate &candidate, const PlannedScope &planned);

/// Ties the topic to the project, the declared topic or the dependency it answers. What it is tied
/// to already stays; a dependency is one of the topic's own project.
void attachToTerritory(Topic &topic, const Candidate &candidate, const PlannedScope &planned);

} // namespace vorle
