// What is said of what was learned.

#include "base/French.h"
#include "judging/Learning.h"

namespace vorle {

QString unsentReflexesText(const QList<Reflex> &unsent) {
    QStringList left;
    for (const Reflex &reflex : unsent) {
        left += u'«' + QStringLiteral("\u202F") + reflex.title + QStringLiteral("\u202F") + u'»';
    }
    return left.isEmpty() ? QString()
           : left.size() == 1
               ? French::tr("Un réflexe n’a pas tenu dans la consigne : %1").arg(left.first())
               : French::tr("%1 réflexes n’ont pas tenu dans la consigne : %2")
                     .arg(left.size())
                     .arg(left.join(QStringLiteral(", ")));
}

QString reflexGroupTitle(Reflex::Group group) {
    switch (group) {
    case Reflex::Group::Up:
        return French::tr("Ce que je note plus haut");
    case Reflex::Group::Down:
        return French::tr("Ce que je note plus bas");
    case Reflex::Group::Waits:
        return French::tr("Ce qui attend");
    }
    return {};
}

QString nothingLearnedText(const Learned &learned) {
    if (!learned.reflexes.isEmpty()) {
        return {};
    }
    if (learned.decisions >= decisionsToLearn) {
        return French::tr(
            "Rien de net encore : tes choix ne dessinent pas de règle. J’apprends à chaque "
            "tri, et tu verras mes réflexes dans Ton territoire.");
    }
    return French::
        tr("Rien d’appris pour l’instant : il me faut %1 décisions de tri, tu en es à %2. Je "
           "repère ensuite ce que tu gardes, écartes ou reportes, et j’ajuste mes notes. Chaque "
           "réflexe arrivera avec ses chiffres, et tu pourras couper ceux qui se trompent. Par "
           "exemple :")
            .arg(decisionsToLearn)
            .arg(learned.decisions);
}

QString switchedOffText() {
    return French::tr("Un réflexe coupé n’est plus appliqué, mais reste appris.");
}

QString startAgainText(qsizetype reflexes) {
    if (reflexes == 0) {
        return French::tr(
            "Je repars de zéro : je réapprends à partir de tes prochains tris. On ne peut pas "
            "revenir en arrière.");
    }
    return reflexes == 1
               ? French::tr(
                     "Je repars de zéro : le réflexe appris disparaît et je réapprends à partir de "
                     "tes prochains tris. On ne peut pas revenir en arrière.")
               : French::tr(
                     "Je repars de zéro : les %1 réflexes appris disparaissent et je réapprends à "
                     "partir de tes prochains tris. On ne peut pas revenir en arrière.")
                     .arg(reflexes);
}

} // namespace vorle
