#pragma once

#include "core/Judgment.h"

#include <QHash>

namespace vorle::demo {

struct GradeAnswer {
    QList<Judgment> judgments;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("judgments", &GradeAnswer::judgments));
    }
    bool operator==(const GradeAnswer &) const = default;
};

/// Answers the judge's instruction: one judgment for each candidate block, drawn from what the
/// block and the profile say. The same prompt always gives the same answer.
GradeAnswer grade(const QHash<QString, QString> &values);

} // namespace vorle::demo
