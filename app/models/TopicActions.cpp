#include "app/models/TopicActions.h"

#include <algorithm>
#include <iterator>

namespace vorle {

namespace {

using Map = KeyboardMap;

/// What a decision does, by its action.
struct DecisionRow {
    Map::Action action;
    Decisions::Taken (*take)(Decisions &decisions, const QString &topicId);
};

constexpr DecisionRow decisionRows[] = {
    {Map::Keep, [](Decisions &d, const QString &id) { return d.keep(id); }},
    {Map::Later, [](Decisions &d, const QString &id) { return d.later(id); }},
    {Map::Dismiss, [](Decisions &d, const QString &id) { return d.dismiss(id); }},
    {Map::Done, [](Decisions &d, const QString &id) { return d.done(id); }},
    {Map::Postpone, [](Decisions &d, const QString &id) { return d.postpone(id); }},
    {Map::Remove, [](Decisions &d, const QString &id) { return d.removeFromProgram(id); }},
    {Map::BackToTriage, [](Decisions &d, const QString &id) { return d.backToTriage(id); }},
    {Map::WorthMeh, [](Decisions &d, const QString &id) { return d.verdict(id, Worth::Meh); }},
    {Map::WorthUseful,
     [](Decisions &d, const QString &id) { return d.verdict(id, Worth::Useful); }},
    {Map::WorthGem, [](Decisions &d, const QString &id) { return d.verdict(id, Worth::Gem); }},
};

const DecisionRow *decisionOf(Map::Action action) {
    const auto *row = std::ranges::find(decisionRows, action, &DecisionRow::action);
    return row == std::end(decisionRows) ? nullptr : row;
}

Allowed allowedOf(const TopicCard &card) {
    return card.refusal().isEmpty()          ? Allowed::Everything
           : card.captureProblem().isEmpty() ? Allowed::Dismissal
                                             : Allowed::DismissalOrRetry;
}

} // namespace

TopicActions::TopicActions(Sections &sections, Decisions &decisions, const KeyboardMap &keyboard,
                           QObject *parent)
    : QObject(parent), m_sections(sections), m_decisions(decisions), m_keyboard(keyboard) {
    for (int section = 0; TopicListModel *list = sections.listOf(Section(section)); ++section) {
        m_selections.append(new TopicSelection(*list, this));
    }
    // The page is put away while its section still has the keyboard.
    connect(&sections, &Sections::leaving, this, [this] {
        if (TopicSelection *chosen = selection()) {
            chosen->setEnlarged(false);
        }
    });
    connect(&sections, &Sections::currentChanged, this, &TopicActions::selectionChanged);
    // What comes back is what one wants to see.
    connect(&decisions, &Decisions::undone, this, [this](const QString &topicId) {
        if (TopicSelection *chosen = selection()) {
            chosen->showReturned(topicId);
        }
    });
}

TopicSelection *TopicActions::of(sections::Section section) const {
    return m_selections.value(static_cast<int>(section));
}

QVariantList TopicActions::buttons(sections::Section section, const TopicCard &card) const {
    return cardButtons(static_cast<TopicSection>(section), allowedOf(card), m_keyboard);
}

QVariantList TopicActions::menu(sections::Section section, const TopicCard &card) const {
    return cardMenu(static_cast<TopicSection>(section), allowedOf(card), m_keyboard);
}

QString TopicActions::keysHint(sections::Section section) const {
    return vorle::keysHint(static_cast<TopicSection>(section), m_keyboard);
}

bool TopicActions::needsSight(Map::Action action) const {
    return decisionOf(action) != nullptr || action == Map::FirstStep || action == Map::Correct ||
           action == Map::OpenSource || action == Map::CopyLink;
}

bool TopicActions::perform(Map::Action action) {
    TopicSelection *chosen = selection();
    const QString id = chosen == nullptr ? QString() : chosen->currentId();
    switch (action) {
    case Map::Undo:
        tell(m_decisions.undo());
        return true;
    case Map::Redo:
        tell(m_decisions.redo());
        return true;
    case Map::PreviousTopic:
    case Map::NextTopic:
        if (chosen != nullptr) {
            chosen->step(action == Map::NextTopic ? 1 : -1);
        }
        return true;
    case Map::ToggleCard:
    case Map::CloseCard:
        if (chosen != nullptr) {
            chosen->setEnlarged(action == Map::ToggleCard && !chosen->isEnlarged());
        }
        return true;
    case Map::FirstStep:
        if (!id.isEmpty()) {
            Q_EMIT firstStepAsked(id);
        }
        return true;
    case Map::OpenSource:
        if (!id.isEmpty()) {
            Q_EMIT sourceAsked(id);
        }
        return true;
    case Map::CopyLink:
        if (!id.isEmpty()) {
            Q_EMIT linkCopyAsked(id);
        }
        return true;
    case Map::ReadAgain:
        if (!id.isEmpty()) {
            Q_EMIT readingAsked(id);
        }
        return true;
    default:
        decide(action);
        return decisionOf(action) != nullptr;
    }
}

void TopicActions::decide(Map::Action action) {
    const DecisionRow *decision = decisionOf(action);
    TopicSelection *chosen = selection();
    if (decision == nullptr || chosen == nullptr || chosen->currentId().isEmpty()) {
        return;
    }
    const TopicListModel &list = *chosen->list();
    const QString refusal = list.card(chosen->currentRow()).refusal();
    if (!refusal.isEmpty() && action != Map::Dismiss) {
        tell(refusal);
        return;
    }
    Ghost ghost = chosen->ghostToLeave();
    const bool enlarged = chosen->isEnlarged();
    const Decisions::Taken went = decision->take(m_decisions, ghost.topicId);
    if (!went) {
        return;
    }
    ghost.went = *went;
    forgetGhost();
    if (list.rowOf(ghost.topicId) < 0) {
        chosen->setGhost(ghost);
        Q_EMIT ghostLeft();
    }
    if (enlarged) {
        Q_EMIT decidedUnderPage(tr("%1\u00A0: %2").arg(ghost.went, ghost.title));
    }
    Q_EMIT decidedAloud(aloud(ghost));
}

QString TopicActions::aloud(const Ghost &ghost) const {
    const QString what = ghost.went.section(QStringLiteral(" · "), 0, 0); // without its new place
    const TopicListModel &list = *selection()->list();
    if (list.rowOf(ghost.topicId) >= 0) {
        return tr("%1\u00A0: %2").arg(what, ghost.title);
    }
    if (selection()->currentRow() < 0) {
        return tr("%1. %2").arg(what, m_sections.emptyTitle());
    }
    const TopicCard next = list.card(selection()->currentRow());
    return tr("%1. Suivant\u00A0: %2. %3").arg(what, next.title(), next.badge().name);
}

void TopicActions::showTopic(const QString &topicId) {
    // Not where it was found: it may have been decided since, from elsewhere.
    const auto at = std::ranges::find_if(m_selections, [&](const TopicSelection *each) {
        return each->list()->rowOf(topicId) >= 0;
    });
    if (at == m_selections.end()) {
        tell(tr("Écarté\u00A0: il n’est plus dans tes rubriques."));
        return;
    }
    m_sections.setCurrent(static_cast<Section>(at - m_selections.begin()));
    selection()->show(topicId);
}

void TopicActions::tell(const QString &sentence) {
    if (!sentence.isEmpty()) {
        forgetGhost();
        Q_EMIT said(sentence);
    }
}

void TopicActions::forgetGhost() {
    for (TopicSelection *each : m_selections) {
        each->setGhost({});
    }
}

} // namespace vorle
