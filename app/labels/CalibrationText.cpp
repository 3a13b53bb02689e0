#include "app/labels/CalibrationText.h"

#include "base/French.h"

#include <algorithm>

namespace vorle {

CalibrationText calibrationInvitation(qsizetype total) {
    return {French::tr("Apprends-moi tes goûts"),
            total == 1 ? French::tr("Trie un sujet et dis-moi la note que tu lui aurais donnée. "
                                    "Mes prochaines notes en tiendront compte.")
                       : French::tr("Trie %1 sujets variés et dis-moi la note que tu leur "
                                    "aurais donnée. Mes prochaines notes en tiendront compte.")
                             .arg(total)};
}

QString calibrationQuestion() { return French::tr("Qu’est-ce que tu en fais\u00A0?"); }

QString calibrationScoreQuestion() {
    return French::tr("Quelle note lui aurais-tu donnée, de 0 à 10\u00A0?");
}

QString besideMineText(int theirs, int mine) {
    return theirs == mine ? French::tr("Comme moi.") : French::tr("J’avais mis %1.").arg(mine);
}

QString calibrationPosition(const Calibration::Progress &progress) {
    return French::tr("%1 sur %2")
        .arg(std::min(progress.answered + 1, progress.total))
        .arg(progress.total);
}

CalibrationText calibrationEnd(qsizetype answered) {
    return {French::tr("C’est noté"),
            answered < Calibration::wanted
                ? French::tr("Il n’y a plus rien à trier pour l’instant. Tes réponses "
                             "guideront déjà la prochaine fouille.")
                : French::tr("Tes réponses guideront la prochaine fouille, et chaque tri que "
                             "tu feras ensuite affinera mes notes.")};
}

QString calibrationNothingText() {
    return French::tr("Rien à trier pour l’instant\u00A0: il me faut d’abord une fouille.");
}

QString calibrationSkippedText() {
    return French::tr("Entendu, j’apprendrai de tes tris au fil de l’eau. Tu peux le faire "
                      "plus tard, quand tu veux.");
}

} // namespace vorle
