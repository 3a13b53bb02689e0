#include "agents/AgentError.h"
#include "agents/AgentWords.h"
#include "agents/StructuredOutput.h"
#include "base/Json.h"
#include "base/Text.h"
#include "tests/fuzz/Require.h"

#include <QJsonDocument>

#include <algorithm>
#include <cmath>

// What an agent printed, as either agent's answer. Whatever it is, it unwraps to a JSON value
// without control characters and halves of them, which a record decodes from or is refused by; or
// to an error that says something, briefly and harmlessly; and a cost is a sum of money.
namespace {

using namespace vorle;
using fuzz::require;

struct Part {
    QString title;
    std::optional<QString> body;
    double minutes = 0;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &Part::title), json::field("body", &Part::body),
                          json::field("minutes", &Part::minutes));
    }
};

struct Answer {
    QList<Part> parts;

    static constexpr auto jsonFields() { return std::tuple(json::field("parts", &Answer::parts)); }
};

bool isHarmless(const QString &text) {
    return std::none_of(text.begin(), text.end(), [](QChar c) {
        return (c.unicode() < 0x20 && c != u'\n' && c != u'\t') ||
               (c.unicode() >= 0x7F && c.unicode() < 0xA0);
    });
}

bool isMoney(std::optional<double> cost) { return !cost || (std::isfinite(*cost) && *cost >= 0); }

void checkAnswer(const AgentResult &result, const QByteArray &input) {
    require(isMoney(result.spent.costUSD), "no sum of money", input);
    require(!QJsonDocument::fromJson(result.json).isNull(), "no JSON any more", input);
    try {
        for (const Part &part : json::decode<Answer>(result.json).parts) {
            QString lines = part.title + part.body.value_or(QString());
            require(isHarmless(lines.remove(u'\r')), "a control character", input);
        }
    } catch (const json::DecodeError &) {
        // Another shape.
    }
}

void checkError(const AgentError &error, const QByteArray &input) {
    require(!trimmed(error.text()).isEmpty(), "a blank error", input);
    require(isHarmless(error.text()), "a harmful error", input);
    require(error.text().size() <= 20'000, "a long error", input);
    require(isMoney(error.spent().costUSD), "no sum of money", input);
}

template <class Act>
void attempt(const QByteArray &input, Act act) {
    try {
        act();
    } catch (const AgentError &error) {
        checkError(error, input);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    attempt(input, [&] { checkAnswer(unwrapClaude(input), input); });
    attempt(input, [&] { checkAnswer(unwrapCodex(input), input); });
    attempt(input, [&] { makeStrict(QString::fromUtf8(input)); });
    const ClaudeFailure failure = claudeFailure(input);
    require(isMoney(failure.spent.costUSD), "no sum of money", input);
    checkError(AgentError::stopped(1, failure.text), input);
    checkError(AgentError::message(QString::fromUtf8(input)), input);
    return 0;
}
