#pragma once

#include "app/models/territory/AppsModel.h"
#include "app/models/territory/ProjectsModel.h"
#include "app/models/territory/ReflexesModel.h"
#include "app/models/territory/SendPreview.h"
#include "app/models/territory/SitesModel.h"

namespace vorle {

/// "Ton territoire": what a run searches for, and what the decisions taught. What is changed here
/// acts at once and goes to the disk in the background; what a command or another process writes
/// shows at once. Main thread; the parts outlive it.
class TerritoryModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(vorle::ProjectsModel *projects READ projects CONSTANT FINAL)
    Q_PROPERTY(vorle::SitesModel *sites READ sites CONSTANT FINAL)
    Q_PROPERTY(vorle::AppsModel *apps READ apps CONSTANT FINAL)
    Q_PROPERTY(vorle::ReflexesModel *reflexes READ reflexes CONSTANT FINAL)
    Q_PROPERTY(vorle::SendPreview *preview READ preview CONSTANT FINAL)
    /// Of InterestRow, NameRow, NameRow.
    Q_PROPERTY(vorle::RowsModel *interests READ interests CONSTANT FINAL)
    Q_PROPERTY(vorle::RowsModel *tools READ tools CONSTANT FINAL)
    Q_PROPERTY(vorle::RowsModel *exclusions READ exclusions CONSTANT FINAL)
    /// Somebody looks: folders, apps and reports are read again, and what a run would send is
    /// worked out.
    Q_PROPERTY(bool active READ active WRITE setActive NOTIFY activeChanged FINAL)
    /// "2 projets, 5 domaines"; "Ton territoire est vide."
    Q_PROPERTY(QString summary READ summary NOTIFY changed FINAL)
    /// What follows the number of interests, and whether there are more than it speaks of.
    Q_PROPERTY(QString counterText READ counterText CONSTANT FINAL)
    Q_PROPERTY(bool diluted READ diluted NOTIFY changed FINAL)
    /// "" while it is not known.
    Q_PROPERTY(QString job READ job NOTIFY changed FINAL)
    /// What the projects and the apps point to; "" when that is the job, or they point nowhere.
    Q_PROPERTY(QString jobProposal READ jobProposal NOTIFY changed FINAL)
    /// 0, 1 or 2, with what each is called and means.
    Q_PROPERTY(int radius READ radius WRITE setRadius NOTIFY changed FINAL)
    Q_PROPERTY(QStringList radiusLabels READ radiusLabels CONSTANT FINAL)
    Q_PROPERTY(QStringList radiusTexts READ radiusTexts CONSTANT FINAL)
    /// What was taken out last, while it can be put back: "« vélo en ville » est retiré"; else "".
    Q_PROPERTY(QString undoText READ undoText NOTIFY undoChanged FINAL)
    /// What is said once that is back: "« vélo en ville » est remis".
    Q_PROPERTY(QString redoneText READ redoneText NOTIFY undoChanged FINAL)
    /// How many can be put back, one after the other.
    Q_PROPERTY(int undoCount READ undoCount NOTIFY undoChanged FINAL)

public:
    /// What its parts work with.
    struct Parts {
        Preferences &preferences;
        const TopicStore &store;
        Asker &asker;
        Feeds &feeds;
        FilePicker &files;
        const Clock &clock;
        /// The apps of this machine, in the order they are shown in. Any thread.
        std::function<QList<discovery::App>()> apps = {};
        LocalZone zone = {};
    };
    explicit TerritoryModel(const Parts &parts, QObject *parent = nullptr);

    ProjectsModel *projects() { return &m_projects; }
    SitesModel *sites() { return &m_sites; }
    AppsModel *apps() { return &m_apps; }
    ReflexesModel *reflexes() { return &m_reflexes; }
    SendPreview *preview() { return &m_preview; }
    RowsModel *interests() { return &m_interests; }
    RowsModel *tools() { return &m_tools; }
    RowsModel *exclusions() { return &m_exclusions; }
    bool active() const { return m_active; }
    void setActive(bool active);
    QString summary() const;
    QString counterText() const;
    bool diluted() const;
    QString job() const { return settings().job.value_or(QString()); }
    QString jobProposal() const;
    int radius() const { return m_preferences.radius(); }
    void setRadius(int radius);
    QStringList radiusLabels() const;
    QStringList radiusTexts() const;
    QString undoText() const;
    QString redoneText() const;
    int undoCount() const { return static_cast<int>(m_removed.size()); }

    // Those that may refuse give a French sentence then, "" when it was done or there was nothing
    // to do.
    Q_INVOKABLE QString addInterest(const QString &name);
    Q_INVOKABLE QString renameInterest(const QString &from, const QString &to);
    Q_INVOKABLE void setWeight(const QString &interest, int weight);
    Q_INVOKABLE void removeInterest(const QString &name);
    Q_INVOKABLE QString addTool(const QString &name);
    Q_INVOKABLE void removeTool(const QString &name);
    Q_INVOKABLE QString addExclusion(const QString &name);
    Q_INVOKABLE void removeExclusion(const QString &name);
    Q_INVOKABLE QString setJob(const QString &job);
    /// Puts back what was taken out last. False when there is nothing.
    Q_INVOKABLE bool undo();
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void activeChanged();
    void changed();
    void undoChanged();

private:
    struct Removed {
        QString what;
        territory::PutBack putBack;
    };

    const Settings &settings() const { return m_preferences.settings(); }
    QString add(territory::List list, const QString &name);
    void remove(territory::List list, const QString &name);
    TellRemoved kept();
    void keepRemoved(const QString &what, territory::PutBack putBack);
    void show();

    Preferences &m_preferences;
    QList<Removed> m_removed; // the latest last
    KeyedRows<InterestRow> m_interests;
    KeyedRows<NameRow> m_tools;
    KeyedRows<NameRow> m_exclusions;
    ProjectsModel m_projects;
    SitesModel m_sites;
    AppsModel m_apps;
    ReflexesModel m_reflexes;
    SendPreview m_preview;
    bool m_active = false;
};

} // namespace vorle
