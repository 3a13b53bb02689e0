#pragma once

#include "app/transfer/TopicImport.h"
#include "app/transfer/TopicNotes.h"

#include <QString>

namespace vorle {

/// How an export and an import are said, in French, by the window and the terminal alike. Pure
/// functions, any thread.

/// "428 sujets dans /…/veille : 12 fichiers écrits, 416 déjà à jour."; in lines of their own, an
/// earlier archive that was kept aside, and the notes that were left.
QString exportText(qsizetype topics, const QString &folder, const WrittenFiles &files);
/// "128 sujets importés, 12 déjà là."
QString importText(const ImportOutcome &outcome);

} // namespace vorle
