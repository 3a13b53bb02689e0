#include "core/Decision.h"

namespace vorle {

std::optional<Refusal> refusal(const Topic &topic, TopicStatus target) {
    if (target == TopicStatus::Dismissed || !isUnjudgedCapture(topic)) {
        return std::nullopt;
    }
    return isBeingRead(topic) ? Refusal::BeingRead : Refusal::DismissedUnread;
}

} // namespace vorle
