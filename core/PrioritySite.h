#pragma once

#include "base/Json.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace vorle {

/// A site the user trusts.
struct PrioritySite {
    QString address;                  ///< as the user typed it
    std::optional<QString> feed;      ///< its feed's address, once discovered
    std::optional<QDateTime> checked; ///< when discovery last ran
    json::Rest unknown = {};          ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("address", &PrioritySite::address),
                          json::field("feed", &PrioritySite::feed),
                          json::field("checked", &PrioritySite::checked));
    }
    static constexpr auto jsonRest() { return &PrioritySite::unknown; }
    bool operator==(const PrioritySite &) const = default;
};

} // namespace vorle
