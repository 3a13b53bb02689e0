#include "app/models/palette/Menus.h"

#include "app/models/Sections.h"
#include "base/French.h"

#include <variant>

namespace vorle {

namespace {

using Map = KeyboardMap;

constexpr struct Parting {
} line; // between groups of entries

struct Own {
    WindowCommand command;
    QString text;
    QKeySequence keys;
};

using Item = std::variant<Parting, Map::Action, Own>;

/// The system's own entries, with the keys every program gives them.
Own own(WindowCommand command) {
    const auto keys = [](Qt::Key key, Qt::KeyboardModifiers more = {}) {
        return QKeySequence(QKeyCombination(Qt::ControlModifier | more, key));
    };
    switch (command) {
    case WindowCommand::About:
        return {command, French::tr("À propos de vorle"), {}};
    case WindowCommand::Close:
        return {command, French::tr("Fermer la fenêtre"), keys(Qt::Key_W)};
    case WindowCommand::Minimize:
        return {command, French::tr("Placer dans le Dock"), keys(Qt::Key_M)};
    case WindowCommand::FullScreen:
        return {command, French::tr("Plein écran"), keys(Qt::Key_F, Qt::MetaModifier)};
    case WindowCommand::Raise:
        return {command, French::tr("Fenêtre principale"), {}};
    case WindowCommand::Quit:
        return {command, French::tr("Quitter vorle"), keys(Qt::Key_Q)};
    case WindowCommand::Cut:
        return {command, French::tr("Couper"), keys(Qt::Key_X)};
    case WindowCommand::Copy:
        return {command, French::tr("Copier"), keys(Qt::Key_C)};
    case WindowCommand::Paste:
        return {command, French::tr("Coller"), keys(Qt::Key_V)};
    case WindowCommand::SelectAll:
        return {command, French::tr("Tout sélectionner"), keys(Qt::Key_A)};
    case WindowCommand::None:
        break;
    }
    return {};
}

QString textOf(const Map &keyboard, Map::Action action) {
    if (action >= Map::GoInbox && action <= Map::GoReport) {
        return Sections::title(keyboard.target(action));
    }
    const QString label = keyboard.label(action);
    const QString keys = keyboard.keys(action);
    return keys.isEmpty() || !keyboard.sequence(action).isEmpty()
               ? label
               : QStringLiteral("%1 (%2)").arg(label, keys);
}

class Builder {
public:
    explicit Builder(const Map &keyboard) : m_keyboard(keyboard) {}

    void add(const QString &title, std::initializer_list<Item> items) {
        Menu menu{title, {}};
        for (const Item &item : items) {
            MenuEntry entry;
            if (const auto *action = std::get_if<Map::Action>(&item)) {
                entry.action = *action;
                entry.text = textOf(m_keyboard, *action);
                entry.keys = m_keyboard.sequence(*action);
            } else if (const auto *system = std::get_if<Own>(&item)) {
                entry.command = system->command;
                entry.text = system->text;
                entry.keys = system->keys;
            }
            menu.entries.append(entry);
        }
        m_menus.append(menu);
    }
    QList<Menu> menus() const { return m_menus; }

private:
    const Map &m_keyboard;
    QList<Menu> m_menus;
};

} // namespace

QList<Menu> menuBar(const KeyboardMap &keyboard) {
    using enum WindowCommand;
    Builder bar(keyboard);
    bar.add(QStringLiteral("vorle"),
            {own(About), Map::LookForUpdate, line, Map::OpenSettings, line, own(Quit)});
    bar.add(French::tr("Fichier"),
            {Map::AddTopic, line, Map::RunNow, Map::StopRun, line, own(Close)});
    bar.add(French::tr("Édition"), {Map::Undo, Map::Redo, line, own(Cut), own(Copy), own(Paste),
                                    own(SelectAll), line, Map::Search});
    bar.add(French::tr("Sujet"), {Map::PreviousTopic,
                                  Map::NextTopic,
                                  Map::ToggleCard,
                                  Map::CloseCard,
                                  Map::OpenSource,
                                  Map::CopyLink,
                                  line,
                                  Map::Keep,
                                  Map::Later,
                                  Map::Dismiss,
                                  Map::BackToTriage,
                                  line,
                                  Map::FirstStep,
                                  Map::Done,
                                  Map::Postpone,
                                  Map::Remove,
                                  line,
                                  Map::WorthMeh,
                                  Map::WorthUseful,
                                  Map::WorthGem,
                                  line,
                                  Map::Correct,
                                  Map::ReadAgain});
    bar.add(French::tr("Présentation"),
            {Map::GoInbox, Map::GoProgram, Map::GoReserve, Map::GoLibrary, Map::GoTerritory,
             Map::GoReport, line, Map::GoMenu, Map::GoContent, line, Map::LargerText,
             Map::SmallerText, Map::UsualText, line, own(FullScreen)});
    bar.add(French::tr("Fenêtre"), {own(Minimize), line, own(Raise)});
    bar.add(French::tr("Aide"), {Map::ShowShortcuts, line, Map::SendFeedback});
    return bar.menus();
}

} // namespace vorle
