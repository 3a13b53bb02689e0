#include "app/models/CardButton.h"

#include "app/labels/DecisionLabels.h"
#include "app/models/ListParts.h"
#include "base/French.h"
#include "base/Json.h"
#include "core/Topic.h"

#include <utility>

namespace vorle {

namespace {

using Map = KeyboardMap;

CardButton worthButton(Worth worth, Map::Action action) {
    return {.text = worthLabel(worth),
            .keys = {},
            .action = action,
            .primary = false,
            .worth = json::rawText(worth)};
}

QList<CardButton> allButtons(TopicSection section) {
    const auto button = [](const QString &text, Map::Action action, bool primary = false) {
        return CardButton{
            .text = text, .keys = {}, .action = action, .primary = primary, .worth = {}};
    };
    switch (section) {
    case TopicSection::Inbox:
        return {button(actionLabel(Outcome::Kept), Map::Keep, true),
                button(actionLabel(Outcome::Later), Map::Later),
                button(actionLabel(Outcome::Dismissed), Map::Dismiss)};
    case TopicSection::Program:
        return {button(French::tr("Premier pas"), Map::FirstStep, true),
                button(actionLabel(Outcome::Done), Map::Done),
                button(actionLabel(Outcome::Postponed), Map::Postpone),
                button(actionLabel(Outcome::Removed), Map::Remove)};
    case TopicSection::Reserve:
    case TopicSection::Library:
        return {button(actionLabel(Outcome::Kept), Map::Keep, true),
                button(actionLabel(Outcome::PutBack), Map::BackToTriage),
                worthButton(Worth::Meh, Map::WorthMeh),
                worthButton(Worth::Useful, Map::WorthUseful),
                worthButton(Worth::Gem, Map::WorthGem)};
    }
    return {};
}

QList<CardButton> allowedButtons(TopicSection section, Allowed allowed) {
    QList<CardButton> buttons = allButtons(section);
    if (allowed != Allowed::Everything) {
        buttons.removeIf([](const CardButton &each) { return each.action != Map::Dismiss; });
    }
    if (allowed == Allowed::DismissalOrRetry) {
        buttons.prepend({.text = French::tr("Réessayer"),
                         .keys = {},
                         .action = Map::ReadAgain,
                         .primary = true,
                         .worth = {}});
    }
    return buttons;
}

QVariantList withKeys(QList<CardButton> buttons, const KeyboardMap &keyboard) {
    for (CardButton &button : buttons) {
        button.keys = keyboard.keys(button.action);
    }
    return variants(buttons);
}

} // namespace

QVariantList cardButtons(TopicSection section, Allowed allowed, const KeyboardMap &keyboard) {
    return withKeys(allowedButtons(section, allowed), keyboard);
}

QVariantList cardMenu(TopicSection section, Allowed allowed, const KeyboardMap &keyboard) {
    const auto line = [](const QString &text, Map::Action action, bool apart = false) {
        return CardButton{.text = text, .keys = {}, .action = action, .worth = {}, .apart = apart};
    };
    QList<CardButton> lines = allowedButtons(section, allowed);
    if (!lines.isEmpty()) {
        lines.first().apart = true;
    }
    lines.prepend(line(French::tr("Lire"), Map::ToggleCard));
    lines += line(keyboard.label(Map::OpenSource), Map::OpenSource, true);
    lines += line(keyboard.label(Map::CopyLink), Map::CopyLink);
    if (allowed == Allowed::Everything) {
        lines += line(keyboard.label(Map::Correct), Map::Correct);
    }
    return withKeys(std::move(lines), keyboard);
}

QString keysHint(TopicSection section, const KeyboardMap &keyboard) {
    switch (section) {
    case TopicSection::Inbox:
        return keyboard.inboxHint();
    case TopicSection::Program:
        return French::tr("%1 premier pas · %2 fait · %3 reporter · %4 retirer")
            .arg(keyboard.keys(Map::FirstStep), keyboard.keys(Map::Done),
                 keyboard.keys(Map::Postpone), keyboard.keys(Map::Remove));
    case TopicSection::Reserve:
    case TopicSection::Library:
        return French::tr("%1 garder · %2 remettre à trier · 1 2 3 %3, %4, %5")
            .arg(keyboard.keys(Map::Keep), keyboard.keys(Map::BackToTriage),
                 worthLabel(Worth::Meh).toLower(), worthLabel(Worth::Useful).toLower(),
                 worthLabel(Worth::Gem).toLower());
    }
    return {};
}

} // namespace vorle
