#include "agents/UsageLimit.h"

#include "agents/AgentWords.h"
#include "base/Text.h"
#include "base/WallClock.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto clocksApart = 2min;
constexpr auto minWait = 1min;
constexpr qsizetype wordsCharacters = 300;

QRegularExpression pattern(const char *text) {
    QRegularExpression made(QString::fromLatin1(text), QRegularExpression::CaseInsensitiveOption);
    made.optimize();
    return made;
}

/// Months as agents abbreviate them.
constexpr std::array<QStringView, 12> months{u"jan", u"feb", u"mar", u"apr", u"may", u"jun",
                                             u"jul", u"aug", u"sep", u"oct", u"nov", u"dec"};

/// "2 days 17 hours 14 minutes".
std::optional<UsageLimit::In> spanIn(const QString &words) {
    static const QRegularExpression span = pattern(
        "again in ((?:[0-9]{1,4} ?(?:days?|hours?|minutes?|seconds?)(?:,? and |,? |\\b))+)");
    static const QRegularExpression part = pattern("([0-9]{1,4}) ?(day|hour|minute|second)");
    const auto found = span.match(words);
    if (!found.hasMatch()) {
        return std::nullopt;
    }
    std::chrono::seconds wait{0};
    for (auto parts = part.globalMatch(found.capturedView(1)); parts.hasNext();) {
        const auto one = parts.next();
        const int count = one.capturedView(1).toInt();
        switch (one.capturedView(2).front().toLower().unicode()) {
        case u'd':
            wait += std::chrono::days(count);
            break;
        case u'h':
            wait += std::chrono::hours(count);
            break;
        case u'm':
            wait += std::chrono::minutes(count);
            break;
        default:
            wait += std::chrono::seconds(count);
        }
    }
    return UsageLimit::In{wait};
}

/// "1", "", "p" as 13:00; "13", "00", "" as it stands.
QTime timeOf(int hour, QStringView minutes, QStringView half) {
    if (half.isEmpty()) {
        return minutes.isEmpty() ? QTime() : QTime(hour, minutes.toInt());
    }
    const bool afternoon = half.front().toLower() == u'p';
    return hour >= 1 && hour <= 12 ? QTime(hour % 12 + (afternoon ? 12 : 0), minutes.toInt())
                                   : QTime();
}

/// "resets 1pm (Europe/Lisbon)", "resets Nov 25, 1:30 pm", "try again at 2:57 PM".
std::optional<UsageLimit::At> timeIn(const QString &words) {
    static const QRegularExpression moment = pattern(
        "(?:resets|again)(?: at| on)? "
        "(?:(jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec)[a-z]* ([0-9]{1,2})(?:st|nd|rd|th)?"
        "(?:,? ([0-9]{4}))?(?:,? at |, | ))?"
        "([0-9]{1,2})(?::([0-9]{2}))? ?(?:([ap])\\.?m\\b\\.?)?(?![0-9:])"
        "(?: ?\\(([^()]{1,60})\\))?");
    const auto found = moment.match(words);
    if (!found.hasMatch()) {
        return std::nullopt;
    }
    UsageLimit::At at{
        timeOf(found.capturedView(4).toInt(), found.capturedView(5), found.capturedView(6))};
    at.zone = found.captured(7).trimmed().toLatin1();
    if (!at.time.isValid() || (!at.zone.isEmpty() && !QTimeZone(at.zone).isValid())) {
        return std::nullopt;
    }
    if (found.hasCaptured(1)) {
        const QString name = found.captured(1).toLower();
        at.month =
            static_cast<int>(std::ranges::find(months, QStringView(name)) - months.begin()) + 1;
        at.day = found.capturedView(2).toInt();
        at.year = found.capturedView(3).toInt();
        // Any leap year will do where no year is named.
        if (!QDate::isValid(at.year > 0 ? at.year : 2024, at.month, at.day)) {
            return std::nullopt;
        }
    }
    return at;
}

std::optional<QDateTime> momentOf(const UsageLimit::At &at, const QDateTime &now,
                                  const QTimeZone &local) {
    const QTimeZone zone = at.zone.isEmpty() ? local : QTimeZone(at.zone);
    const QDateTime soonest = now.addSecs(-std::chrono::seconds(clocksApart).count());
    const QDate today = now.toTimeZone(zone).date();
    QList<QDate> days{today.addDays(-1), today, today.addDays(1)}; // just past midnight too
    if (at.month > 0) {
        days = {QDate(at.year > 0 ? at.year : today.year(), at.month, at.day)};
        if (at.year == 0) {
            days += QDate(today.year() + 1, at.month, at.day);
        }
    }
    for (const QDate &day : std::as_const(days)) {
        const QDateTime moment = day.isValid() ? momentOn(day, at.time, zone) : QDateTime();
        if (moment.isValid() && moment >= soonest) {
            const bool isPast = moment <= now;
            return isPast ? now.addSecs(std::chrono::seconds(clocksApart).count()) : moment;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<QDateTime> UsageLimit::until(const QDateTime &now, const QTimeZone &local) const {
    std::optional<QDateTime> moment;
    if (const auto *span = std::get_if<In>(&resets)) {
        moment = now.toUTC().addSecs(std::max<std::chrono::seconds>(span->wait, minWait).count());
    } else if (const auto *at = std::get_if<At>(&resets)) {
        moment = momentOf(*at, now.toUTC(), local);
    }
    const bool isNear = moment && *moment <= now.addSecs(std::chrono::seconds(maxWait).count());
    return isNear ? moment : std::nullopt;
}

std::optional<UsageLimit> usageLimit(const QString &words) {
    static const QRegularExpression phrase =
        pattern("hit your (?:[a-z0-9-]+ ){0,2}limit|"
                "(?:usage|rate|session|weekly|[0-9]+-hour) limit reached");
    const auto found = phrase.match(words);
    if (!found.hasMatch()) {
        return std::nullopt;
    }
    const qsizetype start = words.lastIndexOf(u'\n', found.capturedStart()) + 1;
    const qsizetype end = words.indexOf(u'\n', found.capturedEnd());
    const QString line = words.mid(start, end < 0 ? -1 : end - start);
    UsageLimit limit{clampedLine(sanitized(line), wordsCharacters), {}};
    const QString told = words.sliced(found.capturedStart()).simplified();
    if (const auto span = spanIn(told)) {
        limit.resets = *span;
    } else if (const auto time = timeIn(told)) {
        limit.resets = *time;
    }
    return limit;
}

} // namespace vorle
