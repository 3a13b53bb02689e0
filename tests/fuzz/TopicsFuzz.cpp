#include "core/TopicSalvage.h"
#include "tests/fuzz/Require.h"

#include <algorithm>

// Whatever the bytes of a topics file are, they are a list of topics or none. One that is, is
// written and read again the same, and every entry of it can be read by itself; what can be read of
// one that is none makes a list that is.
namespace {

using namespace vorle;
using fuzz::require;

std::optional<QList<Topic>> decoded(const QByteArray &utf8) {
    try {
        return json::decode<QList<Topic>>(utf8);
    } catch (const json::DecodeError &) {
        return std::nullopt;
    }
}

/// Whether a value of several lines stands under a key that the record does not know.
bool hasLines(const json::Rest &unknown) {
    return std::ranges::any_of(unknown,
                               [](const QByteArray &value) { return value.contains('\n'); });
}

bool hasUnknownLines(const Topic &topic) {
    const auto inside = [](const auto &part) { return hasLines(part.unknown); };
    return inside(topic) || std::ranges::any_of(topic.sources, inside) ||
           std::ranges::any_of(topic.gallery, inside) ||
           (topic.correction && inside(*topic.correction));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto topics = decoded(bytes);
    const TopicSalvage salvage = salvageTopics(bytes);
    require(salvage.entries() <= bytes.count('{'), "an entry without a beginning");
    for (const QList<Topic> &list : {topics.value_or(QList<Topic>()), salvage.topics}) {
        const QByteArray written = json::encode(list, json::Style::Pretty);
        const auto again = decoded(written);
        require(again.has_value(), "what was written cannot be read");
        require(*again == list, "another list was written");
        require(json::encode(*again, json::Style::Pretty) == written, "not written the same twice");
        if (std::ranges::any_of(list, hasUnknownLines)) {
            continue; // kept as they are, they may look like the beginning of an entry
        }
        const TopicSalvage whole = salvageTopics(written);
        require(whole.left == 0 && whole.topics == list, "an entry cannot be read by itself");
    }
    return 0;
}
