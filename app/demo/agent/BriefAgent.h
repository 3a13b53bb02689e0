#pragma once

#include "app/demo/DemoCatalogue.h"
#include "core/Brief.h"

#include <QHash>

#include <optional>

namespace vorle::demo {

struct BriefAnswer {
    QList<Brief::Part> essentials;
    QList<Brief::Part> details;
    std::optional<QString> code;
    std::optional<QString> forProject;
    QList<QString> unclear;
    QList<Brief::Source> sources;
    int minutes = 1;

    static constexpr auto jsonFields() {
        using N = BriefAnswer;
        return std::tuple(json::field("essentials", &N::essentials),
                          json::field("details", &N::details), json::field("code", &N::code),
                          json::field("forProject", &N::forProject),
                          json::field("unclear", &N::unclear), json::field("sources", &N::sources),
                          json::field("minutes", &N::minutes));
    }
    bool operator==(const BriefAnswer &) const = default;
};

/// Answers the instruction for a reading note from what the prompt says: the page's own sentences,
/// set in order. Where nothing was read, a dead page of `site` that has a copy is read there. The
/// same prompt always gives the same answer.
BriefAnswer writeBrief(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                       const QString &site);

} // namespace vorle::demo
