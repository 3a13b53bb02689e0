#include "agents/Ask.h"
#include "base/Log.h"

namespace vorle {

QString loadPrompt(const Resources &resources, const QString &name) {
    const auto text = resources.text(name, QStringLiteral("md"));
    if (!text) {
        throw AgentError::missingInstruction();
    }
    return *text;
}

QString fillTemplate(QString text, const QList<std::pair<QString, QString>> &values) {
    for (const auto &[placeholder, value] : values) {
        text.replace(placeholder, value);
    }
    return text;
}

Asker::Asker(EngineAgent &agent, Resources resources, std::chrono::milliseconds retryDelay,
             ModelChoice model)
    : m_agent(&agent)
    , m_resources(std::move(resources))
    , m_retryDelay(retryDelay)
    , m_model(std::move(model)) {}

AgentRequest Asker::requestFor(const Question &question, AgentKind agent) const {
    const auto schema = m_resources.text(question.schemaName, QStringLiteral("json"));
    if (!schema) {
        throw AgentError::missingInstruction();
    }
    const std::optional<QString> model =
        question.model || !m_model ? question.model : m_model(agent);
    return {question.prompt, *schema, model, question.web};
}

void Asker::rethrowOrLog(const AgentError &error, Attempt attempt, const QString &step,
                         const AgentSpend &spent) {
    if (attempt == Attempt::Second || !error.mayRetry()) {
        throw error.withSpent(spent);
    }
    logLine(step + QStringLiteral(" failed, trying again: ") + error.text().simplified());
}

} // namespace vorle
