#include "app/window/MenuBar.h"

#include "app/models/palette/Commands.h"

#include <QGuiApplication>
#include <QMenu>

namespace vorle {

namespace {

/// The entries that the system moves to the program's own menu, whatever menu they stand in.
QAction::MenuRole roleOf(const MenuEntry &entry) {
    if (entry.command == WindowCommand::Quit) {
        return QAction::QuitRole;
    }
    if (entry.action == KeyboardMap::OpenSettings) {
        return QAction::PreferencesRole;
    }
    return entry.action == KeyboardMap::LookForUpdate ? QAction::ApplicationSpecificRole
                                                      : QAction::NoRole; // not by its words
}

} // namespace

bool MenuBar::isWanted() { return QGuiApplication::platformName() == u"cocoa"; }

MenuBar::MenuBar(Commands &commands, QObject *parent) : QObject(parent), m_commands(commands) {
    build();
    connect(&commands, &Commands::changed, this, &MenuBar::follow);
}

void MenuBar::build() {
    for (const Menu &menu : menuBar(m_commands.keyboard())) {
        QMenu *shown = m_bar.addMenu(menu.title);
        for (const MenuEntry &entry : menu.entries) {
            if (entry.isSeparator()) {
                shown->addSeparator();
                continue;
            }
            QAction *item = shown->addAction(entry.text);
            item->setMenuRole(roleOf(entry));
            item->setShortcut(entry.keys);
            item->setData(static_cast<int>(entry.action));
            item->setCheckable(entry.action >= KeyboardMap::GoInbox &&
                               entry.action <= KeyboardMap::GoReport);
            // Held down, it is pressed once: a decision must not fall on one topic after the other.
            item->setAutoRepeat(false);
            connect(item, &QAction::triggered, this, [this, entry] {
                if (entry.command != WindowCommand::None) {
                    Q_EMIT commandAsked(entry.command);
                } else {
                    Q_EMIT actionAsked(entry.action);
                }
                follow(); // a press ticks and unticks by itself
            });
        }
    }
    follow();
}

void MenuBar::follow() {
    for (QAction *menu : m_bar.actions()) {
        for (QAction *item : menu->menu()->actions()) {
            const auto action = static_cast<KeyboardMap::Action>(item->data().toInt());
            if (action == KeyboardMap::NoAction) {
                continue;
            }
            item->setEnabled(m_commands.canAct(action));
            item->setChecked(m_commands.isChosen(action));
            if (action == KeyboardMap::FirstStep) { // it names the agent
                item->setText(m_commands.keyboard().label(action));
            }
        }
    }
}

} // namespace vorle
