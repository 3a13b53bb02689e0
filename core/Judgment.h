#pragma once

#include "base/Json.h"

#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// What sort of thing an item is. The list is closed: another word fails to decode.
enum class ItemKind { Article, Video, Tool, Package, Product, Discussion, Announcement, Security };
constexpr std::array<std::string_view, 8> rawStrings(ItemKind) {
    return {"article", "video",      "tool",         "package",
            "product", "discussion", "announcement", "security"};
}

/// How much of a topic's main source could be read.
enum class ReadLevel {
    Full, ///< the page's own text
    Seen, ///< a part of it: the page was cut at its size limit
    Meta, ///< its title or description alone
    None  ///< nothing
};
constexpr std::array<std::string_view, 4> rawStrings(ReadLevel) {
    return {"full", "seen", "meta", "none"};
}

/// The judge's assessment of one candidate, with the JSON keys of its answer.
struct Judgment {
    /// Grades from 0 to 10, and the effort the item asks in minutes.
    struct Criteria {
        int impact = 0;
        int actionability = 0;
        int novelty = 0;
        int reliability = 0;
        int effortMinutes = 0;
        json::Rest unknown = {}; ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("impact", &Criteria::impact),
                              json::field("actionability", &Criteria::actionability),
                              json::field("novelty", &Criteria::novelty),
                              json::field("reliability", &Criteria::reliability),
                              json::field("effort_minutes", &Criteria::effortMinutes));
        }
        static constexpr auto jsonRest() { return &Criteria::unknown; }
        bool operator==(const Criteria &) const = default;
    };

    struct Urgency {
        enum class Level {
            None,
            Before, ///< to act on before a date
            Now
        };
        friend constexpr std::array<std::string_view, 3> rawStrings(Level) {
            return {"none", "before", "now"};
        }

        Level level = Level::None;
        std::optional<QString> date;   ///< the deadline, when the level is Before
        std::optional<QString> reason; ///< what the deadline is
        json::Rest unknown = {};       ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("level", &Urgency::level),
                              json::field("date", &Urgency::date),
                              json::field("reason", &Urgency::reason));
        }
        static constexpr auto jsonRest() { return &Urgency::unknown; }
        bool operator==(const Urgency &) const = default;
    };

    QString id; ///< the candidate being judged
    ItemKind kind = ItemKind::Article;
    Criteria criteria;
    double relevance = 0; ///< overall grade, 0 to 10; the topic's score is made from it
    Urgency urgency;
    QString tldr;
    QString summary;
    QString why;
    QString firstStep;
    QList<QString> changes;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("id", &Judgment::id), json::field("kind", &Judgment::kind),
            json::field("criteria", &Judgment::criteria),
            json::field("relevance", &Judgment::relevance),
            json::field("urgency", &Judgment::urgency), json::field("tldr", &Judgment::tldr),
            json::field("summary", &Judgment::summary), json::field("why", &Judgment::why),
            json::field("first_step", &Judgment::firstStep),
            json::field("changes", &Judgment::changes));
    }
    bool operator==(const Judgment &) const = default;
};

} // namespace vorle
