#include "app/models/settings/SettingsPages.h"

#include "app/labels/ScheduleText.h"
#include "app/labels/Wording.h"
#include "app/triage/SearchFold.h"
#include "core/DurationText.h"

#include <QCoreApplication>

#include <algorithm>
#include <span>

namespace vorle {

namespace {

/// Rows of a page that cannot be shown yet stand here too, so that their day only turns one word.
enum class Row { Shown, Hidden };

struct RowEntry {
    const char *key;
    const char *page;
    const char *title;
    const char *help;
    const char *alsoFoundBy; ///< other words one may look for it by
    Row state = Row::Shown;
};

constexpr const char *general = QT_TRANSLATE_NOOP("SettingsPages", "Général");
constexpr const char *runs = QT_TRANSLATE_NOOP("SettingsPages", "Fouille");
constexpr const char *agent = QT_TRANSLATE_NOOP("SettingsPages", "Ton IA");
constexpr const char *notices = QT_TRANSLATE_NOOP("SettingsPages", "Notifications");
constexpr const char *capture = QT_TRANSLATE_NOOP("SettingsPages", "Capture");
constexpr const char *data = QT_TRANSLATE_NOOP("SettingsPages", "Tes données");

constexpr RowEntry rowEntries[] = {
    {"appearance", general, QT_TRANSLATE_NOOP("SettingsPages", "Apparence"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "thème mode sombre clair nuit jour")},
    {"accent", general, QT_TRANSLATE_NOOP("SettingsPages", "Couleur"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "accent thème braise framboise lagune indigo")},
    {"textScale", general, QT_TRANSLATE_NOOP("SettingsPages", "Taille du texte"), "",
     QT_TRANSLATE_NOOP("SettingsPages",
                       "police caractères lettres zoom agrandir grand petit lisibilité")},
    {"openAtLogin", general,
     QT_TRANSLATE_NOOP("SettingsPages", "Ouvrir vorle à l’ouverture de session"),
     QT_TRANSLATE_NOOP("SettingsPages", "Sinon, une fouille prévue attend que tu ouvres vorle."),
     QT_TRANSLATE_NOOP("SettingsPages", "démarrage lancer session automatique")},
    {"terminal", general, "Terminal",
     QT_TRANSLATE_NOOP("SettingsPages", "Où ton IA fait le premier pas d’un sujet."),
     QT_TRANSLATE_NOOP("SettingsPages", "console iterm ghostty premier pas")},
    {"update", general, QT_TRANSLATE_NOOP("SettingsPages", "Rechercher une mise à jour"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "version nouvelle installer mettre à jour")},
    {"updateChecks", general,
     QT_TRANSLATE_NOOP("SettingsPages", "Chercher les mises à jour chaque jour"),
     QT_TRANSLATE_NOOP("SettingsPages", "Je demande seulement quelle est la dernière version."),
     QT_TRANSLATE_NOOP("SettingsPages", "version automatique vérifier")},
    {"updateInstalls", general,
     QT_TRANSLATE_NOOP("SettingsPages", "Installer les prochaines toute seule"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "Elles prennent la place de l’ancienne quand tu quittes vorle."),
     QT_TRANSLATE_NOOP("SettingsPages", "mise à jour version automatique")},
    {"feedback", general, QT_TRANSLATE_NOOP("SettingsPages", "Envoyer un retour"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "Ce qui marche, ce qui coince, ce qui manque\u00A0: tout aide."),
     QT_TRANSLATE_NOOP("SettingsPages", "avis problème bug idée mail e-mail contact aide")},
    {"weekdays", runs, QT_TRANSLATE_NOOP("SettingsPages", "Jours"), "",
     QT_TRANSLATE_NOOP(
         "SettingsPages",
         "fouille programmée calendrier semaine lundi mardi mercredi jeudi vendredi samedi "
         "dimanche chaque")},
    {"runTime", runs, QT_TRANSLATE_NOOP("SettingsPages", "Heure"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "fouille programmée horaire prochaine")},
    {"weeklyMinutes", runs, QT_TRANSLATE_NOOP("SettingsPages", "Temps de veille par semaine"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "Ton programme s’arrête là. Le reste attend sous la ligne."),
     QT_TRANSLATE_NOOP("SettingsPages", "budget durée heures minutes programme")},
    {"radius", runs, QT_TRANSLATE_NOOP("SettingsPages", "Rayon"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "territoire distance voisins loin")},
    {"lastRun", runs, QT_TRANSLATE_NOOP("SettingsPages", "Dernière fouille"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "compte rendu bilan rapport")},
    {"rest", runs, QT_TRANSLATE_NOOP("SettingsPages", "La suite"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "fouille limite quota continuer reprendre")},
    {"agent", agent, QT_TRANSLATE_NOOP("SettingsPages", "Ton IA"), "",
     QT_TRANSLATE_NOOP("SettingsPages",
                       "agent claude codex abonnement chatgpt connexion installer connecter")},
    {"agentModel", agent, QT_TRANSLATE_NOOP("SettingsPages", "Modèle"),
     QT_TRANSLATE_NOOP("SettingsPages", "Celui que ton IA choisit d’elle-même."),
     QT_TRANSLATE_NOOP("SettingsPages", "ia agent version")},
    {"bench", agent, QT_TRANSLATE_NOOP("SettingsPages", "Aperçu du jugement v2"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "10 sujets du banc d’essai. Tes vrais sujets ne sont pas touchés."),
     QT_TRANSLATE_NOOP("SettingsPages", "banc essai notes juge test consigne")},
    {"notifyMode", notices, QT_TRANSLATE_NOOP("SettingsPages", "Après une fouille"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "Quand elle rapporte des sujets à trier, ou qu’elle a échoué."),
     QT_TRANSLATE_NOOP("SettingsPages", "notifier prévenir alerte urgent jamais bannière")},
    {"notifyReminder", notices, QT_TRANSLATE_NOOP("SettingsPages", "Rappel du programme"),
     QT_TRANSLATE_NOOP("SettingsPages", "Le jeudi, tant qu’il reste des sujets à ton programme."),
     QT_TRANSLATE_NOOP("SettingsPages", "notifier prévenir semaine")},
    {"reminder", notices, QT_TRANSLATE_NOOP("SettingsPages", "Heure du rappel"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "notifier jeudi horaire")},
    {"captureShortcut", capture, QT_TRANSLATE_NOOP("SettingsPages", "Raccourci"),
     QT_TRANSLATE_NOOP("SettingsPages", "Ouvre la capture depuis n’importe quelle app."),
     QT_TRANSLATE_NOOP("SettingsPages", "clavier touche combinaison ajouter lien global")},
    {"proposeTab", capture, QT_TRANSLATE_NOOP("SettingsPages", "Proposer l’onglet du navigateur"),
     "", QT_TRANSLATE_NOOP("SettingsPages", "safari chrome arc firefox lien presse-papiers")},
    {"topicsFile", data, QT_TRANSLATE_NOOP("SettingsPages", "Tes sujets"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "fichier dossier emplacement où finder sauvegarde")},
    {"archive", data, QT_TRANSLATE_NOOP("SettingsPages", "Tout emporter"), "",
     QT_TRANSLATE_NOOP("SettingsPages", "exporter importer sauvegarde copie json archive")},
    {"notes", data, QT_TRANSLATE_NOOP("SettingsPages", "En notes Markdown"),
     QT_TRANSLATE_NOOP("SettingsPages", "Une note par sujet, fiche comprise."),
     QT_TRANSLATE_NOOP("SettingsPages", "exporter dossier obsidian md texte")},
    {"diagnostics", data, QT_TRANSLATE_NOOP("SettingsPages", "Diagnostics"),
     QT_TRANSLATE_NOOP("SettingsPages",
                       "Version, système, IA et les dernières erreurs. Rien de tes sujets."),
     QT_TRANSLATE_NOOP("SettingsPages", "bug problème aide journal log erreur")},
    {"onboarding", data, QT_TRANSLATE_NOOP("SettingsPages", "Refaire le premier réglage"),
     QT_TRANSLATE_NOOP("SettingsPages", "Tes sujets ne bougent pas."),
     QT_TRANSLATE_NOOP("SettingsPages", "accueil recommencer")},
    {"calibration", data, QT_TRANSLATE_NOOP("SettingsPages", "Refaire le premier tri"),
     QT_TRANSLATE_NOOP("SettingsPages", "Dix sujets variés, et la note que tu leur donnes."),
     QT_TRANSLATE_NOOP("SettingsPages", "calibrer recommencer goûts")},
};

QString text(const char *french) { return QCoreApplication::translate("SettingsPages", french); }

const RowEntry *entryOf(const QString &row) {
    const auto found = std::ranges::find_if(
        rowEntries, [&](const RowEntry &entry) { return row == QLatin1StringView(entry.key); });
    return found == std::end(rowEntries) ? nullptr : &*found;
}

bool holds(const RowEntry &entry, const QList<QByteArray> &words) {
    const QByteArray all = foldedForSearch(
        QStringList{text(entry.title), text(entry.help), text(entry.page), text(entry.alsoFoundBy)}
            .join(u' '));
    return std::ranges::all_of(words, [&](const QByteArray &word) { return all.contains(word); });
}

} // namespace

SettingsPages::SettingsPages(const Preferences &preferences, const Clock &clock,
                             const LocalZone &zone, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_clock(clock), m_zone(zone) {
    for (const RowEntry &entry : rowEntries) {
        if (entry.state == Row::Shown && !m_pages.contains(text(entry.page))) {
            m_pages += text(entry.page);
        }
    }
    connect(&preferences, &Preferences::changed, this, &SettingsPages::settingsChanged);
}

void SettingsPages::setPage(int page) {
    m_page = std::clamp(page, 0, int(m_pages.size()) - 1);
    m_query.clear();
    Q_EMIT shownChanged();
}

void SettingsPages::setQuery(const QString &query) {
    if (query != m_query) {
        m_query = query;
        Q_EMIT shownChanged();
    }
}

bool SettingsPages::searching() const { return !m_query.trimmed().isEmpty(); }

QStringList SettingsPages::shown() const {
    const QList<QByteArray> words = foldedForSearch(m_query).simplified().split(' ');
    QStringList keys;
    for (const RowEntry &entry : rowEntries) {
        const bool wanted =
            searching() ? holds(entry, words) : text(entry.page) == m_pages.value(m_page);
        const QString key = QString::fromLatin1(entry.key);
        if (entry.state == Row::Shown && wanted && !m_absent.contains(key)) {
            keys += key;
        }
    }
    return keys;
}

void SettingsPages::setPresent(const QString &row, bool present) {
    if (m_absent.contains(row) == !present) {
        return;
    }
    if (present) {
        m_absent.remove(row);
    } else {
        m_absent.insert(row);
    }
    Q_EMIT shownChanged();
}

QStringList SettingsPages::shownPages() const {
    QStringList names;
    for (const QString &row : shown()) {
        if (const QString name = text(entryOf(row)->page); !names.contains(name)) {
            names += name;
        }
    }
    return names;
}

QString SettingsPages::title(const QString &row) {
    const RowEntry *entry = entryOf(row);
    return entry == nullptr ? QString() : text(entry->title);
}

QString SettingsPages::help(const QString &row) {
    const RowEntry *entry = entryOf(row);
    return entry == nullptr || *entry->help == '\0' ? QString() : text(entry->help);
}

QString SettingsPages::nextRunText() const {
    return nextRunSentence(m_preferences.settings(), m_clock.now(), m_zone);
}

QString SettingsPages::weeklyText() const {
    return durationText(m_preferences.settings().weeklyMinutes);
}

QString SettingsPages::radiusText() const { return radiusNames().value(m_preferences.radius()); }

QString SettingsPages::versionText() {
    return QStringLiteral("vorle ") + QCoreApplication::applicationVersion();
}

int SettingsPages::steppedMinutes(int minutes, int by) {
    constexpr int step = 30;
    const int next =
        by > 0 ? (minutes / step + 1) * step : (minutes + step - 1) / step * step - step;
    return std::clamp(next, weeklyMinutesRange.min, weeklyMinutesRange.max);
}

void SettingsPages::refresh() { Q_EMIT settingsChanged(); }

} // namespace vorle
