#pragma once

#include "base/Async.h"
#include "base/Clock.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace vorle {

class Asker;
class Preferences;
class TopicStore;

/// One question that a run would put to the agent.
struct PromptPreview {
    QString scope; ///< the project's name, "Tes sujets", "Tes sites", "Jugement", …
    QString prompt;
    QString schema; ///< what the answer must look like, as JSON
};

struct RunPreview {
    QList<PromptPreview> prompts;
    QStringList warnings; ///< French sentences: what would be left out, and why
    QString refusal;      ///< why a run would ask nothing; then there are no prompts

    /// What all of it takes, in bytes of UTF-8.
    qsizetype bytes() const;
};

/// What a run's preview is made of.
struct RunPreviewParts {
    const Preferences &preferences;
    const TopicStore &store;
    Asker &asker;
    const Clock &clock;
    /// The names of the apps on this machine. Any thread; may be empty.
    std::function<QStringList()> apps = {};
    CancelToken cancel = {};
};

/// The very questions that a run would ask now, of the agent chosen now. Nothing is sent. What the
/// feeds announce, what is judged and what is dug for is known only during a run: one empty item
/// ("…") shows each of these frames. Main thread; the parts must outlive the call.
/// @throws AgentError when an instruction is missing: a fault of the build; Cancelled
Task<RunPreview> previewRun(RunPreviewParts parts);

} // namespace vorle
