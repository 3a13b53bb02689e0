#pragma once

#include "app/models/territory/RowsModel.h"
#include "app/models/territory/TerritoryRows.h"
#include "base/Async.h"
#include "core/Preferences.h"
#include "search/discovery/Discovery.h"

#include <QPointer>
#include <QUrl>

namespace vorle {

class FilePicker;

/// The watched projects: what their folders hold, and the changes made to them. Folders are asked
/// on threads that may hang, each apart: a project shows without its counts until its own answers.
/// Main thread; the parts outlive it.
class ProjectsModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Of ProjectRow.
    Q_PROPERTY(vorle::RowsModel *rows READ rows CONSTANT FINAL)
    /// Why a folder was not taken, in French; "" when nothing is to be said.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged FINAL)

public:
    struct Parts {
        Preferences &preferences;
        FilePicker &files;
    };
    ProjectsModel(const Parts &parts, TellRemoved removed, QObject *parent = nullptr);
    ~ProjectsModel() override;

    RowsModel *rows() { return &m_rows; }
    QString problem() const { return m_problem; }
    /// The technologies of all projects, as far as they are read.
    QStringList labels() const;

    /// Asks the folders again.
    void refresh();
    /// Follows the folders that were dropped (addresses of files); says in `problem` which could
    /// not be.
    Q_INVOKABLE void addFolders(const QList<QUrl> &dropped);
    /// Has the user point at one.
    Q_INVOKABLE void chooseFolder();
    /// Has them point at another folder for that project.
    Q_INVOKABLE void chooseFolderFor(const QString &name);
    /// Gives a French sentence when it cannot be, "" when it was.
    Q_INVOKABLE QString describe(const QString &name, const QString &description);
    Q_INVOKABLE void remove(const QString &name);
    /// Stops what it has under way, and waits for its end.
    Task<> stopped();

Q_SIGNALS:
    void problemChanged();
    /// What is known of the folders is another.
    void read();

private:
    static Task<> ask(QPointer<ProjectsModel> self, QString name, QString folder);
    static Task<> add(QPointer<ProjectsModel> self, QStringList paths);
    static Task<> choose(QPointer<ProjectsModel> self, QString name);
    static Task<> move(QPointer<ProjectsModel> self, QString name, QString path);
    void work(Task<> task, const char *what);
    void show();
    void askNewOnes();
    void setProblem(const QString &problem);

    Parts m_parts;
    TellRemoved m_removed;
    KeyedRows<ProjectRow> m_rows;
    /// What was found in a project's folder, by project.
    struct Reading {
        QString folder;
        std::optional<discovery::Project> found; ///< nothing while it is asked
    };
    QMap<QString, Reading> m_readings;
    QString m_problem;
    CancelSource m_cancel;
    TaskGroup m_work; // but for an open dialog, which nobody waits for
};

} // namespace vorle
