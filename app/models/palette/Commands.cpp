#include "app/models/palette/Commands.h"

#include "app/triage/SearchFold.h"
#include "app/triage/SearchNear.h"
#include "core/SettingRow.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ranges>

namespace vorle {

namespace {

using Map = KeyboardMap;

/// Whether it stands in the palette before anything is typed.
enum class Standing { Always, WhenSought };

/// An action as the palette knows it.
struct CommandRow {
    Map::Action action;
    Standing standing;
    const char *words; // French, translated: others that it is found by, beside its label
};

struct Table {
    Q_DECLARE_TR_FUNCTIONS(vorle::Commands)
public:
    static constexpr CommandRow rows[] = {
        {Map::RunNow, Standing::Always, QT_TR_NOOP("lancer chercher run recherche veille")},
        {Map::StopRun, Standing::Always, QT_TR_NOOP("interrompre annuler stop")},
        {Map::AddTopic, Standing::Always, QT_TR_NOOP("nouveau lien capturer url")},
        {Map::Undo, Standing::Always, QT_TR_NOOP("défaire revenir retour")},
        {Map::Keep, Standing::WhenSought, ""},
        {Map::Later, Standing::WhenSought, QT_TR_NOOP("mettre de côté")},
        {Map::Dismiss, Standing::WhenSought, QT_TR_NOOP("écarter rejeter")},
        {Map::FirstStep, Standing::WhenSought, QT_TR_NOOP("premier pas agent terminal")},
        {Map::Done, Standing::WhenSought, QT_TR_NOOP("terminer fini")},
        {Map::Postpone, Standing::WhenSought, QT_TR_NOOP("repousser plus tard")},
        {Map::Remove, Standing::WhenSought, QT_TR_NOOP("enlever supprimer")},
        {Map::BackToTriage, Standing::WhenSought, QT_TR_NOOP("retrier")},
        {Map::WorthMeh, Standing::WhenSought, QT_TR_NOOP("donner")},
        {Map::WorthUseful, Standing::WhenSought, QT_TR_NOOP("donner")},
        {Map::WorthGem, Standing::WhenSought, QT_TR_NOOP("donner")},
        {Map::ToggleCard, Standing::WhenSought, QT_TR_NOOP("ouvrir page lecture")},
        {Map::CloseCard, Standing::WhenSought, QT_TR_NOOP("fermer page lecture")},
        {Map::OpenSource, Standing::WhenSought, QT_TR_NOOP("lien page navigateur site")},
        {Map::CopyLink, Standing::WhenSought, QT_TR_NOOP("adresse url source")},
        {Map::Correct, Standing::WhenSought, QT_TR_NOOP("score changer")},
        {Map::ReadAgain, Standing::WhenSought, QT_TR_NOOP("réessayer")},
        {Map::GoInbox, Standing::Always, QT_TR_NOOP("voir rubrique section tri")},
        {Map::GoProgram, Standing::Always, QT_TR_NOOP("voir rubrique section semaine")},
        {Map::GoReserve, Standing::Always, QT_TR_NOOP("voir rubrique section plus tard")},
        {Map::GoLibrary, Standing::Always, QT_TR_NOOP("voir rubrique section faits terminés")},
        {Map::GoTerritory, Standing::Always,
         QT_TR_NOOP("voir rubrique section projets sites sujets réflexes outils")},
        {Map::GoReport, Standing::Always, QT_TR_NOOP("voir rubrique section chiffres fouilles")},
        {Map::OpenSettings, Standing::Always, QT_TR_NOOP("préférences options paramètres")},
        {Map::ShowShortcuts, Standing::Always, QT_TR_NOOP("clavier touches aide")},
        {Map::Redo, Standing::WhenSought, QT_TR_NOOP("refaire")},
        {Map::LargerText, Standing::WhenSought, QT_TR_NOOP("taille zoom plus grand caractères")},
        {Map::SmallerText, Standing::WhenSought, QT_TR_NOOP("taille zoom plus petit caractères")},
        {Map::UsualText, Standing::WhenSought, QT_TR_NOOP("zoom caractères")},
        {Map::SendFeedback, Standing::WhenSought, QT_TR_NOOP("avis message bug écrire")},
        {Map::LookForUpdate, Standing::WhenSought, QT_TR_NOOP("version nouvelle")},
    };
};

constexpr std::array textScales{80, 90, 100, 115, 130, 150};
static_assert(textScales.front() == textScaleRange.min && textScales.back() == textScaleRange.max);

/// How far a typed word is from the words of a command: 0 it is one of them, 1 it begins one, 2 it
/// looks like one; 3 it is none.
int distance(const QByteArray &typed, const QList<QByteArray> &words) {
    constexpr int none = 3;
    const NearWord near(typed);
    int best = none;
    for (const QByteArray &word : words) {
        best = std::min(best, word == typed            ? 0
                              : word.startsWith(typed) ? 1
                              : near.in(word)          ? 2
                                                       : none);
    }
    return best;
}

QList<QByteArray> wordsOf(const QString &text) {
    QByteArray folded = foldedForSearch(text);
    for (char &c : folded) { // "l’app", "(réserve)"
        c = belongsToWord(c) ? c : ' ';
    }
    QList<QByteArray> words = folded.split(' ');
    words.removeAll(QByteArray());
    return words;
}

/// The words that were typed; nothing where one of them is no word, as "c++", of which no command
/// is called by what is left.
std::optional<QList<QByteArray>> typedWords(const QString &text) {
    const QByteArray folded = foldedForSearch(text);
    const bool plain = std::ranges::all_of(folded, [](char c) {
        return belongsToWord(c) || c == ' ' || c == '\'' || c == '-' || c == ':';
    });
    return plain ? std::optional(wordsOf(text)) : std::nullopt;
}

/// What it does is seen at once and is undone by going back, or goes no further than the
/// pasteboard: the others decide, begin or end something, or lead out of the window.
bool onlyShows(Map::Action action) {
    switch (action) {
    case Map::AddTopic:
    case Map::GoInbox:
    case Map::GoProgram:
    case Map::GoReserve:
    case Map::GoLibrary:
    case Map::GoTerritory:
    case Map::GoReport:
    case Map::OpenSettings:
    case Map::ShowShortcuts:
    case Map::ToggleCard:
    case Map::CloseCard:
    case Map::CopyLink:
    case Map::Correct:
    case Map::SendFeedback:
    case Map::LargerText:
    case Map::SmallerText:
    case Map::UsualText:
        return true;
    default:
        return false;
    }
}

/// Whether what was typed is the name from its beginning on: its first word wholly, of the others
/// the last as far as it goes.
bool begins(const QList<QByteArray> &typed, const QList<QByteArray> &name) {
    if (typed.size() > name.size() || typed.first() != name.first()) {
        return false;
    }
    const qsizetype last = typed.size() - 1;
    return std::equal(typed.begin(), typed.begin() + last, name.begin()) &&
           name[last].startsWith(typed[last]);
}

} // namespace

Commands::Commands(Parts parts, QObject *parent) : QObject(parent), m_parts(parts) {
    const auto follow = [this](auto *sender, auto signal) {
        connect(sender, signal, this, &Commands::scheduleChanged);
    };
    follow(&m_parts.sections, &Sections::currentChanged);
    follow(&m_parts.decisions, &Decisions::stepsChanged);
    follow(&m_parts.run, &RunModel::runningChanged);
    follow(&m_parts.keyboard, &KeyboardMap::groupsChanged);
    for (const Section section :
         {Section::Inbox, Section::Program, Section::Reserve, Section::Library}) {
        TopicSelection *selection = m_parts.actions.of(section);
        follow(selection, &TopicSelection::currentChanged);
        follow(selection, &TopicSelection::enlargedChanged);
        // Which rows there are, and whether the chosen one may be decided by now.
        follow(selection->list(), &TopicListModel::countChanged);
        follow(selection->list(), &TopicListModel::dataChanged);
    }
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::textScale)) {
            scheduleChanged();
        }
    });
}

