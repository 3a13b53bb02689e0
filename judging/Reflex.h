#pragma once

#include "base/Json.h"

#include <QString>

#include <array>
#include <string_view>

namespace vorle {

/// A small rule learned from the user's decisions: a French face with its figures, which they can
/// switch off, and an English line for the judge. Learned anew each time, never stored.
struct Reflex {
    enum class Group {
        Up,   ///< scores pushed up
        Down, ///< scores pushed down
        Waits ///< items that wait
    };
    static constexpr std::array groups{Group::Up, Group::Down, Group::Waits};
    friend constexpr std::array<std::string_view, 3> rawStrings(Group) {
        return {"up", "down", "waits"};
    }

    QString id; ///< made from the rule and its subject, so that it stays the same rule when learned
                ///< again: what the settings keep of a reflex that was switched off
    Group group = Group::Up;
    QString effect;      ///< what it does to scores, in a word or two: "+2"
    QString title;       ///< French: the rule as the user reads it
    QString evidence;    ///< French: the figures it rests on
    QString instruction; ///< English: the line given to the judge

    bool operator==(const Reflex &) const = default;
};

} // namespace vorle
