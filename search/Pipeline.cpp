#include "search/Pipeline.h"

#include "base/Text.h"
#include "search/Links.h"

namespace vorle {

namespace {

constexpr qsizetype titleCharacters = 300;
constexpr qsizetype linkCharacters = 2'000;

struct CandidatesAnswer {
    QList<Candidate> candidates;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("candidates", &CandidatesAnswer::candidates));
    }
};

} // namespace

Question Pipeline::question(const PlannedScope &planned, AgentKind agent) const {
    Question question;
    question.prompt =
        candidatesPrompt(loadPrompt(m_asker->resources(), QStringLiteral("candidates-prompt")),
                         planned.scope, planned.request, EngineAgent::promptLimit(agent));
    question.schemaName = QStringLiteral("candidates-schema");
    question.step = QStringLiteral("candidates for ") + planned.name;
    question.web = WebAccess::On;
    question.agent = agent;
    return question;
}

Task<Pipeline::Found> Pipeline::candidates(PlannedScope planned, AgentKind agent,
                                           CancelToken cancel) {
    auto asked =
        co_await m_asker->ask<CandidatesAnswer>(question(planned, agent), std::move(cancel));
    Found found;
    found.costUSD = asked.costUSD;
    for (Candidate &candidate : asked.answer.candidates) {
        candidate.url = trimmed(candidate.url).toString();
        if (candidate.url.size() > linkCharacters || !isHttpLink(candidate.url)) {
            ++found.refused;
            continue;
        }
        candidate.title = firstCharacters(candidate.title.simplified(), titleCharacters).toString();
        candidate.about = candidate.about.simplified();
        found.candidates.append(std::move(candidate));
    }
    co_return found;
}

} // namespace vorle
