#include "base/SystemErrorText.h"

#include "base/French.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace vorle {

namespace {

struct Wording {
    std::errc code;
    const char *text;
};

constexpr const char *noAccess = QT_TRANSLATE_NOOP("SystemErrorText", "l’accès est refusé");
constexpr const char *notFound =
    QT_TRANSLATE_NOOP("SystemErrorText", "le fichier ou le dossier est introuvable");
constexpr const char *tooManyOpen =
    QT_TRANSLATE_NOOP("SystemErrorText", "trop de fichiers sont ouverts en même temps");

constexpr std::array wordings{
    Wording{std::errc::permission_denied, noAccess},
    Wording{std::errc::operation_not_permitted, noAccess},
    Wording{std::errc::no_such_file_or_directory, notFound},
    Wording{std::errc::not_a_directory, notFound},
    Wording{std::errc::no_space_on_device,
            QT_TRANSLATE_NOOP("SystemErrorText", "il n’y a plus de place sur le disque")},
    Wording{std::errc::read_only_file_system,
            QT_TRANSLATE_NOOP("SystemErrorText", "le disque est en lecture seule")},
    Wording{std::errc::too_many_files_open, tooManyOpen},
    Wording{std::errc::too_many_files_open_in_system, tooManyOpen},
    Wording{std::errc::is_a_directory,
            QT_TRANSLATE_NOOP("SystemErrorText", "un dossier se trouve à la place du fichier")},
    // What this program itself answers for a pipe or a device in a file's place.
    Wording{std::errc::invalid_argument,
            QT_TRANSLATE_NOOP("SystemErrorText", "ce n’est pas un fichier ordinaire")},
    Wording{std::errc::file_exists,
            QT_TRANSLATE_NOOP("SystemErrorText", "un fichier de ce nom existe déjà")},
    Wording{std::errc::file_too_large,
            QT_TRANSLATE_NOOP("SystemErrorText", "le fichier dépasse la taille permise")},
    Wording{std::errc::filename_too_long,
            QT_TRANSLATE_NOOP("SystemErrorText", "le nom du fichier est trop long")},
    Wording{std::errc::illegal_byte_sequence,
            QT_TRANSLATE_NOOP("SystemErrorText", "le nom du fichier n’est pas en UTF-8")},
    Wording{std::errc::too_many_symbolic_link_levels,
            QT_TRANSLATE_NOOP("SystemErrorText", "les liens symboliques tournent en rond")},
    Wording{std::errc::io_error,
            QT_TRANSLATE_NOOP("SystemErrorText", "le disque n’a pas pu être lu ou écrit")},
    Wording{std::errc::not_enough_memory,
            QT_TRANSLATE_NOOP("SystemErrorText", "il n’y a plus assez de mémoire")},
    Wording{std::errc::resource_unavailable_try_again,
            QT_TRANSLATE_NOOP("SystemErrorText", "trop de programmes tournent en même temps")},
    // What this program itself answers for a disk that is waited for no more.
    Wording{std::errc::timed_out, QT_TRANSLATE_NOOP("SystemErrorText", "le disque ne répond pas")},
    // What this program itself answers for a lock that is not let go.
    Wording{std::errc::device_or_resource_busy,
            QT_TRANSLATE_NOOP("SystemErrorText", "un autre programme s’en sert")},
    Wording{std::errc::argument_list_too_long,
            QT_TRANSLATE_NOOP("SystemErrorText", "le texte à transmettre est trop long")},
    Wording{std::errc::executable_format_error,
            QT_TRANSLATE_NOOP("SystemErrorText", "le programme à lancer n’en est pas un")},
};

} // namespace

QString systemErrorText(const std::error_code &code) {
    // The one refusal of a full place that the standard has no name for.
    if (code.value() == EDQUOT &&
        (code.category() == std::generic_category() || code.category() == std::system_category())) {
        return French::tr("ton quota d’espace disque est atteint");
    }
    const auto known = std::find_if(wordings.begin(), wordings.end(),
                                    [&](const Wording &wording) { return code == wording.code; });
    return known != wordings.end() ? French::tr(known->text)
                                   : French::tr("erreur %1").arg(code.value());
}

QString systemRefusalText(const std::system_error &error) {
    const QString text = French::tr("Le système a refusé : %1").arg(systemErrorText(error.code()));
    // What was tried, when it is a path; the name of a system call tells the user nothing.
    const QString whole = QString::fromLocal8Bit(error.what());
    const QString reason = QStringLiteral(": ") + QString::fromLocal8Bit(error.code().message());
    return whole.startsWith(u'/') && whole.endsWith(reason)
               ? text + QStringLiteral(" (") + whole.chopped(reason.size()) + u')'
               : text;
}

} // namespace vorle
