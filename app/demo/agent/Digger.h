#pragma once

#include "app/demo/DemoCatalogue.h"
#include "base/Json.h"

#include <QHash>

namespace vorle::demo {

struct DugUp {
    QString id;
    bool found = false;
    QString url;
    QString title;
    QString what; ///< English

    static constexpr auto jsonFields() {
        return std::tuple(json::field("id", &DugUp::id), json::field("found", &DugUp::found),
                          json::field("url", &DugUp::url), json::field("title", &DugUp::title),
                          json::field("what", &DugUp::what));
    }
    bool operator==(const DugUp &) const = default;
};

struct DugAnswer {
    QList<DugUp> results;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("results", &DugAnswer::results));
    }
    bool operator==(const DugAnswer &) const = default;
};

/// Answers the instruction for pages that could not be read: a dead page of `site` that has a copy
/// is found there, anything else is not found. One result for every item, in their order.
DugAnswer dig(const QHash<QString, QString> &values, const DemoCatalogue &catalogue,
              const QString &site);

} // namespace vorle::demo
