#pragma once

#include "app/triage/DecisionHistory.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QUuid>

namespace vorle {

/// What one sitting of triage came to. It begins with the first decision after "À trier" was filled
/// anew, or after a pause; what is taken back is not in it, and where that is sorted again, it goes
/// on. Known as long as the program runs. Main thread; the history outlives it.
class TriageSitting final : public QObject {
    Q_OBJECT
public:
    struct Tally {
        QList<QUuid> kept; ///< each in the order of the decisions
        QList<QUuid> later;
        QList<QUuid> dismissed;
        qint64 seconds = 0; ///< from its first decision to its last

        qsizetype count() const { return kept.size() + later.size() + dismissed.size(); }
        bool operator==(const Tally &) const = default;
    };

    /// So long without a decision, in seconds, and the next one begins another sitting.
    static constexpr qint64 pause = 30 * 60;

    explicit TriageSitting(const DecisionHistory &history, QObject *parent = nullptr);

    /// "À trier" was empty, and holds these topics now: where none of them was sorted in this
    /// sitting, the next decision begins another.
    void filled(const QList<QUuid> &topics);
    Tally tally() const;

private:
    const DecisionHistory &m_history;
    qint64 m_first = 0;    // the number of the step that it begins with
    QSet<QUuid> m_touched; // sorted in it, taken back or not
};

} // namespace vorle
