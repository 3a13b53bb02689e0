#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringView>
#include <QTimeZone>

#include <chrono>
#include <optional>
#include <variant>

namespace vorle {

/// An account's limit, as the agent tells that it was reached. No agent tells what is left of it.
struct UsageLimit {
    struct In {
        std::chrono::seconds wait{0};
        bool operator==(const In &) const = default;
    };
    struct At {
        QTime time;
        QByteArray zone = {}; ///< the zone's name; empty: that of this machine
        int month = 0;        ///< 1 to 12; 0 where no day is named: the next time it is so late
        int day = 0;
        int year = 0; ///< 0 where none is named
        bool operator==(const At &) const = default;
    };

    /// No agent makes one wait longer: what tells of a later moment was misread.
    static constexpr std::chrono::days maxWait{31};

    QString words; ///< the agent's own sentence, harmless and at most 300 characters
    /// When it is lifted; neither where the agent does not say or cannot be understood.
    std::variant<std::monostate, In, At> resets;

    /// The moment past `now` at which it is lifted, in UTC; nothing where that is not known, or
    /// more than `maxWait` away. A time that passed at most two minutes ago is two minutes ahead:
    /// two clocks are never quite alike.
    std::optional<QDateTime> until(const QDateTime &now, const QTimeZone &local) const;

    bool operator==(const UsageLimit &) const = default;
};

/// What an agent's failure tells of a limit that was reached; nothing for any other failure.
/// `words` is the failure's own text, never an answer: a page could hold such a sentence. Pure, any
/// thread.
std::optional<UsageLimit> usageLimit(const QString &words);

} // namespace vorle
