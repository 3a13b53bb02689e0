#include "app/window/MenuBar.h"

#include "app/models/palette/Commands.h"
#include "app/window/MenuTarget.h"

#include <QGuiApplication>
#include <QMenu>

#include <utility>

namespace vorle {

namespace {

/// The entries that the system moves to the program's own menu, whatever menu they stand in.
QAction::MenuRole roleOf(const MenuEntry &entry) {
    if (entry.command == WindowCommand::Quit) {
        return QAction::QuitRole;
    }
    if (entry.command == WindowCommand::About) {
        return QAction::AboutRole;
    }
    if (entry.action == KeyboardMap::OpenSettings) {
        return QAction::PreferencesRole;
    }
    return entry.action == KeyboardMap::LookForUpdate ? QAction::ApplicationSpecificRole
                                                      : QAction::NoRole; // not by its words
}

} // namespace

bool MenuBar::isWanted() { return QGuiApplication::platformName() == u"cocoa"; }

MenuBar::MenuBar(Commands &commands, MenuTarget &target, QObject *parent)
    : QObject(parent), m_commands(commands), m_target(target) {
    build();
    connect(&commands, &Commands::changed, this, qOverload<>(&MenuBar::follow));
    connect(&target, &MenuTarget::changed, this, qOverload<>(&MenuBar::follow));
}

void MenuBar::build() {
    for (const Menu &menu : menuBar(m_commands.keyboard())) {
        QMenu *shown = m_bar.addMenu(menu.title);
        for (const MenuEntry &entry : menu.entries) {
            if (entry.isSeparator()) {
                shown->addSeparator();
            } else {
                m_items.append({entry, made(*shown, entry)});
            }
        }
    }
    follow();
}

QAction *MenuBar::made(QMenu &menu, const MenuEntry &entry) {
    QAction *item = menu.addAction(entry.text);
    item->setMenuRole(roleOf(entry));
    item->setCheckable(entry.action >= KeyboardMap::GoInbox &&
                       entry.action <= KeyboardMap::GoReport);
    // Held down, it is pressed once: a decision must not fall on one topic after the other.
    item->setAutoRepeat(false);
    connect(item, &QAction::triggered, this, [this, entry] {
        if (entry.command != WindowCommand::None) {
            m_target.choose(entry.command);
        } else {
            m_target.choose(entry.action);
        }
        follow(); // a press ticks and unticks by itself
    });
    return item;
}

void MenuBar::follow() {
    for (const Shown &shown : std::as_const(m_items)) {
        follow(shown);
    }
}

void MenuBar::follow(const Shown &shown) const {
    const auto &[entry, item] = shown;
    if (entry.command != WindowCommand::None) {
        item->setEnabled(m_target.reaches(entry.command));
        item->setShortcut(entry.keys);
        return;
    }
    const bool reached = m_target.reaches(entry.action);
    item->setEnabled(reached && m_commands.canAct(entry.action));
    item->setShortcut(reached ? entry.keys : QKeySequence());
    item->setChecked(m_commands.isChosen(entry.action));
    if (entry.action == KeyboardMap::FirstStep) { // it names the agent
        item->setText(m_commands.keyboard().label(entry.action));
    }
}

} // namespace vorle
