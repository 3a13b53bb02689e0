#pragma once

#include "app/demo/DemoCatalogue.h"
#include "base/Json.h"

#include <QHash>

namespace vorle::demo {

struct Found {
    QString title;
    QString url;
    QString kind;
    QString about;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &Found::title), json::field("url", &Found::url),
                          json::field("kind", &Found::kind), json::field("about", &Found::about));
    }
    bool operator==(const Found &) const = default;
};

struct FoundAnswer {
    QList<Found> candidates;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("candidates", &FoundAnswer::candidates));
    }
    bool operator==(const FoundAnswer &) const = default;
};

/// Answers the candidates instruction from the pages of `site`: what its placeholders hold says
/// which subjects, how many and which links to leave out. The lightest of three topics or more
/// comes back empty the first time, so that the second search is seen.
FoundAnswer scout(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
                  const QString &site);

} // namespace vorle::demo
