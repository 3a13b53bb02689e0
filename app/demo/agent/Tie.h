#pragma once

#include "app/demo/agent/PromptReader.h"

namespace vorle::demo {

/// What of the person's territory a page touches.
struct Tie {
    enum class Kind { None, Project, Interest, Tool };
    Kind kind = Kind::None;
    QString name;  ///< the project, the topic or the tool
    QString label; ///< the technology that ties a project, or empty
    int weight = 0;
};

/// The strongest tie: a project that is named, the topic of the greatest weight, a project's
/// technology, what a project is described as, a tool. All but the technologies are looked for in
/// `opening` alone, the title and the first lines: a page that comes to something further down is
/// not about it.
Tie tieOf(const QString &opening, const QString &text, const ProfileRead &profile);

} // namespace vorle::demo
