#include "search/feeds/FeedDate.h"

#include "base/Ascii.h"
#include <array>
#include <string_view>

namespace vorle {

namespace {

constexpr std::string_view months = "janfebmaraprmayjunjulaugsepoctnovdec";
constexpr std::array<std::string_view, 12> monthNames{
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};
constexpr std::array<std::string_view, 7> dayNames{"monday", "tuesday",  "wednesday", "thursday",
                                                   "friday", "saturday", "sunday"};

/// A moment as it is written, before its zone is taken off.
struct Written {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int offsetMinutes = 0;
};

/// A place in the text. Each reading moves past what it took, and tells whether it was there.
class Cursor {
public:
    explicit Cursor(std::string_view text) : m_rest(text) {}

    bool atEnd() const { return m_rest.empty(); }
    std::string_view rest() const { return m_rest; }

    bool take(char c) {
        if (m_rest.empty() || m_rest.front() != c) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

    /// Whether there was any.
    bool blanks() {
        const std::size_t before = m_rest.size();
        while (!m_rest.empty() && ascii::isSpace(m_rest.front())) {
            m_rest.remove_prefix(1);
        }
        return m_rest.size() < before;
    }

    /// The remark in parentheses that a mail's date may end with: "+0100 (CET)".
    void comment() {
        const std::size_t open = m_rest.find_first_not_of(" \t\r\n");
        if (open != std::string_view::npos && m_rest[open] == '(' && m_rest.back() == ')') {
            m_rest = {};
        }
    }

    /// A number of `fewest` to `most` digits; -1 for any other count.
    int number(std::size_t fewest, std::size_t most) {
        int value = 0;
        std::size_t digits = 0;
        while (digits < m_rest.size() && ascii::isDigit(m_rest[digits])) {
            if (++digits > most) {
                return -1;
            }
            value = value * 10 + (m_rest[digits - 1] - '0');
        }
        if (digits < fewest) {
            return -1;
        }
        m_digits = digits;
        m_rest.remove_prefix(digits);
        return value;
    }
    std::size_t digits() const { return m_digits; } ///< of the last number

    /// A word in lower case, at most 9 letters of it; empty when it is longer.
    std::string_view word() {
        std::size_t letters = 0;
        while (letters < m_rest.size() && ascii::isLetter(m_rest[letters])) {
            if (letters == m_word.size()) {
                return {};
            }
            m_word[letters] = ascii::lower(m_rest[letters]);
            ++letters;
        }
        m_rest.remove_prefix(letters);
        return {m_word.data(), letters};
    }

private:
    std::string_view m_rest;
    std::array<char, 9> m_word{};
    std::size_t m_digits = 0;
};

/// 1 to 12, or 0.
int monthOf(std::string_view word) {
    if (word.size() < 3) {
        return 0;
    }
    const std::size_t at = months.find(word.substr(0, 3));
    if (at == std::string_view::npos || at % 3 != 0) {
        return 0;
    }
    const bool known = word.size() == 3 || word == monthNames[at / 3];
    return known ? static_cast<int>(at / 3) + 1 : 0;
}

bool isDayName(std::string_view word) {
    for (const std::string_view name : dayNames) {
        if (word == name.substr(0, 3) || word == name) {
            return true;
        }
    }
    return false;
}

/// Minutes east of UTC of a named zone.
std::optional<int> zoneOf(std::string_view name) {
    struct Zone {
        std::string_view name;
        int quarters; ///< of an hour
    };
    // Where one name means several zones, the one of RFC 822, else the one of most feeds: BST is
    // British, IST Indian, CST American.
    static constexpr auto zones = std::to_array<Zone>({
        {"gmt", 0},   {"utc", 0},   {"ut", 0},    {"est", -20}, {"edt", -16},  {"cst", -24},
        {"cdt", -20}, {"mst", -28}, {"mdt", -24}, {"pst", -32}, {"pdt", -28},  {"wet", 0},
        {"west", 4},  {"bst", 4},   {"cet", 4},   {"cest", 8},  {"met", 4},    {"mest", 8},
        {"mez", 4},   {"mesz", 8},  {"eet", 8},   {"eest", 12}, {"msk", 12},   {"trt", 12},
        {"wat", 4},   {"cat", 8},   {"sast", 8},  {"eat", 12},  {"idt", 12},   {"gst", 16},
        {"pkt", 20},  {"ist", 22},  {"ict", 28},  {"wib", 28},  {"sgt", 32},   {"hkt", 32},
        {"pht", 32},  {"awst", 32}, {"jst", 36},  {"kst", 36},  {"acst", 38},  {"acdt", 42},
        {"aest", 40}, {"aedt", 44}, {"nzst", 48}, {"nzdt", 52}, {"brt", -12},  {"art", -12},
        {"nst", -14}, {"ndt", -10}, {"ast", -16}, {"adt", -12}, {"akst", -36}, {"akdt", -32},
        {"hst", -40},
    });
    if (name.size() == 1 && name != "j") {
        return 0;
    }
    for (const Zone &zone : zones) {
        if (zone.name == name) {
            return zone.quarters * 15;
        }
    }
    // RFC 2822, section 4.3: other names of zones count as UTC, which is at most half a day off. A
    // word of two letters is half a day itself: AM, PM.
    return name.size() >= 3 && name.size() <= 5 ? std::optional(0) : std::nullopt;
}

/// The zone that ends the text.
std::optional<int> zone(Cursor &in) {
    int minutes = 0;
    if (!in.atEnd() && ascii::isLetter(in.rest().front())) {
        const auto named = zoneOf(in.word());
        in.comment();
        if (!named || in.atEnd()) {
            return named;
        }
        minutes = *named; // "GMT+0100"
    }
    const bool west = in.take('-');
    if (!west && !in.take('+')) {
        return std::nullopt;
    }
    const int hours = in.number(2, 4);
    int rest = 0;
    int whole = hours;
    if (in.digits() == 4) {
        whole = hours / 100;
        rest = hours % 100;
    } else if (in.take(':')) {
        rest = in.number(2, 2);
    }
    in.comment();
    if (hours < 0 || in.digits() == 3 || whole > 23 || rest < 0 || rest > 59 || !in.atEnd()) {
        return std::nullopt;
    }
    return minutes + (west ? -1 : 1) * (whole * 60 + rest);
}

bool readZone(Cursor &in, Written &out) {
    const auto minutes = zone(in);
    out.offsetMinutes = minutes.value_or(0);
    return minutes.has_value();
}

/// "HH:mm", and what follows when `seconds` are required.
bool readHourAndMinute(Cursor &in, Written &out) {
    out.hour = in.number(1, 2);
    if (!in.take(':')) {
        return false;
    }
    out.minute = in.number(2, 2);
    return true;
}

bool readMailDate(Cursor in, Written &out) {
    const bool named = !in.atEnd() && ascii::isLetter(in.rest().front());
    if (named && (!isDayName(in.word()) || !in.take(','))) {
        return false;
    }
    in.blanks();
    out.day = in.number(1, 2);
    if (!in.blanks()) {
        return false;
    }
    out.month = monthOf(in.word());
    if (!in.blanks()) {
        return false;
    }
    out.year = in.number(2, 4);
    if (in.digits() == 2) {
        out.year += out.year < 50 ? 2000 : 1900;
    } else if (in.digits() == 3) {
        out.year += 1900;
    }
    if (!in.blanks() || !readHourAndMinute(in, out)) {
        return false;
    }
    if (in.take(':')) {
        out.second = in.number(2, 2);
    } else if (!named) {
        return false; // only the form with a weekday may leave the seconds out
    }
    in.blanks();
    return readZone(in, out);
}

bool readIsoDate(Cursor in, Written &out) {
    out.year = in.number(4, 4);
    if (!in.take('-')) {
        return false;
    }
    out.month = in.number(1, 2);
    if (!in.take('-')) {
        return false;
    }
    out.day = in.number(1, 2);
    if (!in.take('T') || !readHourAndMinute(in, out) || !in.take(':')) {
        return false;
    }
    out.second = in.number(2, 2);
    if (in.take('.') && in.number(1, 9) < 0) {
        return false;
    }
    in.blanks();
    return readZone(in, out);
}

bool isLeap(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

/// Days since 1970-01-01 in the Gregorian calendar: whole years, leap days, days of the year.
qint64 dayNumber(const Written &date) {
    static constexpr std::array<int, 12> before{0,   31,  59,  90,  120, 151,
                                                181, 212, 243, 273, 304, 334};
    const qint64 years = date.year - 1;
    const qint64 leapDays = years / 4 - years / 100 + years / 400;
    const int leapDay = date.month > 2 && isLeap(date.year) ? 1 : 0;
    constexpr qint64 epoch = 719'162; // 1969 years of 365 days and their 477 leap days
    return years * 365 + leapDays + before[static_cast<std::size_t>(date.month - 1)] + leapDay +
           date.day - 1 - epoch;
}

bool exists(const Written &date) {
    static constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (date.year < 1 || date.month < 1 || date.month > 12 || date.day < 1) {
        return false;
    }
    const int days = lengths[static_cast<std::size_t>(date.month - 1)] +
                     (date.month == 2 && isLeap(date.year) ? 1 : 0);
    return date.day <= days && date.hour >= 0 && date.hour <= 23 && date.minute >= 0 &&
           date.minute <= 59 && date.second >= 0 && date.second <= 60; // 60: a leap second
}

std::string_view trimmedView(QByteArrayView text) {
    std::string_view view(text.data(), static_cast<std::size_t>(text.size()));
    while (!view.empty() && ascii::isSpace(view.front())) {
        view.remove_prefix(1);
    }
    while (!view.empty() && ascii::isSpace(view.back())) {
        view.remove_suffix(1);
    }
    return view;
}

} // namespace

std::optional<QDateTime> parseFeedDate(QByteArrayView text) {
    const std::string_view view = trimmedView(text);
    const Cursor start(view);
    // The forms that begin with a year have a dash after it, the others a blank: no text fits both.
    Written date;
    const bool iso = view.size() > 4 && view[4] == '-';
    if (!(iso ? readIsoDate(start, date) : readMailDate(start, date)) || !exists(date)) {
        return std::nullopt;
    }
    const qint64 minutes = (dayNumber(date) * 24 + date.hour) * 60 + date.minute;
    const qint64 seconds = (minutes - date.offsetMinutes) * 60 + date.second;
    return QDateTime::fromMSecsSinceEpoch(seconds * 1000, Qt::UTC);
}

} // namespace vorle
