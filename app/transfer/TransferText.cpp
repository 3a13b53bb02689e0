#include "app/transfer/TransferText.h"

#include "app/labels/Wording.h"
#include "base/French.h"

#include <QDir>

#include <algorithm>

namespace vorle {

namespace {

QString filesText(const WrittenFiles &files) {
    QString text =
        counted(files.written, French::tr("fichier écrit"), French::tr("fichiers écrits"));
    if (files.unchanged > 0) {
        text += French::tr(", %1").arg(
            counted(files.unchanged, French::tr("déjà à jour"), French::tr("déjà à jour")));
    }
    return text + u'.';
}

/// At most a few of them by name.
QString leftText(const QStringList &left) {
    constexpr qsizetype maxNamed = 5;
    QString names = left.first(std::min(maxNamed, left.size())).join(QStringLiteral(", "));
    if (left.size() > maxNamed) {
        names += QStringLiteral(", …");
    }
    return counted(left.size(), French::tr("note modifiée depuis, laissée comme elle est\u00A0: "),
                   French::tr("notes modifiées depuis, laissées comme elles sont\u00A0: ")) +
           names;
}

} // namespace

QString exportText(qsizetype topics, const QString &folder, const WrittenFiles &files) {
    QStringList lines{countedTopics(topics) +
                      French::tr(" dans %1\u00A0: ").arg(QDir::toNativeSeparators(folder)) +
                      filesText(files)};
    if (!files.aside.isEmpty()) {
        lines +=
            French::tr("L’export d’avant a des sujets que tu n’as plus\u00A0: je l’ai gardé, %1")
                .arg(files.aside);
    }
    if (!files.left.isEmpty()) {
        lines += leftText(files.left);
    }
    return lines.join(u'\n');
}

QString importText(const ImportOutcome &outcome) {
    QStringList parts{
        counted(outcome.added, French::tr("sujet importé"), French::tr("sujets importés"))};
    const auto add = [&parts](qsizetype count, const QString &one, const QString &many) {
        if (count > 0) {
            parts += counted(count, one, many);
        }
    };
    add(outcome.sameTopic, French::tr("déjà là"), French::tr("déjà là"));
    add(outcome.sameLink, French::tr("dont le lien est déjà là"),
        French::tr("dont le lien est déjà là"));
    add(outcome.repeated, French::tr("en double dans le fichier"),
        French::tr("en double dans le fichier"));
    return parts.join(QStringLiteral(", ")) + u'.';
}

} // namespace vorle
