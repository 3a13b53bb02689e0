#include "app/labels/DecisionLabels.h"

#include "base/French.h"

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

} // namespace vorle
