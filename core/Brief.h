#pragma once

#include "base/Json.h"

#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// The reading notes ("fiche de lecture") written for one topic, kept inside it.
struct Brief {
    struct Part {
        QString title;
        QString body;
        json::Rest unknown = {}; ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("title", &Part::title), json::field("body", &Part::body));
        }
        static constexpr auto jsonRest() { return &Part::unknown; }
        bool operator==(const Part &) const = default;
    };

    struct Source {
        QString title;
        QString url;
        QString adds;            ///< what this source adds to the others
        json::Rest unknown = {}; ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("title", &Source::title),
                              json::field("url", &Source::url), json::field("adds", &Source::adds));
        }
        static constexpr auto jsonRest() { return &Source::unknown; }
        bool operator==(const Source &) const = default;
    };

    QList<Part> essentials;
    QList<Part> details;
    std::optional<QString> project; ///< what the topic means for the user's project
    QList<QString> unclear;         ///< the points that stay unclear
    QList<Source> sources;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("essentials", &Brief::essentials), json::field("details", &Brief::details),
            json::field("project", &Brief::project), json::field("unclear", &Brief::unclear),
            json::field("sources", &Brief::sources));
    }
    static constexpr auto jsonRest() { return &Brief::unknown; }
    bool operator==(const Brief &) const = default;
};

} // namespace vorle
