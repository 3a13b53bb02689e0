#pragma once

#include "app/models/territory/RowsModel.h"
#include "app/models/territory/TerritoryRows.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "judging/Learning.h"

#include <QTimer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A rule learned from the user's decisions, or a sample of one.
struct ReflexRow {
    Q_GADGET
    QML_VALUE_TYPE(reflexRow)
    Q_PROPERTY(QString id MEMBER id FINAL)
    Q_PROPERTY(QString heading MEMBER heading FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString evidence MEMBER evidence FINAL)
    Q_PROPERTY(QString effect MEMBER effect FINAL)
    Q_PROPERTY(bool on MEMBER on FINAL)
    Q_PROPERTY(bool sample MEMBER sample FINAL)
    Q_PROPERTY(QString told READ told FINAL)

public:
    QString id;
    QString heading; ///< over the first of each group: "Ce que je note plus haut"; else empty
    QString title;
    QString evidence;
    QString effect;
    bool on = true;
    bool sample = false; ///< with invented figures, never applied

    /// All but the title, for who listens: "tu en gardes 72 %, contre 38 % pour le reste, +2,
    /// coupé".
    QString told() const;
    QString key() const { return sample ? u'~' + id : id; }
    bool operator==(const ReflexRow &) const = default;
};

/// A decision behind a reflex.
struct DecidedRow {
    Q_GADGET
    QML_VALUE_TYPE(decidedRow)
    Q_PROPERTY(QString topicId MEMBER topicId FINAL)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString went MEMBER went FINAL)
    Q_PROPERTY(QString date MEMBER date FINAL)
    Q_PROPERTY(int section MEMBER section FINAL)

public:
    QString topicId;
    QString title;
    QString went;     ///< "Programme", "Pas pour moi"
    QString date;     ///< "2 novembre"
    int section = -1; ///< a Section's number, -1 for a dismissed topic

    bool operator==(const DecidedRow &) const = default;
};

/// What the decisions taught, by group. Learned anew while it is `active`, a moment after a
/// decision or a setting changed: nothing is worked out for a key. Main thread; the parts outlive
/// it.
class ReflexesModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Of ReflexRow; samples while nothing can be learned yet.
    Q_PROPERTY(vorle::RowsModel *rows READ rows CONSTANT FINAL)
    /// What stands in the place of reflexes; "" when there are some.
    Q_PROPERTY(QString stateText READ stateText NOTIFY changed FINAL)
    /// Said below, when one is switched off; else "".
    Q_PROPERTY(QString footText READ footText NOTIFY changed FINAL)
    /// What is asked before starting again; "" when there is nothing to forget.
    Q_PROPERTY(QString startAgainText READ startAgainText NOTIFY changed FINAL)

public:
    struct Parts {
        Preferences &preferences;
        const TopicStore &store;
        const Clock &clock;
        LocalZone zone = {};
    };
    explicit ReflexesModel(const Parts &parts, QObject *parent = nullptr);

    RowsModel *rows() { return &m_rows; }
    QString stateText() const;
    QString footText() const;
    QString startAgainText() const;
    void setActive(bool active);

    Q_INVOKABLE void setOn(const QString &id, bool on);
    /// Every decision so far stops counting.
    Q_INVOKABLE void startAgain();
    /// The decisions that a reflex rests on, newest first: a list of DecidedRow.
    Q_INVOKABLE QVariantList decisions(const QString &id) const;

Q_SIGNALS:
    void changed();

private:
    void follow();
    void work();

    Parts m_parts;
    KeyedRows<ReflexRow> m_rows;
    QTimer m_later;
    bool m_active = false;
    Learned m_learned;
};

} // namespace vorle