void Commands::scheduleChanged() {
    if (!std::exchange(m_due, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_due = false;
                Q_EMIT changed();
            },
            Qt::QueuedConnection);
    }
}

bool Commands::hasTopic() const {
    const TopicSelection *chosen = m_parts.actions.selection();
    return chosen != nullptr && !chosen->currentId().isEmpty();
}

/// The same as the key would do there: nothing to a topic that may not be decided yet.
bool Commands::canDecide(Map::Action action) const {
    if (!hasTopic() || !m_parts.keyboard.actsIn(action, m_parts.sections.current())) {
        return false;
    }
    const TopicSelection &chosen = *m_parts.actions.selection();
    return action == Map::Dismiss || action == Map::FirstStep ||
           chosen.list()->card(chosen.currentRow()).refusal().isEmpty();
}

bool Commands::canAct(Map::Action action) const {
    const TopicSelection *chosen = m_parts.actions.selection();
    const int scale = m_parts.preferences.settings().textScale;
    switch (action) {
    case Map::NoAction:
        return false;
    case Map::RunNow:
        return !m_parts.run.running();
    case Map::StopRun:
        return m_parts.run.running() && !m_parts.run.stopping();
    case Map::Undo: // the territory takes back its own changes
        return m_parts.decisions.canUndo() || m_parts.sections.current() == Section::Territory;
    case Map::Redo:
        return m_parts.decisions.canRedo();
    case Map::LookForUpdate:
    case Map::ShowUpdate:
        return !m_parts.demo;
    case Map::LargerText:
    case Map::SmallerText:
    case Map::UsualText:
        return textScaleAfter(action, scale) != scale;
    case Map::PreviousTopic:
        return hasTopic() && chosen->currentRow() > 0;
    case Map::NextTopic:
        return hasTopic() && chosen->currentRow() + 1 < chosen->list()->count();
    case Map::ToggleCard:
        return hasTopic() && !chosen->isEnlarged();
    case Map::CloseCard:
        return hasTopic() && chosen->isEnlarged();
    case Map::OpenSource:
    case Map::CopyLink:
        return hasTopic() && !chosen->list()->card(chosen->currentRow()).sources().isEmpty();
    case Map::Correct:
        return hasTopic() && chosen->list()->card(chosen->currentRow()).refusal().isEmpty();
    case Map::ReadAgain:
        return hasTopic() && !chosen->list()->card(chosen->currentRow()).captureProblem().isEmpty();
    default:
        return m_parts.actions.needsSight(action) ? canDecide(action) : true;
    }
}

