#include "search/run/Pipeline.h"

#include "agents/PromptText.h"
#include "base/Text.h"
#include "base/WebLink.h"

namespace vorle {

namespace {

constexpr qsizetype titleCharacters = 300;
constexpr qsizetype whatCharacters = 4'000;
constexpr qsizetype nameCharacters = 1'000; ///< of a project, its description with it
constexpr qsizetype aboutCharacters = 200;

struct CandidatesAnswer {
    QList<Candidate> candidates;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("candidates", &CandidatesAnswer::candidates));
    }
};

struct DigAnswer {
    QList<Dug> results;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("results", &DigAnswer::results));
    }
};

QString digBlock(const DigItem &item) {
    const auto link = WebLink::from(item.url, WebLink::Giver::User);
    return QStringLiteral("### id: ") + item.id + QStringLiteral("\nTitle: ") +
           oneLine(item.title, titleCharacters) + QStringLiteral("\nLink: ") +
           (link ? link->text() : oneLine(item.url, titleCharacters)) +
           QStringLiteral("\nAbout: ") + oneLine(item.about, aboutCharacters);
}

QString joinedOr(const QStringList &list, const QString &separator, const QString &none) {
    QStringList held;
    for (const QString &text : list) {
        held += oneLine(text, nameCharacters);
    }
    return held.isEmpty() ? none : held.join(separator);
}

QString exclusionList(const QStringList &exclusions) {
    return joinedOr(exclusions, QStringLiteral(", "), QStringLiteral("none"));
}

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

Question Pipeline::screening(const SitesRequest &request, const QStringList &itemLines,
                             AgentKind agent) const {
    const QString none = QStringLiteral("none declared");
    const QString comma = QStringLiteral(", ");
    Question question;
    const QString instruction = loadPrompt(m_asker->resources(), QStringLiteral("sites-prompt"));
    // One pass: links and items are strangers' texts, and may hold a placeholder.
    const auto filled = [&](const QString &known) {
        return replacedOnce(
            instruction,
            {{QStringLiteral("@TODAY"), promptDate(request.today)},
             {QStringLiteral("@PROJECTS"),
              joinedOr(request.projects, QStringLiteral("; "), QStringLiteral("nothing declared"))},
             {QStringLiteral("@INTERESTS"), joinedOr(request.interests, comma, none)},
             {QStringLiteral("@TOOLS"), joinedOr(request.tools, comma, none)},
             {QStringLiteral("@EXCLUDED"), exclusionList(request.exclusions)},
             {QStringLiteral("@COUNT"), QString::number(request.count)},
             {QStringLiteral("@KNOWN"), known.isEmpty() ? QStringLiteral("none") : known},
             {QStringLiteral("@ITEMS"), itemLines.join(u'\n')}});
    };
    // Under a limit the items come first, then as many known links as fit.
    const bool limited = EngineAgent::promptLimit(agent).has_value();
    const qsizetype room = limited ? promptBytes - promptSize(filled({})) : knownBytes;
    question.prompt = filled(joinedLinks(request.knownLinks, std::min(room, knownBytes)));
    question.schemaName = QStringLiteral("candidates-schema");
    question.step = QStringLiteral("items of trusted sites");
    question.web = WebAccess::On;
    question.agent = agent;
    return question;
}

Question Pipeline::digging(const QList<DigItem> &items, const DigFrame &frame) const {
    QStringList blocks;
    for (const DigItem &item : items) {
        blocks += digBlock(item);
    }
    Question question;
    question.prompt =
        replacedOnce(loadPrompt(m_asker->resources(), QStringLiteral("dig-prompt")),
                     {{QStringLiteral("@TODAY"), frame.today.toString(Qt::ISODate)},
                      {QStringLiteral("@EXCLUDED"), exclusionList(frame.exclusions)},
                      {QStringLiteral("@ITEMS"), blocks.join(QStringLiteral("\n\n"))}});
    question.schemaName = QStringLiteral("dig-schema");
    question.step = QStringLiteral("digging for unreadable pages");
    question.web = WebAccess::On;
    question.agent = frame.agent;
    return question;
}

Task<Pipeline::Found> Pipeline::candidates(Question question, CancelToken cancel) {
    auto asked = co_await m_asker->ask<CandidatesAnswer>(std::move(question), std::move(cancel));
    Found found;
    found.spent = asked.spent;
    for (Candidate &candidate : asked.answer.candidates) {
        const auto link = WebLink::from(candidate.url);
        if (!link) {
            ++found.refused;
            continue;
        }
        candidate.url = link->text();
        candidate.title = clampedLine(candidate.title, titleCharacters);
        candidate.about = clampedLine(candidate.about, aboutCharacters).simplified();
        found.candidates.append(std::move(candidate));
    }
    co_return found;
}

Task<Pipeline::DugUp> Pipeline::dig(QList<DigItem> items, DigFrame frame, CancelToken cancel) {
    auto asked = co_await m_asker->ask<DigAnswer>(digging(items, frame), std::move(cancel));
    DugUp dug;
    dug.spent = asked.spent;
    for (Dug &result : asked.answer.results) {
        const auto link = WebLink::from(result.url);
        if (!result.found || !link) {
            continue;
        }
        result.url = link->text();
        result.title = clampedLine(result.title, titleCharacters);
        result.what = clampedLines(result.what, whatCharacters);
        dug.results.append(std::move(result));
    }
    co_return dug;
}

} // namespace vorle
