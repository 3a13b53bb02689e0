#pragma once

#include "core/Topic.h"

namespace vorle {

/// The one text that says what a topic is about where there is room for one: the judge's gist, else
/// its summary; "" for a topic that has neither.
inline QString gistOf(const Topic &topic) {
    const QString gist = topic.tldr.value_or(QString());
    return gist.isEmpty() ? topic.summary : gist;
}

/// What a topic belongs to: its project, else the interest it answers; "" for neither.
inline QString subjectOf(const Topic &topic) {
    return topic.project.value_or(topic.interest.value_or(QString()));
}

} // namespace vorle