bool Commands::isChosen(Map::Action action) const {
    return action >= Map::GoInbox && action <= Map::GoReport &&
           m_parts.keyboard.target(action) == m_parts.sections.current();
}

QString Commands::about(Map::Action action) const {
    const bool falls =
        m_parts.actions.needsSight(action) || action == Map::ToggleCard || action == Map::ReadAgain;
    if (!falls || !hasTopic()) {
        return {};
    }
    const TopicSelection &chosen = *m_parts.actions.selection();
    return chosen.list()->card(chosen.currentRow()).title();
}

int Commands::textScaleAfter(Map::Action action, int now) {
    switch (action) {
    case Map::LargerText:
        for (const int scale : textScales) {
            if (scale > now) {
                return scale;
            }
        }
        return now;
    case Map::SmallerText:
        for (const int scale : textScales | std::views::reverse) {
            if (scale < now) {
                return scale;
            }
        }
        return now;
    case Map::UsualText:
        return Settings().textScale;
    default:
        return now;
    }
}

bool Commands::perform(Map::Action action) {
    if (action != Map::LargerText && action != Map::SmallerText && action != Map::UsualText) {
        return false;
    }
    const int now = m_parts.preferences.settings().textScale;
    const int after = textScaleAfter(action, now);
    if (after != now) {
        m_parts.preferences.change(&Settings::textScale, after);
        Q_EMIT said(tr("Texte à %1\u202F%").arg(after));
    } else {
        Q_EMIT said(action == Map::LargerText    ? tr("Le texte est déjà au plus grand.")
                    : action == Map::SmallerText ? tr("Le texte est déjà au plus petit.")
                                                 : tr("Le texte a déjà sa taille normale."));
    }
    return true;
}

QList<Commands::Offer> Commands::offers(const QString &words) const {
    const auto read = typedWords(words);
    if (!read) {
        return {};
    }
    const QList<QByteArray> &typed = *read;
    struct Ranked {
        Offer offer;
        int distance;
    };
    std::vector<Ranked> found;
    for (const CommandRow &row : Table::rows) {
        if (!canAct(row.action) || isChosen(row.action)) {
            continue;
        }
        if (typed.isEmpty()) {
            if (row.standing == Standing::Always) {
                found.push_back({{row.action}, 0});
            }
            continue;
        }
        const QList<QByteArray> own = wordsOf(m_parts.keyboard.label(row.action));
        const QList<QByteArray> other =
            wordsOf(*row.words == '\0' ? QString() : Table::tr(row.words));
        int sum = 0;
        bool near = false;
        bool ofName = true;
        const bool all = std::ranges::all_of(typed, [&](const QByteArray &word) {
            // Its own words before the others that it is found by.
            const int ofOwn = 2 * distance(word, own);
            const int least = std::min(ofOwn, 2 * distance(word, other) + 1);
            sum += least;
            near = near || least >= 4;
            ofName = ofName && least == ofOwn;
            return least < 6;
        });
        if (all) {
            const bool named = onlyShows(row.action) ? ofName : begins(typed, own);
            found.push_back({{row.action, near, named}, sum});
        }
    }
    std::ranges::stable_sort(found, {}, &Ranked::distance);
    QList<Offer> offers;
    for (const Ranked &each : found) {
        offers.append(each.offer);
    }
    return offers;
}

} // namespace vorle
