#pragma once

#include "app/models/territory/RowsModel.h"
#include "app/models/territory/TerritoryRows.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"
#include "core/RunReport.h"

#include <QHash>
#include <QPointer>

namespace vorle {

class Feeds;
class FilePicker;

/// The trusted sites: how their feeds are, from the runs' reports and from looks asked for here,
/// and the changes made to them. Main thread; the parts outlive it.
class SitesModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Of SiteRow.
    Q_PROPERTY(vorle::RowsModel *rows READ rows CONSTANT FINAL)
    /// What became of a list that was read or written, in French; "" when nothing is to be said.
    Q_PROPERTY(QString note READ note NOTIFY noteChanged FINAL)

public:
    struct Parts {
        Preferences &preferences;
        QString topicsFile; ///< beside which the runs' reports lie
        Feeds &feeds;
        FilePicker &files;
        const Clock &clock;
        LocalZone zone = {};
    };
    SitesModel(const Parts &parts, TellRemoved removed, QObject *parent = nullptr);
    ~SitesModel() override;

    RowsModel *rows() { return &m_rows; }
    QString note() const { return m_note; }

    /// Reads the runs' reports again.
    void refresh();
    /// These two give a French sentence when it cannot be, "" when it was.
    Q_INVOKABLE QString add(const QString &address);
    Q_INVOKABLE QString rename(const QString &from, const QString &to);
    Q_INVOKABLE void remove(const QString &address);
    /// Looks at the site and its feed now.
    Q_INVOKABLE void look(const QString &address);
    /// A list of feeds, as readers exchange them (OPML): has the user point at one, and trusts its
    /// sites; or at where to write theirs.
    Q_INVOKABLE void importList();
    Q_INVOKABLE void exportList();
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void noteChanged();

private:
    /// What a look found of a site.
    struct Seen {
        bool asking = false;
        QDateTime at = {};
        QString state = {};
        bool wrong = false;
    };

    static Task<> readReports(QPointer<SitesModel> self);
    static Task<> lookAt(QPointer<SitesModel> self, PrioritySite site, CancelToken cancel);
    static Task<> takeList(QPointer<SitesModel> self);
    static Task<> writeList(QPointer<SitesModel> self);
    static Task<> readIn(QPointer<SitesModel> self, QString path);
    static Task<> writeOut(QPointer<SitesModel> self, QString path);
    void work(Task<> task, const char *what);
    SiteRow rowOf(const PrioritySite &site) const;
    void show();
    void setNote(const QString &note);

    Parts m_parts;
    TellRemoved m_removed;
    KeyedRows<SiteRow> m_rows;
    QList<RunReport> m_reports;  ///< oldest first
    QHash<QString, Seen> m_seen; ///< by address, since the app was opened
    CancelSource m_cancel;
    TaskGroup m_work; // but for an open dialog, which nobody waits for
    QString m_note;
};

} // namespace vorle
