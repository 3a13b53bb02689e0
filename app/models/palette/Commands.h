#pragma once

#include "app/models/TopicActions.h"
#include "core/Preferences.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Which actions of the keyboard map can act now, and on what: for the menus and the palette, which
/// offer them by their names. Main thread; what it is given outlives it.
class Commands final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
public:
    struct Parts {
        const KeyboardMap &keyboard;
        Sections &sections;
        TopicActions &actions;
        Decisions &decisions;
        RunModel &run;
        Preferences &preferences;
        bool demo = false; ///< it looks for no update
    };
    explicit Commands(Parts parts, QObject *parent = nullptr);

    const KeyboardMap &keyboard() const { return m_parts.keyboard; }
    /// Whether something would come of it. What decides a topic is held to its being in view by
    /// whoever performs it.
    bool canAct(KeyboardMap::Action action) const;
    /// Of a menu's entry: it is what is chosen already.
    bool isChosen(KeyboardMap::Action action) const;
    /// The title of the topic it would fall on; "" for all that fall on none.
    QString about(KeyboardMap::Action action) const;
    /// The size of type that the action goes to, in percent; the present one where there is none.
    static int textScaleAfter(KeyboardMap::Action action, int now);

    /// Does what is neither done to topics nor by the window: the size of its type, a step further,
    /// which is `said`. False for any other action.
    Q_INVOKABLE bool perform(vorle::KeyboardMap::Action action);

    /// What the palette offers: those that can act now and are found by the words, the nearest
    /// first. Without words, the few that are wanted most, in an order that stays. Words with
    /// signs in them ("c++") are of no command.
    struct Offer {
        KeyboardMap::Action action;
        bool near = false; ///< found by words that only look like its own
        /// What was typed is its name, or words of it; one that does more than show something is
        /// named from the beginning on, with its first word whole. Others may not stand before a
        /// topic that has the same words: ↩ would do what nobody asked for.
        bool named = true;
    };
    QList<Offer> offers(const QString &words) const;

Q_SIGNALS:
    /// What can act now may be another; told once after many changes.
    void changed();
    /// A word on what was just done.
    void said(const QString &sentence);

private:
    bool hasTopic() const;
    bool canDecide(KeyboardMap::Action action) const;
    void scheduleChanged();

    Parts m_parts;
    bool m_due = false;
};

} // namespace vorle
