#pragma once

#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/RunHistory.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace vorle {

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
        Scopes,                  ///< list of {name, text, failed}
        Notices,                 ///< list of strings: warnings, sites without news, what had none
        Stopped,                 ///< bool, the run was stopped by hand
        Failed                   ///< bool, nothing came of it; the notices say why
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

Q_SIGNALS:
    void rowsChanged();

private:
    RunHistory m_history;
    const Clock &m_clock;
    LocalZone m_zone;
    QList<RunReport> m_reports; // newest first
};

} // namespace vorle
