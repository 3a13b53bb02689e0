#pragma once

#include "app/models/TopicsSeen.h"

#include <QDateTime>

#include <optional>
#include <utility>

namespace vorle {

/// Since when what comes is new to the person: since they last looked. A visit lasts while the
/// window is in front; who is back within half an hour was never away. On a first visit nothing is
/// new. Pure; kept with the window's place.
class Visits {
public:
    Visits() = default;
    /// As they were kept.
    Visits(std::optional<TopicsSeen> left, std::optional<TopicsSeen> newSince)
        : m_left(std::move(left)), m_newSince(std::move(newSince)) {}

    /// The window is about to be shown, to somebody or to nobody.
    void expect(const QDateTime &now) {
        constexpr qint64 away = 30 * 60;
        if (m_left && m_left->at.secsTo(now) >= away) {
            m_newSince = m_left;
        }
    }
    /// It comes to the front.
    void come(const QDateTime &now) {
        expect(now);
        m_here = true;
    }
    /// It leaves it, with these to be seen.
    void leave(TopicsSeen seen) {
        if (m_here) {
            m_left = std::move(seen);
        }
        m_here = false;
    }

    const std::optional<TopicsSeen> &left() const { return m_left; }
    /// Nothing where nothing is new.
    const std::optional<TopicsSeen> &newSince() const { return m_newSince; }

private:
    std::optional<TopicsSeen> m_left; // when they were last here
    std::optional<TopicsSeen> m_newSince;
    bool m_here = false;
};

} // namespace vorle
