#pragma once

#include "app/models/Decisions.h"
#include "app/models/TopicListModel.h"
#include "app/triage/TriageSitting.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// Topics that went the same way in a sitting of triage: the discs of their scores, the highest
/// first. A value.
struct SortedGroup {
    Q_GADGET
    QML_VALUE_TYPE(sortedGroup)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(QVariantList badges MEMBER badges FINAL)

public:
    QString name;        ///< "gardés"
    QString text;        ///< "5 gardés"
    QVariantList badges; ///< of BadgeLook

    bool operator==(const SortedGroup &) const = default;
};

/// What stands where all is sorted: how many topics went which way since the person sat down to it.
/// Nothing while there is something to sort, or where nothing was sorted here. Main thread; what it
/// is given outlives it.
class TriageEnd final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// "12 sujets en 4 min : 5 gardés, 3 plus tard, 4 écartés"; without the time below a minute.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    /// A list of SortedGroup, those that hold any.
    Q_PROPERTY(QVariantList groups READ groups NOTIFY changed FINAL)

public:
    TriageEnd(TopicStore &store, TopicListModel &inbox, Decisions &decisions,
              QObject *parent = nullptr);

    QString text() const { return m_text; }
    QVariantList groups() const { return m_groups; }

Q_SIGNALS:
    void changed();

private:
    void follow();
    void count();

    TopicStore &m_store;
    TopicListModel &m_inbox;
    TriageSitting m_sitting;
    bool m_empty = true;
    QString m_text;
    QVariantList m_groups;
};

} // namespace vorle
