#include "agents/AgentError.h"
#include "agents/StructuredOutput.h"
#include "base/Json.h"
#include "core/Judgment.h"

#include <QJsonDocument>

#include <cmath>
#include <cstdio>
#include <cstdlib>

// Whatever an agent prints, it is an answer that is JSON, at a price that is one, or an error that
// says something.
namespace {

using namespace vorle;

void require(bool holds, const char *what, const QByteArray &input) {
    if (!holds) {
        std::fprintf(stderr, "%s:\n%s\n", what, input.constData());
        std::abort();
    }
}

void requirePrice(const std::optional<double> &cost, const QByteArray &input) {
    require(!cost || (std::isfinite(*cost) && *cost >= 0), "not a price", input);
}

template <class Unwrap>
void tryUnwrapping(Unwrap unwrap, const QByteArray &input) {
    try {
        const AgentResult result = unwrap(input);
        requirePrice(result.costUSD, input);
        require(result.json != "null", "nothing taken for an answer", input);
        try {
            json::decode<QList<Judgment>>(result.json);
        } catch (const json::DecodeError &error) {
            require(*error.what() != '\0', "an unnamed fault", input);
        }
    } catch (const AgentError &error) {
        requirePrice(error.costUSD(), input);
        require(!error.text().trimmed().isEmpty(), "an error without a word", input);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    tryUnwrapping(unwrapClaude, input);
    tryUnwrapping(unwrapCodex, input);
    requirePrice(claudeFailure(input).costUSD, input);
    return 0;
}
