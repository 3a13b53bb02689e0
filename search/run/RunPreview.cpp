#include "search/run/RunPreview.h"

#include "agents/Ask.h"
#include "base/French.h"
#include "base/OnDisk.h"
#include "base/Text.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "judging/JudgeContext.h"
#include "judging/Learning.h"
#include "search/run/JudgedProjects.h"
#include "search/run/Pipeline.h"
#include "search/run/RunPlan.h"

namespace vorle {

namespace {

/// The questions of a plan, as the pipeline and the judge put them.
class Previewer {
public:
    Previewer(Asker &asker, RunPreview &into) : m_asker(asker), m_pipeline(asker), m_into(into) {}

    void ask(const RunPlan &plan, const JudgeContext &told, AgentKind agent) {
        for (const PlannedScope &planned : plan.scopes) {
            show(planned.name, m_pipeline.question(planned, agent));
        }
        const QString unread = QStringLiteral("…");
        if (!plan.sites.sites.isEmpty()) {
            show(French::tr("Tes sites"), m_pipeline.screening(plan.sites, {unread}, agent));
        }
        JudgeCandidate frame;
        frame.id = QStringLiteral("c1");
        frame.title = unread;
        const QString instruction = loadPrompt(m_asker.resources(), QStringLiteral("judge-prompt"));
        m_into.prompts += {French::tr("Jugement"),
                           judgePrompt(instruction, told.today, told.profile, told.reflexLines(),
                                       told.examples, {frame}),
                           schema(QStringLiteral("judge-schema"))};
        show(French::tr("Pages illisibles"),
             m_pipeline.digging({{frame.id, unread, unread, unread}},
                                {told.today, plan.sites.exclusions, agent}));
    }

private:
    void show(const QString &name, const Question &question) {
        m_into.prompts += {name, question.prompt, schema(question.schemaName)};
    }
    QString schema(const QString &name) const {
        return m_asker.resources().text(name, QStringLiteral("json")).value_or(QString());
    }

    Asker &m_asker;
    const Pipeline m_pipeline;
    RunPreview &m_into;
};

} // namespace

qsizetype RunPreview::bytes() const {
    qsizetype sum = 0;
    for (const PromptPreview &each : prompts) {
        sum += utf8Size(each.prompt);
    }
    return sum;
}

Task<RunPreview> previewRun(RunPreviewParts parts) {
    RunPreview preview;
    const Preferences &preferences = parts.preferences;
    preview.refusal = refusalText(preferences);
    if (!preview.refusal.isEmpty()) {
        co_return preview;
    }
    const auto folders = preferences.settings().projects;
    const auto projects = co_await askProjects(folders, parts.cancel);
    preview.refusal = refusalText(preferences, projects);
    if (!preview.refusal.isEmpty()) {
        co_return preview;
    }
    QStringList apps;
    if (parts.apps && preferences.settings().accessMode == AccessMode::AllExcept) {
        apps = (co_await onDisk(parts.apps, maxDiskWait, parts.cancel)).value_or(QStringList());
    }
    const QList<TopicPtr> topics = parts.store.topics();
    const QDateTime now = parts.clock.now();
    const AgentKind agent = parts.asker.agent().locator().choose();
    const RunPlan plan = planRun(preferences, projects, topics, now, apps);
    const JudgeContext told = judgeContext(
        judgeContextSource(preferences, judgedProjects(projects, preferences.settings()), topics),
        now.toLocalTime().date(), agent);
    preview.warnings = plan.warnings + QStringList{unsentReflexesText(told.unsent)};
    preview.warnings.removeAll(QString());
    Previewer(parts.asker, preview).ask(plan, told, agent);
    co_return preview;
}

} // namespace vorle
