#include "judging/JudgeContext.h"

#include "agents/PromptText.h"
#include "core/Preferences.h"
#include "judging/Learning.h"

namespace vorle {

QStringList JudgeContext::reflexLines() const {
    QStringList lines;
    for (const Reflex &reflex : reflexes) {
        lines += reflex.instruction;
    }
    return lines;
}

JudgeContext judgeContext(JudgeContextSource source, const QDate &today,
                          std::optional<AgentKind> agent) {
    JudgeContext context{.profile = std::move(source.profile),
                         .examples = exampleTopics(source.topics),
                         .today = today,
                         .agent = agent};
    qsizetype bytes = 0;
    for (const Reflex &reflex : std::as_const(source.reflexes)) {
        const qsizetype size = promptSize(reflexLine(reflex.instruction));
        if (bytes + size <= reflexBytes) {
            context.reflexes += reflex;
            bytes += size;
        } else {
            context.unsent += reflex;
        }
    }
    return context;
}

JudgeContextSource judgeContextSource(const Preferences &preferences,
                                      QList<JudgeProfile::Project> projects,
                                      QList<TopicPtr> topics) {
    const Settings &settings = preferences.settings();
    JudgeContextSource source;
    source.profile.job = settings.job.value_or(QString());
    source.profile.projects = std::move(projects);
    for (const QString &topic : settings.interests) {
        source.profile.interests += {topic, preferences.weightOf(topic)};
    }
    source.profile.tools = settings.addedTools;
    source.reflexes = reflexesLeftOn(learn(topics, settings).reflexes, settings);
    source.topics = std::move(topics);
    return source;
}

} // namespace vorle
