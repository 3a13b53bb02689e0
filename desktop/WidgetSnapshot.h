#pragma once

#include "base/Json.h"
#include "core/Settings.h"
#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QTimeZone>
#include <QUuid>

#include <optional>

namespace vorle {

/// The app's state in small, for a widget of the home screen or a status bar, which only show it:
/// labels are worked out here. Encoded compactly its keys stand in this order.
struct WidgetSnapshot {
    /// A topic. `score` is the one shown on its card, absent where nothing could be read; `gallery`
    /// the paths of its pictures on this machine; `unread` says that nobody has decided on it yet.
    struct Item {
        QUuid id;
        QString title;
        std::optional<int> score;
        QList<QString> gallery;
        QString detail; ///< "Potager · 20 min"
        bool unread = false;

        static constexpr auto jsonFields() {
            return std::tuple(
                json::field("id", &Item::id), json::field("title", &Item::title),
                json::field("score", &Item::score), json::field("gallery", &Item::gallery),
                json::field("detail", &Item::detail), json::field("unread", &Item::unread));
        }
        bool operator==(const Item &) const = default;
    };
    /// The next run: when, and that in words as relativeTimeText() had them then.
    struct NextSearch {
        QDateTime at;
        QString label;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("at", &NextSearch::at),
                              json::field("label", &NextSearch::label));
        }
        bool operator==(const NextSearch &) const = default;
    };
    /// Colours as "#RRGGBB", for a light and for a dark ground.
    struct Colours {
        QString light;
        QString dark;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("light", &Colours::light),
                              json::field("dark", &Colours::dark));
        }
        bool operator==(const Colours &) const = default;
    };

    /// How many topics each list holds at most.
    static constexpr qsizetype maxItems = 8;

    QList<Item> toSort;
    int toSortCount = 0;
    QList<Item> program; ///< what fits in the week, then what waits
    int programCount = 0;
    int weekDone = 0;    ///< minutes of what was done this week
    int weekPlanned = 0; ///< minutes of what fits
    int weekBudget = 0;  ///< minutes a week
    int weekDoneCount = 0;
    QString weekLabel;
    QString weekLeftLabel;
    QString weekBudgetLabel;
    std::optional<NextSearch> nextSearch; ///< absent when no run is scheduled
    bool searching = false;
    Colours accent;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("toSort", &WidgetSnapshot::toSort),
                          json::field("toSortCount", &WidgetSnapshot::toSortCount),
                          json::field("program", &WidgetSnapshot::program),
                          json::field("programCount", &WidgetSnapshot::programCount),
                          json::field("weekDone", &WidgetSnapshot::weekDone),
                          json::field("weekPlanned", &WidgetSnapshot::weekPlanned),
                          json::field("weekBudget", &WidgetSnapshot::weekBudget),
                          json::field("weekDoneCount", &WidgetSnapshot::weekDoneCount),
                          json::field("weekLabel", &WidgetSnapshot::weekLabel),
                          json::field("weekLeftLabel", &WidgetSnapshot::weekLeftLabel),
                          json::field("weekBudgetLabel", &WidgetSnapshot::weekBudgetLabel),
                          json::field("nextSearch", &WidgetSnapshot::nextSearch),
                          json::field("searching", &WidgetSnapshot::searching),
                          json::field("accent", &WidgetSnapshot::accent));
    }
    bool operator==(const WidgetSnapshot &) const = default;
};

/// What a snapshot is drawn from: values alone.
struct WidgetSource {
    QList<TopicPtr> topics; ///< all of them, in the store's order
    int weeklyMinutes = 0;
    Accent accent = Accent::Braise;
    std::optional<QDateTime> nextSearch;
    bool searching = false;
    QDateTime now;
    QTimeZone zone;
    QString pictures; ///< the folder of the topics' pictures, which are looked for; "" for none
};

/// Reads whether the pictures of the topics shown are there; else pure. Any thread. Linear in the
/// topics.
WidgetSnapshot widgetSnapshot(const WidgetSource &source);

/// A moment as seen from `now`, in French: "aujourd’hui, dans 12 min" within the hour, "18:30" else
/// on the same day, "demain", "dans 4 jours", "hier" of what was due then, and the day, "2
/// novembre", of what was due before. Pure.
QString relativeTimeText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone);

} // namespace vorle
