#pragma once

#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/RunHistory.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QSet>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A line of a run's report.
struct ReportLine {
    Q_GADGET
    QML_VALUE_TYPE(reportLine)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(QString remark MEMBER remark FINAL)
    Q_PROPERTY(bool failed MEMBER failed FINAL)

public:
    QString name;
    QString text;
    QString remark;
    bool failed = false;

    bool operator==(const ReportLine &) const = default;
};

/// "Bilan": the last runs, newest first, each in words. Main thread.
class ReportModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int count READ count NOTIFY rowsChanged FINAL)

public:
    enum Role {
        DateText = Qt::UserRole, ///< "lundi 16 novembre à 8:04"
        AddedText,               ///< "12 sujets", "Aucun sujet"
        FactsText,               ///< "48 liens trouvés · 40 pages lues · 3 min 20 s · 0,42 $"
        Scopes,                  ///< of ReportLine: each scope, its links, what became of some
        Pages,                   ///< "Pages : 33 en entier, 3 illisibles."; "" where none was read
        Notices,                 ///< list of strings: warnings, sites without news, what had none
        Links,                   ///< of ReportLine: links that were not judged, each with why
        Problem,                 ///< in a word, what was wrong: "arrêtée par toi"; "" for nothing
        Open                     ///< it shows all that it has to tell
    };
    Q_ENUM(Role)

    /// The clock outlives the model.
    ReportModel(RunHistory history, const Clock &clock, const LocalZone &zone = {},
                QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(m_reports.size()); }
    /// Reads the reports again, after a run.
    Q_INVOKABLE void refresh();
    /// Opens the report of that row, or closes it; it stays so while the model lives.
    Q_INVOKABLE void toggle(int row);

Q_SIGNALS:
    void rowsChanged();

private:
    RunHistory m_history;
    const Clock &m_clock;
    LocalZone m_zone;
    QList<RunReport> m_reports; // newest first
    QSet<QDateTime> m_open;     // by date, which each has its own
};

} // namespace vorle
