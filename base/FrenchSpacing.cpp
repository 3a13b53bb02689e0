#include "base/FrenchSpacing.h"

#include <QStringView>

#include <algorithm>
#include <array>

namespace vorle {

namespace {

constexpr QChar narrow(0x202F);
constexpr QChar fixed(0x00A0);

/// A blank within a line.
bool isSpace(QChar c) { return c == u' ' || c == fixed || c == narrow || c == QChar(0x2009); }

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

bool isUnit(QStringView word) {
    static constexpr std::array<QStringView, 47> units{
        u"%",  u"‰",   u"€",   u"$",   u"£",   u"k€",  u"M€", u"Md€", u"o",    u"ko",  u"Ko", u"Mo",
        u"Go", u"To",  u"Kio", u"Mio", u"Gio", u"kB",  u"KB", u"MB",  u"GB",   u"TB",  u"ms", u"µs",
        u"s",  u"min", u"h",   u"j",   u"px",  u"ppp", u"km", u"m",   u"cm",   u"mm",  u"kg", u"g",
        u"°C", u"Hz",  u"kHz", u"MHz", u"GHz", u"W",   u"kW", u"V",   u"bits", u"fps", u"pts"};
    return std::find(units.begin(), units.end(), word) != units.end();
}

/// Walks over a text once and writes it with its spaces.
class Setter {
public:
    explicit Setter(QStringView text) : m_text(text) { m_out.reserve(text.size() + 8); }

    QString take() {
        while (m_at < m_text.size()) {
            step();
        }
        return std::move(m_out);
    }

private:
    QChar at(qsizetype index) const {
        return index >= 0 && index < m_text.size() ? m_text[index] : QChar(u'\n');
    }

    void copyTo(qsizetype end) {
        m_out += m_text.sliced(m_at, end - m_at);
        m_at = end;
    }

    void step() {
        const QChar c = at(m_at);
        if (c == u'`') {
            copyTo(endOfCode());
        } else if (beginsLink()) {
            qsizetype end = m_at;
            while (end < m_text.size() && !at(end).isSpace() && at(end) != u'»') {
                ++end;
            }
            copyTo(end);
        } else if (isSpace(c)) {
            spaces();
        } else {
            if (c == u'»' && !m_out.isEmpty() && !m_out.back().isSpace()) {
                m_out += narrow;
            }
            m_out += c;
            ++m_at;
            if (c == u'«' && !at(m_at).isSpace()) {
                m_out += narrow;
            }
        }
    }

    /// Behind the backquotes that close what those here open; behind these where none do.
    qsizetype endOfCode() {
        qsizetype open = m_at;
        while (at(open) == u'`') {
            ++open;
        }
        const QStringView ticks = m_text.sliced(m_at, open - m_at);
        // Looked for once: where one run has no fellow, no later one of its length has.
        const auto length = static_cast<std::size_t>(std::min<qsizetype>(ticks.size(), 3));
        if (m_unmatched[length]) {
            return open;
        }
        const qsizetype close = m_text.indexOf(ticks, open);
        m_unmatched[length] = close < 0;
        return close < 0 ? open : close + ticks.size();
    }

    bool beginsLink() const {
        const QStringView rest = m_text.sliced(m_at);
        return rest.startsWith(u"http://") || rest.startsWith(u"https://") ||
               rest.startsWith(u"www.");
    }

    void spaces() {
        qsizetype end = m_at;
        while (isSpace(at(end))) {
            ++end;
        }
        const QChar before = at(m_at - 1);
        const QChar next = at(end);
        const bool one = end - m_at == 1;
        if (before == u'«' || (next == u'»' && m_at > 0)) {
            m_out += narrow;
        } else if (m_at > 0 && !before.isSpace() && closesPhrase(end)) {
            m_out += next == u':' ? fixed : narrow;
        } else if (one && isDigit(before) && groupsThousands(end)) {
            m_out += narrow;
        } else if (one && isDigit(before) && isUnit(wordAt(end))) {
            m_out += fixed;
        } else {
            copyTo(end);
            return;
        }
        m_at = end;
    }

    /// Whether a sign of punctuation stands at `index`, and no word or code goes on behind it.
    bool closesPhrase(qsizetype index) const {
        const QChar sign = at(index);
        if (sign != u';' && sign != u'!' && sign != u'?' && sign != u':') {
            return false;
        }
        qsizetype end = index + 1;
        while (sign != u':' && (at(end) == u'!' || at(end) == u'?')) {
            ++end;
        }
        return at(end).isSpace() || QStringView(u"\u00BB\u201D\u2019\")]\u2026").contains(at(end));
    }

    /// Whether exactly three digits stand at `index`, after one to three others.
    bool groupsThousands(qsizetype index) const {
        qsizetype end = index;
        while (isDigit(at(end))) {
            ++end;
        }
        qsizetype begin = m_at;
        while (isDigit(at(begin - 1)) && m_at - begin <= 3) {
            --begin;
        }
        const QChar before = at(begin - 1);
        const bool alone = before.isSpace() || QStringView(u"(«~≈+-−").contains(before);
        return end - index == 3 && m_at - begin <= 3 && alone && !at(end).isLetter() &&
               !(QStringView(u".-_/").contains(at(end)) && at(end + 1).isLetterOrNumber());
    }

    QStringView wordAt(qsizetype index) const {
        qsizetype end = index;
        while (end < m_text.size() && end - index < 6 &&
               (at(end).isLetter() || QStringView(u"%‰€$£°").contains(at(end)))) {
            ++end;
        }
        return at(end).isDigit() || at(end) == u'_' ? QStringView()
                                                    : m_text.sliced(index, end - index);
    }

    QStringView m_text;
    qsizetype m_at = 0;
    QString m_out;
    std::array<bool, 4> m_unmatched{};
};

} // namespace

QString frenchSpacing(const QString &text) { return Setter(text).take(); }

} // namespace vorle
