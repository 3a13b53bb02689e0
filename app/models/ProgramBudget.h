#pragma once

#include "app/models/TopicListModel.h"
#include "app/triage/ProgramTracker.h"
#include "core/Preferences.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The week's program held against the user's weekly time, for QML, in numbers and in words (see
/// ProgramTracker); it tells the program's list which topics wait below the line. Main thread; what
/// it is given outlives it.
class ProgramBudget final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int budget READ budget NOTIFY changed FINAL)   ///< minutes a week
    Q_PROPERTY(int done READ done NOTIFY changed FINAL)       ///< minutes of what is done this week
    Q_PROPERTY(int planned READ planned NOTIFY changed FINAL) ///< minutes of what fits
    Q_PROPERTY(int left READ left NOTIFY changed FINAL)       ///< minutes left of the budget
    /// Everything kept is done: the program is empty, and not for lack of a start.
    Q_PROPERTY(bool finished READ finished NOTIFY changed FINAL)

public:
    ProgramBudget(TopicStore &store, const Preferences &preferences, const Clock &clock,
                  TopicListModel &program, const LocalZone &zone = {}, QObject *parent = nullptr);

    int budget() const { return m_tracker.program().budget; }
    int done() const { return m_tracker.program().done; }
    int planned() const { return m_tracker.program().planned; }
    int left() const { return m_tracker.program().left; }
    bool finished() const { return m_tracker.program().state == WeekProgram::State::AllDone; }

    /// What the section says of itself; `nextRun` as programText() takes it.
    ProgramText text(const QString &nextRun) const {
        return programText(m_tracker.program(), nextRun);
    }

    /// Looks at the clock again: a new week starts afresh.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void changed();

private:
    void load();
    void follow(const QUuid &id);
    void compute();

    ProgramTracker m_tracker;
    const Preferences &m_preferences;
    TopicListModel &m_list;
};

} // namespace vorle
