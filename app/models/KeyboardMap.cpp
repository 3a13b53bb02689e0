#include "app/models/KeyboardMap.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"
#include "app/models/KeyPress.h"

#include <QCoreApplication>

#include <algorithm>
#include <span>

namespace vorle {

namespace {

using Map = KeyboardMap;

/// Where a row of the sheet stands, and where its keys act.
enum class Group { Everywhere, Inbox, Program, ReserveAndLibrary };

/// A row's keys also act in sections whose group does not name them: reading is the same in every
/// list, and moving in every section.
enum class KeyScope { Group, EveryList, EverySection };

struct Binding {
    int key;
    int modifiers;
    Map::Action action;
    QStringView shown; // on a button, when the row shows several keys
};

constexpr int plain = Qt::NoModifier;
constexpr int command = Qt::ControlModifier;
constexpr int shiftCommand = Qt::ControlModifier | Qt::ShiftModifier;

struct Row {
    Group group;
    QStringView keys;  // a Mac's glyphs; empty: not in the sheet
    const char *label; // French, translated when it is shown; null in a row without keys
    KeyScope reach;
    std::span<const Binding> bindings;
};

constexpr Binding searchKeys[] = {{Qt::Key_K, command, Map::Search, {}}};
constexpr Binding addKeys[] = {{Qt::Key_N, command, Map::AddTopic, {}}};
constexpr Binding sectionKeys[] = {
    {Qt::Key_1, command, Map::GoInbox, u"⌘1"},     {Qt::Key_2, command, Map::GoProgram, u"⌘2"},
    {Qt::Key_3, command, Map::GoReserve, u"⌘3"},   {Qt::Key_4, command, Map::GoLibrary, u"⌘4"},
    {Qt::Key_5, command, Map::GoTerritory, u"⌘5"}, {Qt::Key_6, command, Map::GoReport, u"⌘6"}};
constexpr Binding sideKeys[] = {{Qt::Key_Left, plain, Map::GoMenu, u"←"},
                                {Qt::Key_Right, plain, Map::GoContent, u"→"}};
constexpr Binding runKeys[] = {{Qt::Key_R, command, Map::RunNow, {}}};
constexpr Binding undoKeys[] = {{Qt::Key_Z, command, Map::Undo, {}}};
constexpr Binding redoKeys[] = {{Qt::Key_Z, shiftCommand, Map::Redo, u"⇧⌘Z"}};
// "+" needs Shift on most keyboards, and its key alone is wanted as well; on a French one the place
// of the minus sign gives a bracket.
constexpr Binding sizeKeys[] = {{Qt::Key_Plus, command, Map::LargerText, u"⌘+"},
                                {Qt::Key_Equal, command, Map::LargerText, u"⌘+"},
                                {Qt::Key_Minus, command, Map::SmallerText, u"⌘−"},
                                {Qt::Key_ParenRight, command, Map::SmallerText, u"⌘−"},
                                {Qt::Key_0, command, Map::UsualText, u"⌘0"}};
constexpr Binding settingsKeys[] = {{Qt::Key_Comma, command, Map::OpenSettings, {}}};
constexpr Binding helpKeys[] = {{Qt::Key_Question, plain, Map::ShowShortcuts, u"?"},
                                {Qt::Key_Slash, command, Map::ShowShortcuts, u"⌘/"}};
constexpr Binding moveKeys[] = {{Qt::Key_Up, plain, Map::Previous, u"↑"},
                                {Qt::Key_Down, plain, Map::Next, u"↓"}};
constexpr Binding topicKeys[] = {{Qt::Key_Up, command, Map::PreviousTopic, u"⌘↑"},
                                 {Qt::Key_Down, command, Map::NextTopic, u"⌘↓"}};
// As many lists and readers have it, beside the arrows.
constexpr Binding turnKeys[] = {{Qt::Key_K, plain, Map::Previous, u"K"},
                                {Qt::Key_J, plain, Map::Next, u"J"}};
// ↩ does so too, but only where it is pressed on the cards themselves: TopicScreen has it.
constexpr Binding sourceKeys[] = {{Qt::Key_O, plain, Map::OpenSource, u"O"}};
constexpr Binding copyKeys[] = {{Qt::Key_C, command, Map::CopyLink, u"⌘C"}};
constexpr Binding keepKeys[] = {{Qt::Key_G, plain, Map::Keep, {}}};
constexpr Binding laterKeys[] = {{Qt::Key_L, plain, Map::Later, {}}};
constexpr Binding dismissKeys[] = {{Qt::Key_X, plain, Map::Dismiss, {}}};
constexpr Binding openKeys[] = {{Qt::Key_Space, plain, Map::ToggleCard, {}}};
constexpr Binding closeKeys[] = {{Qt::Key_Escape, plain, Map::CloseCard, {}}};
constexpr Binding stepKeys[] = {{Qt::Key_Return, command, Map::FirstStep, {}},
                                {Qt::Key_Enter, command, Map::FirstStep, {}}};
constexpr Binding doneKeys[] = {{Qt::Key_D, plain, Map::Done, {}}};
constexpr Binding postponeKeys[] = {{Qt::Key_R, plain, Map::Postpone, {}}};
constexpr Binding removeKeys[] = {{Qt::Key_Backspace, plain, Map::Remove, {}},
                                  {Qt::Key_Delete, plain, Map::Remove, {}}};
constexpr Binding backKeys[] = {{Qt::Key_T, plain, Map::BackToTriage, {}}};
constexpr Binding worthKeys[] = {{Qt::Key_1, plain, Map::WorthMeh, u"1"},
                                 {Qt::Key_2, plain, Map::WorthUseful, u"2"},
                                 {Qt::Key_3, plain, Map::WorthGem, u"3"}};

/// The sheet's rows, in a place whose texts are collected for translation under the map's name.
struct Sheet {
    Q_DECLARE_TR_FUNCTIONS(vorle::KeyboardMap)
public:
    /// The label is made at display time: it names the agent.
    static constexpr const char *stepLabel = QT_TR_NOOP("Lancer dans %1 ou approfondir avec %2");
    /// And this one the verdicts.
    static constexpr const char *worthLabels = QT_TR_NOOP("%1, %2, %3");

