#pragma once

#include "app/models/KeyboardMap.h"
#include "app/triage/SectionOrder.h"

#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A button of a card, of the page that it opens into, or of a section without topics; a line of a
/// card's menu. A value.
struct CardButton {
    Q_GADGET
    QML_VALUE_TYPE(cardButton)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(QString keys MEMBER keys FINAL)
    Q_PROPERTY(vorle::KeyboardMap::Action action MEMBER action FINAL)
    Q_PROPERTY(bool primary MEMBER primary FINAL)
    Q_PROPERTY(QString worth MEMBER worth FINAL)
    Q_PROPERTY(bool apart MEMBER apart FINAL)

public:
    QString text;
    QString keys; ///< that do the same; "" for none
    KeyboardMap::Action action = KeyboardMap::NoAction;
    bool primary = false; ///< the one that stands out
    QString worth;        ///< of a verdict: the Worth it gives, as it is kept; else ""
    bool apart = false;   ///< in a menu: another kind of thing than the one before

    bool operator==(const CardButton &) const = default;
};

/// What may be done with a topic now.
enum class Allowed {
    Everything,
    Dismissal,       ///< it is not judged yet: it can only be sent away
    DismissalOrRetry ///< reading it failed: it can also be tried again
};

/// The buttons of a section's cards, a list of CardButton. Pure.
QVariantList cardButtons(TopicSection section, Allowed allowed, const KeyboardMap &keyboard);

/// All that can be done to such a topic, as its card's menu has it: reading it, its buttons, its
/// link, its score; a list of CardButton. Pure.
QVariantList cardMenu(TopicSection section, Allowed allowed, const KeyboardMap &keyboard);

/// The line under a section's list that tells its keys. Pure.
QString keysHint(TopicSection section, const KeyboardMap &keyboard);

} // namespace vorle
