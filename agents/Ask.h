#pragma once

#include "agents/EngineAgent.h"
#include "base/Json.h"
#include "base/Resources.h"

#include <QList>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace vorle {

/// The instruction `name`.md.
/// @throws AgentError "Consigne du moteur absente de l’app." when it is missing or unreadable
QString loadPrompt(const Resources &resources, const QString &name);

/// `text` with every occurrence of each placeholder replaced by its value, literally, one
/// placeholder after the other in the order given: a value put in is searched for the
/// placeholders that follow, so texts of foreign origin come last.
QString fillTemplate(QString text, const QList<std::pair<QString, QString>> &values);

/// One question to the agent.
struct Question {
    QString prompt;     ///< filled in, ready to send
    QString schemaName; ///< the resource `schemaName`.json
    QString step;       ///< what the log calls it
    WebAccess web = WebAccess::Off;
    std::optional<QString> model;   ///< instead of the user's
    std::optional<AgentKind> agent; ///< instead of the chosen one
};

template <class Answer>
struct Asked {
    Answer answer;
    AgentSpend spent; ///< of all calls that told theirs, the failed one included
};

/// Asks the agent and decodes its answer, with one retry. Main thread; it and the agent must
/// outlive every question under way.
class Asker {
public:
    /// The model that the user wants of that agent, asked at each question; nothing: its own
    /// choice.
    using ModelChoice = std::function<std::optional<QString>(AgentKind)>;

    explicit Asker(EngineAgent &agent, Resources resources = Resources(),
                   std::chrono::milliseconds retryDelay = std::chrono::seconds(5),
                   ModelChoice model = {});

    const Resources &resources() const { return m_resources; }
    EngineAgent &agent() const { return *m_agent; }

    /// `Answer` is a record with jsonFields(). The agent is chosen once, and called only when it is
    /// ready. A failure that allows it (AgentError::mayRetry) is
    /// logged and the call made once more after a pause; a second one is thrown as it is, with what
    /// both calls took.
    /// @throws AgentError, std::system_error, Cancelled, as EngineAgent::check and run; AgentError
    ///   also when the schema is missing or the answer does not decode
    template <class Answer>
    Task<Asked<Answer>> ask(Question question, CancelToken cancel = {}) {
        const AgentKind agent = m_agent->locator().choose(question.agent);
        const AgentRequest request = requestFor(question, agent);
        AgentSpend spent;
        for (Attempt attempt = Attempt::First;; attempt = Attempt::Second) {
            try {
                m_agent->check(agent);
                const AgentResult result = co_await m_agent->run(request, agent, cancel);
                spent += result.spent;
                co_return Asked<Answer>{decoded<Answer>(result.json), spent};
            } catch (const AgentError &error) {
                spent += error.spent();
                rethrowOrLog(error, attempt, question.step, spent);
            }
            co_await sleepFor(m_retryDelay, cancel);
        }
    }

private:
    enum class Attempt { First, Second };

    AgentRequest requestFor(const Question &question, AgentKind agent) const;
    /// @throws AgentError, the same with what was spent, when no further attempt is due
    static void rethrowOrLog(const AgentError &error, Attempt attempt, const QString &step,
                             const AgentSpend &spent);

    template <class Answer>
    static Answer decoded(const QByteArray &json) {
        try {
            return json::decode<Answer>(json);
        } catch (const json::DecodeError &) {
            throw AgentError::unreadable();
        }
    }

    EngineAgent *m_agent;
    Resources m_resources;
    std::chrono::milliseconds m_retryDelay;
    ModelChoice m_model;
};

} // namespace vorle
