#pragma once

#include "app/models/CardButton.h"
#include "app/models/Decisions.h"
#include "app/models/KeyboardMap.h"
#include "app/models/Sections.h"
#include "app/models/TopicSelection.h"

#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// What the window's actions do to a topic: on which one they fall, whether it may be decided now,
/// what its card leaves behind. Holds what is chosen in each list. Main thread; what it is given
/// outlives it.
class TopicActions final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// What is chosen in the section that is shown; null in one that lists no topics.
    Q_PROPERTY(vorle::TopicSelection *selection READ selection NOTIFY selectionChanged FINAL)

public:
    TopicActions(Sections &sections, Decisions &decisions, const KeyboardMap &keyboard,
                 QObject *parent = nullptr);

    TopicSelection *selection() const { return of(m_sections.current()); }
    Q_INVOKABLE vorle::TopicSelection *of(vorle::sections::Section section) const;
    /// The buttons of a card of that section, by what may be done with its topic now: a list of
    /// CardButton.
    Q_INVOKABLE QVariantList buttons(vorle::sections::Section section,
                                     const vorle::TopicCard &card) const;
    /// The same for the card's menu, with all else that can be done there.
    Q_INVOKABLE QVariantList menu(vorle::sections::Section section,
                                  const vorle::TopicCard &card) const;
    /// The line under that section's list that tells its keys.
    Q_INVOKABLE QString keysHint(vorle::sections::Section section) const;

    /// Whether the action acts on the chosen topic so that it has to be in view: it decides, or
    /// leads out of the window.
    Q_INVOKABLE bool needsSight(vorle::KeyboardMap::Action action) const;
    /// Does the action, where it is one that acts on topics; false for all others. Nothing happens
    /// to a topic that may not be decided now: why is `said`.
    Q_INVOKABLE bool perform(vorle::KeyboardMap::Action action);
    /// Goes to a topic that was found: to its section, and to it there; says so where it is in
    /// none.
    Q_INVOKABLE void showTopic(const QString &topicId);
    /// Takes away the line that the last decided topic left, in whichever list.
    Q_INVOKABLE void forgetGhost();

Q_SIGNALS:
    void selectionChanged();
    /// A word on what just happened, or could not; it takes the place of the line.
    void said(const QString &sentence);
    /// A line was left: it goes after a while.
    void ghostLeft();
    /// What the line says, where the page of the next topic lies over it.
    void decidedUnderPage(const QString &sentence);
    /// A decision, for who does not see where the cards go: "Gardé. Suivant : Sujet 8. Note 8 sur
    /// 10.", with what the section says of itself once nothing is left there.
    void decidedAloud(const QString &sentence);
    /// A topic's first step is to be taken with the agent.
    void firstStepAsked(const QString &topicId);
    /// A topic's link is to be opened, or copied.
    void sourceAsked(const QString &topicId);
    void linkCopyAsked(const QString &topicId);
    /// A captured link is to be read once more.
    void readingAsked(const QString &topicId);

private:
    void decide(KeyboardMap::Action action);
    void tell(const QString &sentence);
    QString aloud(const Ghost &ghost) const;

    Sections &m_sections;
    Decisions &m_decisions;
    const KeyboardMap &m_keyboard;
    // By section. Children of this: what QML is given by a call and has no parent, it would delete.
    QList<TopicSelection *> m_selections;
};

} // namespace vorle
