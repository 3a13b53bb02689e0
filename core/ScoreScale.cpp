#include "core/ScoreScale.h"

#include "base/French.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>

namespace vorle {

namespace {

struct Look {
    std::array<QStringView, 2> accent; // light, dark
    std::array<QStringView, 2> ink;
    std::array<QStringView, 2> fill;
};

// Each score has its own look. Low scores are a strong blue, not grey; only 4 to 6 are muted.
// Scores 0 and 1 share the first.
constexpr std::array<Look, 10> looks{{
    {{u"#3F7FD6", u"#5C9CF0"}, {u"#1F4F96", u"#BFDAFF"}, {u"#CFE2FB", u"rgba(92,156,240,0.30)"}},
    {{u"#5A8FD8", u"#6EA6EE"}, {u"#2A5DA6", u"#A9CBF6"}, {u"#DCE9FA", u"rgba(110,166,238,0.22)"}},
    {{u"#6E95CC", u"#82AFE8"}, {u"#3B67A3", u"#A3C2EA"}, {u"#E5EEF8", u"rgba(130,175,232,0.16)"}},
    {{u"#7B93B4", u"#96B2D6"}, {u"#4A6488", u"#AFC2DB"}, {u"#EBF0F6", u"rgba(150,178,214,0.13)"}},
    {{u"#8A939F", u"#A9B8CC"}, {u"#555F6E", u"#C2CEDD"}, {u"#EDEFF3", u"rgba(169,184,204,0.12)"}},
    {{u"#A89A86", u"#C9BBA6"}, {u"#6B5F50", u"#D9CDBB"}, {u"#F1ECE5", u"rgba(201,187,166,0.14)"}},
    {{u"#E3A12B", u"#F5BE5B"}, {u"#9A6409", u"#F7CC7E"}, {u"#FCF1DE", u"rgba(245,190,91,0.17)"}},
    {{u"#EF7A2E", u"#FF9A57"}, {u"#B04E10", u"#FFB27E"}, {u"#FFE2CF", u"rgba(255,140,80,0.22)"}},
    {{accentToken, accentToken}, {u"#FFFFFF", u"#FFFFFF"}, {accentToken, accentToken}},
    {{u"#7A1746", u"#A3225F"}, {u"#FFE3B3", u"#FFE9C7"}, {u"#7A1746", u"#A3225F"}},
}};
constexpr int mutedScore = 5;

ModeColour colour(const std::array<QStringView, 2> &pair) {
    return {pair[0].toString(), pair[1].toString()};
}

QString accessibleName(std::optional<int> score) {
    if (!score) {
        return French::tr("Pas de note : rien n’a pu être lu");
    }
    return French::tr("Note %1 sur 10%2")
        .arg(*score)
        .arg(*score == 10 ? French::tr(", pépite") : QString());
}

} // namespace

QString tierLabel(Tier tier) {
    switch (tier) {
    case Tier::Urgent:
        return French::tr("Urgent");
    case Tier::VeryRelevant:
        return French::tr("Très pertinents");
    case Tier::Relevant:
        return French::tr("Pertinents");
    case Tier::WorthKnowing:
        return French::tr("Bons à savoir");
    case Tier::ToDig:
        break;
    }
    return French::tr("À creuser");
}

Tier tierOf(const Topic &topic) {
    if (topic.isUrgent()) {
        return Tier::Urgent;
    }
    const int score = shownScore(topic).value_or(0);
    if (score >= 8) {
        return Tier::VeryRelevant;
    }
    if (score >= 6) {
        return Tier::Relevant;
    }
    return score >= 4 ? Tier::WorthKnowing : Tier::ToDig;
}

std::optional<int> shownScore(const Topic &topic) {
    if (topic.correction) {
        return scoreFromRelevance(topic.correction->score);
    }
    return topic.readLevel == ReadLevel::None ? std::nullopt : std::optional(topic.score);
}

int scoreFromRelevance(double relevance) {
    if (std::isnan(relevance)) {
        return 0;
    }
    return static_cast<int>(std::floor(std::clamp(relevance, 0.0, 10.0) + 0.5));
}

QString qtColour(const QString &text) {
    static const QRegularExpression rgba(
        QStringLiteral(R"(^rgba\((\d+),(\d+),(\d+),([0-9.]+)\)$)"));
    const auto match = rgba.match(text);
    if (!match.hasMatch()) {
        return text;
    }
    const auto hex = [](int value) {
        return QStringLiteral("%1").arg(value, 2, 16, QLatin1Char('0')).toUpper();
    };
    QString out = u'#' + hex(qRound(match.captured(4).toDouble() * 255));
    for (int part = 1; part <= 3; ++part) {
        out += hex(match.captured(part).toInt());
    }
    return out;
}

ScoreBadge scoreBadge(std::optional<int> score) {
    const Look &look =
        looks[static_cast<std::size_t>(std::clamp(score.value_or(mutedScore), 1, 10) - 1)];
    return {.accent = colour(look.accent),
            .ink = colour(look.ink),
            .fill = colour(look.fill),
            .filled = score >= 9,
            .gem = score >= 10,
            .digits = score ? QString::number(*score) : QString(),
            .accessibleName = accessibleName(score)};
}

} // namespace vorle
