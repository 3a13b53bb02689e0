#include "app/labels/ScoreExplanation.h"

#include "agents/AgentKind.h"
#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "core/Corrections.h"
#include "core/DurationText.h"
#include "core/ScoreScale.h"

#include <QStringList>

namespace vorle {

namespace {

/// At most `digits` digits that count, with a comma.
QString decimal(double number, int digits) {
    return QString::number(number, 'g', digits).replace(u'.', u',');
}

QString quoted(const QString &text) { return QStringLiteral("«\u202F%1\u202F»").arg(text); }

QString titleText(const Topic &topic) {
    const StandingScore standing = standingScore(topic);
    const QString name = scoreBadge(standing.score).accessibleName;
    if (!topic.correction) {
        return name;
    }
    return standing.former
               ? French::tr("%1, la tienne. J’avais mis %2").arg(name).arg(*standing.former)
               : French::tr("%1, la tienne").arg(name);
}

QString urgencyText(const Judgment::Urgency &urgency, const QDate &today) {
    QString text = urgencySentence(urgency, today);
    if (!text.isEmpty()) {
        return text;
    }
    if (urgency.level != Judgment::Urgency::Level::Before) {
        return French::tr("aucune");
    }
    // A deadline that is no date ("fin 2026") is still worth reading.
    text = urgency.date ? French::tr("avant %1").arg(*urgency.date)
                        : French::tr("à une date inconnue");
    text[0] = text[0].toUpper();
    return urgency.reason ? text + QStringLiteral(". ") + *urgency.reason : text;
}

QString bytesText(int bytes) {
    constexpr int kilo = 1000;
    if (bytes < kilo) {
        return French::tr("%1\u00A0octets de texte").arg(bytes);
    }
    const double amount = static_cast<double>(bytes) / kilo;
    return French::tr("%1\u00A0ko de texte").arg(decimal(amount, amount < 10 ? 2 : 3));
}

QString readingText(const Topic &topic, const std::optional<ScoreProvenance> &provenance) {
    const QString level = readLevelLabel(topic.readLevel);
    return provenance && provenance->bytesRead > 0
               ? French::tr("%1, %2").arg(level, bytesText(provenance->bytesRead))
               : level;
}

QString judgeText(const ScoreProvenance &provenance, const QDate &today, const QTimeZone &zone) {
    const QString day = dayLabel(provenance.at.toTimeZone(zone).date(), today);
    const auto agent = json::fromRaw<AgentKind>(provenance.agent.value_or(QString()));
    return agent ? French::tr("%1, le %2").arg(displayName(*agent), day)
                 : French::tr("le %1").arg(day);
}

QString reflexesText(const QList<ScoreProvenance::Reflex> &reflexes) {
    if (reflexes.isEmpty()) {
        return French::tr("aucun");
    }
    QStringList titles;
    for (const ScoreProvenance::Reflex &reflex : reflexes) {
        titles += reflex.title.isEmpty() ? reflex.id : reflex.title;
    }
    return titles.join(u' ');
}

QString examplesText(int examples) {
    return examples == 0   ? French::tr("aucun")
           : examples == 1 ? French::tr("1 de tes tris")
                           : French::tr("%1 de tes tris").arg(examples);
}

QString correctionText(const Correction &correction, const QDate &today, const QTimeZone &zone) {
    QStringList parts{French::tr("%1 sur 10, le %2")
                          .arg(scoreFromRelevance(correction.score))
                          .arg(dayLabel(correction.at.toTimeZone(zone).date(), today))};
    for (const QString &reason : correction.tags) {
        parts += correctionReasonText(reason);
    }
    if (!correction.text.isEmpty()) {
        parts += quoted(correction.text);
    }
    return parts.join(QStringLiteral(" · "));
}

} // namespace

ScoreExplanation openScore(const Topic &topic, const std::optional<ScoreProvenance> &provenance,
                           const QDate &today, const QTimeZone &zone) {
    ScoreExplanation open;
    open.title = titleText(topic);
    if (topic.criteria) {
        open.grades = {{French::tr("Impact"), topic.criteria->impact},
                       {French::tr("Concret"), topic.criteria->actionability},
                       {French::tr("Nouveauté"), topic.criteria->novelty},
                       {French::tr("Fiabilité"), topic.criteria->reliability}};
    }
    const auto add = [&](const QString &label, const QString &text) {
        open.facts += ScoreExplanation::Fact{label, text};
    };
    add(French::tr("Effort"), durationText(topic.minutes));
    if (topic.urgency) {
        add(French::tr("Urgence"), urgencyText(*topic.urgency, today));
    }
    if (topic.readLevel) {
        add(French::tr("Lecture"), readingText(topic, provenance));
    }
    if (provenance) {
        if (const auto score = judgedScore(topic)) {
            // Enough digits to see why it was rounded up or down.
            const QString exact = decimal(provenance->relevance, 4);
            add(French::tr("Avant arrondi"),
                exact == QString::number(*score)
                    ? exact
                    : French::tr("%1, arrondi à %2").arg(exact).arg(*score));
        }
        add(French::tr("Jugé par"), judgeText(*provenance, today, zone));
        add(French::tr("Réflexes"), reflexesText(provenance->reflexes));
        add(French::tr("Exemples"), examplesText(provenance->examples));
    }
    if (topic.correction) {
        add(French::tr("Ta correction"), correctionText(*topic.correction, today, zone));
    }
    return open;
}

} // namespace vorle