    /// Of actions that share a row, or have none.
    static constexpr struct {
        Map::Action action;
        const char *label;
    } labels[] = {
        {Map::GoInbox, QT_TR_NOOP("Aller aux sujets à trier")},
        {Map::GoProgram, QT_TR_NOOP("Aller au Programme")},
        {Map::GoReserve, QT_TR_NOOP("Aller à la Réserve")},
        {Map::GoLibrary, QT_TR_NOOP("Aller à la Bibliothèque")},
        {Map::GoTerritory, QT_TR_NOOP("Aller à ton territoire")},
        {Map::GoReport, QT_TR_NOOP("Aller au Bilan")},
        {Map::GoMenu, QT_TR_NOOP("Passer au menu")},
        {Map::GoContent, QT_TR_NOOP("Passer au contenu")},
        {Map::Redo, QT_TR_NOOP("Rétablir le tri annulé")},
        {Map::Previous, QT_TR_NOOP("Sujet précédent")},
        {Map::Next, QT_TR_NOOP("Sujet suivant")},
        {Map::PreviousTopic, QT_TR_NOOP("Sujet précédent")},
        {Map::NextTopic, QT_TR_NOOP("Sujet suivant")},
        {Map::WorthMeh, QT_TR_NOOP("Verdict : Bof")},
        {Map::WorthUseful, QT_TR_NOOP("Verdict : Utile")},
        {Map::WorthGem, QT_TR_NOOP("Verdict : Pépite")},
        {Map::ReadAgain, QT_TR_NOOP("Relire le lien capturé")},
        {Map::Correct, QT_TR_NOOP("Corriger la note")},
        {Map::SendFeedback, QT_TR_NOOP("Envoyer un retour")},
        {Map::ShowUpdate, QT_TR_NOOP("Voir la mise à jour")},
        {Map::LookForUpdate, QT_TR_NOOP("Rechercher une mise à jour")},
        {Map::StopRun, QT_TR_NOOP("Arrêter la fouille")},
        {Map::LargerText, QT_TR_NOOP("Agrandir le texte")},
        {Map::SmallerText, QT_TR_NOOP("Réduire le texte")},
        {Map::UsualText, QT_TR_NOOP("Taille de texte normale")},
        {Map::OpenSource, QT_TR_NOOP("Ouvrir la source")},
        {Map::CopyLink, QT_TR_NOOP("Copier le lien")},
    };

