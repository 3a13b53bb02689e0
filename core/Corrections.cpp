#include "core/Corrections.h"

#include "base/French.h"
#include "base/Text.h"
#include "core/ScoreScale.h"

namespace vorle {

const QStringList &correctionReasons() {
    static const QStringList reasons{QStringLiteral("hors de mon domaine"),
                                     QStringLiteral("plus important que ça"),
                                     QStringLiteral("pas fiable")};
    return reasons;
}

QString correctionReasonText(const QString &reason) {
    switch (correctionReasons().indexOf(reason)) {
    case 0:
        return French::tr("hors de mon domaine");
    case 1:
        return French::tr("plus important que ça");
    case 2:
        return French::tr("pas fiable");
    default:
        return reason;
    }
}

Correction correctionOf(double score, const QStringList &reasons, const QString &text,
                        const QDateTime &now) {
    Correction correction;
    correction.score = scoreFromRelevance(score);
    for (const QString &reason : correctionReasons()) {
        if (reasons.contains(reason)) {
            correction.tags.append(reason);
        }
    }
    correction.text = trimmed(text).toString();
    correction.at = now;
    return correction;
}

std::optional<int> judgedScore(const Topic &topic) {
    return topic.readLevel == ReadLevel::None ? std::nullopt : std::optional(topic.score);
}

StandingScore standingScore(const Topic &topic) {
    StandingScore standing{judgedScore(topic), std::nullopt};
    if (topic.correction) {
        const int own = scoreFromRelevance(topic.correction->score);
        if (standing.score && *standing.score != own) {
            standing.former = standing.score;
        }
        standing.score = own;
    }
    return standing;
}

} // namespace vorle
