#pragma once

#include "app/models/territory/RowsModel.h"
#include "app/models/territory/TerritoryRows.h"
#include "base/Async.h"
#include "core/Preferences.h"
#include "search/discovery/DiscoveryApps.h"

#include <QPointer>

namespace vorle {

/// The apps of this machine, and which of them a run may name. Listed on a thread of its own, at
/// `refresh()`. Main thread; the parts outlive it.
class AppsModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Those that stand in the list of the mode that is set: NameRow.
    Q_PROPERTY(vorle::RowsModel *rows READ rows CONSTANT FINAL)
    /// All that `filter` finds, tools first, leisure last: AppRow.
    Q_PROPERTY(vorle::RowsModel *choices READ choices CONSTANT FINAL)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged FINAL)
    /// Only those chosen are named, rather than all but those.
    Q_PROPERTY(bool only READ only WRITE setOnly NOTIFY onlyChanged FINAL)
    /// "Choisir parmi 86 apps…"
    Q_PROPERTY(QString chooseText READ chooseText NOTIFY listed FINAL)
    /// What is found on this machine, and not among the tools yet: a list of names.
    Q_PROPERTY(QStringList proposedTools READ proposedTools NOTIFY listed FINAL)

public:
    struct Parts {
        Preferences &preferences;
        /// The apps of this machine, in the order they are shown in. Any thread.
        std::function<QList<discovery::App>()> apps = {};
    };
    AppsModel(const Parts &parts, TellRemoved removed, QObject *parent = nullptr);
    ~AppsModel() override;

    RowsModel *rows() { return &m_rows; }
    RowsModel *choices() { return &m_choices; }
    QString filter() const { return m_filter; }
    void setFilter(const QString &filter);
    bool only() const;
    void setOnly(bool only);
    QString chooseText() const;
    QStringList proposedTools() const;
    /// The names of all of them, as far as they are known.
    QStringList names() const;

    void refresh();
    /// Puts an app into the list of the mode that is set, or takes it out.
    Q_INVOKABLE void choose(const QString &name, bool chosen);
    /// Takes it out of that list; it can be undone.
    Q_INVOKABLE void remove(const QString &name);
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void filterChanged();
    void onlyChanged();
    void listed();

private:
    static Task<> list(QPointer<AppsModel> self);
    QList<QString> Settings::*chosenList() const;
    void show();
    QString iconOf(const QString &app) const;

    Parts m_parts;
    TellRemoved m_removed;
    KeyedRows<NameRow> m_rows;
    KeyedRows<AppRow> m_choices;
    QList<discovery::App> m_apps; ///< tools first, leisure last
    QStringList m_tools;          ///< the recognised ones among them
    QString m_filter;
    CancelSource m_cancel;
    TaskGroup m_work;
};

} // namespace vorle
