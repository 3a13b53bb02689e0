#pragma once

#include "base/Async.h"
#include "core/Preferences.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// "Ton territoire": what a run searches for, as rows under headings. The projects' folders are
/// read on the thread pool, at `refresh()` and when the projects change; a project shows without
/// its counts until then. Main thread; the preferences outlive it.
class TerritoryModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int count READ count NOTIFY rowsChanged FINAL)
    /// "2 projets, 5 domaines"; "Ton territoire est vide."
    Q_PROPERTY(QString summary READ summary NOTIFY rowsChanged FINAL)

public:
    enum Role {
        Group = Qt::UserRole, ///< the heading: "Projets", "Domaines"
        Name,
        Detail, ///< "package.json · 48 dépendances"; a feed's address; may be empty
        Labels, ///< list of strings, of a project
        Weight, ///< 1 to 5 for an interest, else 0
        Folder  ///< a project's, else empty
    };
    Q_ENUM(Role)

    explicit TerritoryModel(Preferences &preferences, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_rows.size()); }
    QString summary() const;
    /// Reads the projects' folders again.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void rowsChanged();

private:
    struct Row {
        QString group;
        QString name;
        QString detail;
        QStringList labels;
        int weight = 0;
        QString folder;

        bool operator==(const Row &) const = default;
    };
    /// What was found in a project's folder.
    struct Reading {
        QString detail;
        QStringList labels;
    };

    static Task<> readFolders(QPointer<TerritoryModel> self);
    void rebuild();
    QList<Row> rows() const;

    Preferences &m_preferences;
    QMap<QString, Reading> m_readings; // by project
    QList<Row> m_rows;                 // made from the readings
};

} // namespace vorle
