#include "app/labels/DecisionLabels.h"

#include "base/French.h"
#include "base/FrenchSpacing.h"
#include "base/Text.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"

namespace vorle {

QString outcomeText(Outcome outcome) {
    switch (outcome) {
    case Outcome::Kept:
        return French::tr("Gardé · Programme");
    case Outcome::Later:
        return French::tr("Plus tard · Réserve");
    case Outcome::Postponed:
        return French::tr("Reporté · Réserve");
    case Outcome::Dismissed:
        return French::tr("Écarté · Pas pour moi");
    case Outcome::Removed:
        return French::tr("Retiré · À trier");
    case Outcome::PutBack:
        return French::tr("Remis · À trier");
    case Outcome::Done:
        return French::tr("Fait · Bibliothèque");
    }
    return {};
}

QString actionLabel(Outcome outcome) {
    switch (outcome) {
    case Outcome::Kept:
        return French::tr("Garder");
    case Outcome::Later:
        return French::tr("Plus tard");
    case Outcome::Postponed:
        return French::tr("Reporter");
    case Outcome::Dismissed:
        return French::tr("Pas pour moi");
    case Outcome::Removed:
        return French::tr("Retirer");
    case Outcome::PutBack:
        return French::tr("Remettre à trier");
    case Outcome::Done:
        return French::tr("Fait");
    }
    return {};
}

QString outcomeText(Worth worth) { return French::tr("%1 · Bibliothèque").arg(worthLabel(worth)); }

QString worthLabel(Worth worth) {
    switch (worth) {
    case Worth::Meh:
        return French::tr("Bof");
    case Worth::Useful:
        return French::tr("Utile");
    case Worth::Gem:
        return French::tr("Pépite");
    }
    return {};
}

QString refusalText(Refusal refusal, Reading reading) {
    if (refusal == Refusal::DismissedUnread) {
        return French::tr("Tu as écarté cette page avant que je la juge.");
    }
    return reading == Reading::UnderWay
               ? French::tr("Je lis encore cette page\u00A0: elle se décide une fois jugée.")
               : French::tr("Je n’ai pas encore pu juger cette page\u00A0: réessaie, ou "
                            "écarte-la.");
}

namespace {

/// What fits on the line that tells a decision, and leaves room for where it went.
QString shortTitle(const QString &title) {
    constexpr qsizetype most = 42;
    const QString seen = frenchSpacing(withoutHidden(title));
    const QStringView kept = firstCharacters(seen, most);
    return kept.size() == seen.size() ? seen : kept.trimmed().toString() + u'…';
}

/// "revient dans À trier": where a topic goes back to, or goes again.
QString whereTo(TopicStatus status, const QString &verb) {
    switch (status) {
    case TopicStatus::Inbox:
        return French::tr("%1 dans À trier").arg(verb);
    case TopicStatus::Program:
        return French::tr("%1 dans ton programme").arg(verb);
    case TopicStatus::Reserve:
        return French::tr("%1 dans la réserve").arg(verb);
    case TopicStatus::Done:
        return French::tr("%1 dans ta bibliothèque").arg(verb);
    case TopicStatus::Dismissed:
        return French::tr("est de nouveau écarté");
    case TopicStatus::Pending:
        return French::tr("attend de nouveau d’être lu");
    }
    return {};
}

QString scoredText(const StepResult &result, const Topic *topic) {
    if (result.score) {
        return French::tr("a de nouveau ta note, %1").arg(scoreFromRelevance(*result.score));
    }
    const auto judged = topic != nullptr ? judgedScore(*topic) : std::nullopt;
    return judged ? French::tr("retrouve ma note, %1").arg(*judged)
                  : French::tr("n’a plus de note");
}

QString predicate(const StepResult &result, const Topic *topic) {
    using What = StepResult::What;
    switch (result.what) {
    case What::Moved:
        return whereTo(result.status, result.back ? French::tr("revient") : French::tr("repart"));
    case What::Judged:
        return result.worth ? French::tr("a de nouveau l’avis %1").arg(worthLabel(*result.worth))
                            : French::tr("n’a plus d’avis");
    case What::PutInPlace:
        return French::tr("retrouve sa place");
    case What::Scored:
        return scoredText(result, topic);
    case What::Noted:
        return result.hasNote ? French::tr("retrouve ce que tu y avais écrit")
                              : French::tr("n’a plus ce que tu y avais écrit");
    case What::MovedSince:
        return French::tr("a changé de place entre-temps, il y reste");
    case What::ChangedSince:
        return French::tr("a changé entre-temps, il reste comme il est");
    }
    return {};
}

} // namespace

QString stepText(const StepResult &result, const Topic *topic) {
    return frenchSpacing(French::tr("« %1 » %2")
                             .arg(topic != nullptr ? shortTitle(topic->title) : QString(),
                                  predicate(result, topic)));
}

} // namespace vorle