    static constexpr Row rows[] = {
        // The system registers the first one: it works from any application, and reaches no window.
        {Group::Everywhere,
         u"⌃⌥ Espace",
         QT_TR_NOOP("Ajouter un sujet, depuis n’importe quelle app"),
         KeyScope::Group,
         {}},
        {Group::Everywhere, u"⌘K", QT_TR_NOOP("Rechercher"), KeyScope::Group, searchKeys},
        {Group::Everywhere, u"⌘N", QT_TR_NOOP("Ajouter un sujet"), KeyScope::Group, addKeys},
        {Group::Everywhere, u"⌘1 … ⌘6", QT_TR_NOOP("Aller à une rubrique"), KeyScope::Group,
         sectionKeys},
        {Group::Everywhere, u"← →", QT_TR_NOOP("Passer du menu au contenu"), KeyScope::Group,
         sideKeys},
        {Group::Everywhere, u"⌘R", QT_TR_NOOP("Fouiller maintenant"), KeyScope::Group, runKeys},
        {Group::Everywhere, u"⌘Z", QT_TR_NOOP("Annuler le dernier tri"), KeyScope::Group, undoKeys},
        {Group::Everywhere, {}, {}, KeyScope::Group, redoKeys},
        {Group::Everywhere, {}, {}, KeyScope::Group, sizeKeys},
        {Group::Everywhere, u"⌘,", QT_TR_NOOP("Réglages"), KeyScope::Group, settingsKeys},
        {Group::Everywhere, u"?  ou  ⌘/", QT_TR_NOOP("Ces raccourcis"), KeyScope::Group, helpKeys},
        {Group::Inbox, u"↑ ↓", QT_TR_NOOP("Sujet précédent, suivant"), KeyScope::EverySection,
         moveKeys},
        {Group::Inbox, {}, {}, KeyScope::EveryList, topicKeys},
        {Group::Inbox, {}, {}, KeyScope::EveryList, turnKeys},
        {Group::Inbox, {}, {}, KeyScope::EveryList, sourceKeys},
        {Group::Inbox, {}, {}, KeyScope::EveryList, copyKeys},
        {Group::Inbox, u"G", QT_TR_NOOP("Garder au programme"), KeyScope::Group, keepKeys},
        {Group::Inbox, u"L", QT_TR_NOOP("Plus tard (réserve)"), KeyScope::Group, laterKeys},
        {Group::Inbox, u"X", QT_TR_NOOP("Pas pour moi"), KeyScope::Group, dismissKeys},
        {Group::Inbox, u"Espace", QT_TR_NOOP("Agrandir la carte pour lire"), KeyScope::EveryList,
         openKeys},
        {Group::Inbox, u"Échap", QT_TR_NOOP("Réduire la carte"), KeyScope::EveryList, closeKeys},
        {Group::Program, u"⌘↩", stepLabel, KeyScope::Group, stepKeys},
        {Group::Program, u"D", QT_TR_NOOP("Fait"), KeyScope::Group, doneKeys},
        {Group::Program, u"R", QT_TR_NOOP("Reporter"), KeyScope::Group, postponeKeys},
        {Group::Program, u"⌫", QT_TR_NOOP("Retirer"), KeyScope::Group, removeKeys},
        {Group::ReserveAndLibrary, u"G", QT_TR_NOOP("Garder au programme"), KeyScope::Group,
         keepKeys},
        {Group::ReserveAndLibrary, u"T", QT_TR_NOOP("Remettre à trier"), KeyScope::Group, backKeys},
        {Group::ReserveAndLibrary, u"1 2 3", worthLabels, KeyScope::Group, worthKeys},
    };
};
constexpr auto &rows = Sheet::rows;

QString titleOf(Group group) {
    switch (group) {
    case Group::Everywhere:
        return KeyboardMap::tr("Partout");
    case Group::Inbox:
        return statusLabel(TopicStatus::Inbox);
    case Group::Program:
        return statusLabel(TopicStatus::Program);
    case Group::ReserveAndLibrary:
        return KeyboardMap::tr("%1 et %2")
            .arg(statusLabel(TopicStatus::Reserve), statusLabel(TopicStatus::Done));
    }
    return {};
}

QString labelOf(const Row &row, AgentKind agent) {
    if (row.label == Sheet::worthLabels) {
        return KeyboardMap::tr(row.label).arg(worthLabel(Worth::Meh), worthLabel(Worth::Useful),
                                              worthLabel(Worth::Gem));
    }
    const QString label = KeyboardMap::tr(row.label);
    return row.label == Sheet::stepLabel ? label.arg(displayName(agent), chatName(agent)) : label;
}

bool holds(const Row &row, Map::Action action) {
    return std::ranges::find(row.bindings, action, &Binding::action) != row.bindings.end();
}

bool reaches(const Row &row, Section section) {
    if (row.reach == KeyScope::EverySection ||
        (row.reach == KeyScope::EveryList && section <= Section::Library)) {
        return true;
    }
    switch (row.group) {
    case Group::Everywhere:
        return true;
    case Group::Inbox:
        return section == Section::Inbox;
    case Group::Program:
        return section == Section::Program;
    case Group::ReserveAndLibrary:
        return section == Section::Reserve || section == Section::Library;
    }
    return false;
}

/// Text fields move, type, copy, undo and end with these keys themselves.
bool editsText(const Binding &binding) {
    return (binding.modifiers & command) == 0 || binding.key == Qt::Key_Z ||
           binding.key == Qt::Key_Up || binding.key == Qt::Key_Down ||
           binding.action == Map::FirstStep || binding.action == Map::CopyLink;
}

} // namespace

KeySpelling nativeSpelling() {
    // On a Mac Qt writes Control as ⌘: asking it spares naming systems here.
    const QKeySequence sequence(QKeyCombination(Qt::ControlModifier, Qt::Key_K));
    return sequence.toString(QKeySequence::NativeText).contains(u'⌘') ? KeySpelling::Glyphs
                                                                      : KeySpelling::Words;
}

QString spelled(const QString &glyphs, KeySpelling spelling) {
    if (spelling == KeySpelling::Glyphs) {
        return glyphs;
    }
    QString words;
    bool afterModifier = false;
    for (const QChar c : glyphs) {
        const QStringView word = c == u'⌃'   ? u"Ctrl+"
                                 : c == u'⌥' ? u"Alt+"
                                 : c == u'⇧' ? u"Maj+"
                                 : c == u'⌘' ? u"Ctrl+"
                                             : QStringView();
        if (!word.isEmpty()) {
            words += word;
        } else if (!(afterModifier && c == u' ')) {
            words += c;
        }
        afterModifier = !word.isEmpty();
    }
    return words;
}

KeyboardMap::KeyboardMap(AgentKind agent, KeySpelling spelling, QObject *parent)
    : QObject(parent), m_agent(agent), m_spelling(spelling) {}

QList<KeyGroup> KeyboardMap::sheet(AgentKind agent, KeySpelling spelling,
                                   const std::optional<QString> &captureKeys) {
    QList<KeyGroup> groups;
    for (const Row &row : rows) {
        const bool ofTheSystem = row.bindings.empty() && captureKeys; // the only one of its kind
        const QString keys = ofTheSystem ? *captureKeys : spelled(row.keys.toString(), spelling);
        if (keys.isEmpty()) {
            continue;
        }
        const QString title = titleOf(row.group);
        if (groups.isEmpty() || groups.last().title != title) {
            groups.append({title, {}});
        }
        groups.last().rows.append({keys, labelOf(row, agent)});
    }
    return groups;
}

KeyboardMap::Action KeyboardMap::action(sections::Section section, int key, int modifiers,
                                        bool textFieldFocused, quint32 scanCode) const {
    const KeyPress press = KeyPress::of(key, modifiers, scanCode);
    for (const Row &row : rows) {
        if (!reaches(row, section)) {
            continue;
        }
        for (const Binding &binding : row.bindings) {
            if (binding.key == press.key && binding.modifiers == press.modifiers &&
                !(textFieldFocused && editsText(binding))) {
                return binding.action;
            }
        }
    }
    return NoAction;
}

int KeyboardMap::digit(int key, int modifiers) const {
    const KeyPress press = KeyPress::of(key, modifiers);
    return press.modifiers == plain && press.key >= Qt::Key_0 && press.key <= Qt::Key_9
               ? press.key - Qt::Key_0
               : -1;
}

bool KeyboardMap::isEverywhere(Action action) const {
    return std::ranges::any_of(rows, [action](const Row &row) {
        return row.group == Group::Everywhere && holds(row, action);
    });
}

bool KeyboardMap::actsIn(Action action, Section section) const {
    return std::ranges::any_of(
        rows, [=](const Row &row) { return holds(row, action) && reaches(row, section); });
}

QString KeyboardMap::label(Action action) const {
    for (const auto &own : Sheet::labels) {
        if (own.action == action) {
            return tr(own.label);
        }
    }
    const auto row =
        std::ranges::find_if(rows, [action](const Row &each) { return holds(each, action); });
    return row == std::end(rows) || row->label == nullptr ? QString() : labelOf(*row, m_agent);
}

QKeySequence KeyboardMap::sequence(Action action) const {
    for (const Row &row : rows) {
        for (const Binding &binding : row.bindings) {
            // That of CopyLink is the menus’ own "Copier", which is for what is marked.
            if (binding.action == action && (binding.modifiers & command) != 0 &&
                action != CopyLink) {
                return QKeySequence(QKeyCombination(Qt::KeyboardModifiers(binding.modifiers),
                                                    Qt::Key(binding.key)));
            }
        }
    }
    return {};
}

bool KeyboardMap::repeats(Action action) const { return action >= Previous && action <= NextTopic; }

sections::Section KeyboardMap::target(Action action) const {
    return action >= GoInbox && action <= GoReport
               ? static_cast<sections::Section>(action - GoInbox)
               : Section::Inbox;
}

QString KeyboardMap::keys(Action action) const {
    for (const Row &row : rows) {
        for (const Binding &binding : row.bindings) {
            if (binding.action == action) {
                const QStringView shown = binding.shown.isEmpty() ? row.keys : binding.shown;
                return spelled(shown.toString(), m_spelling);
            }
        }
    }
    return {};
}

void KeyboardMap::setAgent(AgentKind agent) {
    if (agent != m_agent) {
        m_agent = agent;
        Q_EMIT groupsChanged();
    }
}

void KeyboardMap::setCaptureKeys(const QString &keys) {
    if (keys != m_captureKeys) {
        m_captureKeys = keys;
        Q_EMIT groupsChanged();
    }
}

QVariantList KeyboardMap::groups() const {
    return variants(sheet(m_agent, m_spelling, m_captureKeys));
}

QString KeyboardMap::inboxHint() const {
    return spelled(tr("↑ ↓ pour naviguer · Espace pour agrandir · ⌘Z pour annuler"), m_spelling);
}

QString KeyboardMap::openCardHint() const {
    return tr("Espace ou Échap pour réduire · après une décision, le sujet suivant s’affiche");
}

} // namespace vorle
