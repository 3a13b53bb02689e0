#pragma once

#include "app/models/TopicListModel.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"
#include "core/WeekProgram.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The week's program held against the user's weekly time (see WeekProgram), in numbers and in
/// words; it tells the program's list which topics wait below the line. Looks at kept topics and
/// those done this week alone, so a decision costs as much as the program is long. Main thread;
/// what it is given outlives it.
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

    int budget() const { return m_program.budget; }
    int done() const { return m_program.done; }
    int planned() const { return m_program.planned; }
    int left() const { return m_program.left; }
    bool finished() const { return m_program.state == WeekProgram::State::AllDone; }

    /// What the section says of itself; `nextRun` as programText() takes it.
    ProgramText text(const QString &nextRun) const { return programText(m_program, nextRun); }

    /// Looks at the clock again: a new week starts afresh.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void changed();

private:
    void load();
    void follow(const QUuid &id);
    bool counts(const Topic &topic) const;
    bool before(const TopicPtr &a, const TopicPtr &b) const;
    bool note(const TopicPtr &topic);
    void compute();

    TopicStore &m_store;
    const Preferences &m_preferences;
    const Clock &m_clock;
    TopicListModel &m_list;
    LocalZone m_zone;
    Period m_week;
    QList<TopicPtr> m_kept;           // in the program's order
    QHash<QUuid, TopicPtr> m_counted; // these again, and what was done this week
    WeekProgram m_program;
};

} // namespace vorle
