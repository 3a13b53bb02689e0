#pragma once

#include "core/Settings.h"
#include "judging/JudgePrompt.h"
#include "search/discovery/ProjectSnapshot.h"

namespace vorle {

/// The watched projects as the judge is told of them, whatever it judges. One without a
/// folder and without a description is left out: its name alone says nothing. Pure.
QList<JudgeProfile::Project> judgedProjects(const QList<ProjectSnapshot> &projects,
                                            const Settings &settings);

} // namespace vorle
