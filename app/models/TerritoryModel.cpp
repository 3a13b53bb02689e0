#include "app/models/TerritoryModel.h"

#include "app/labels/Wording.h"
#include "base/Text.h"
#include "search/discovery/Discovery.h"

#include <QFileInfo>

#include <utility>

namespace vorle {

namespace {

using Readings = QMap<QString, discovery::Project>;

Readings readAll(const QMap<QString, QString> &folders) {
    Readings readings;
    for (auto it = folders.cbegin(); it != folders.cend(); ++it) {
        readings.insert(it.key(), discovery::readProject(it.value()));
    }
    return readings;
}

QString projectDetail(const discovery::Project &project) {
    // The folder stands beside it in its own place: naming it again would only fill the line.
    const QString problem = discovery::problemText(project).replace(
        QStringLiteral(" dans « %1 »").arg(project.folder), QString());
    if (!problem.isEmpty() || !project.manifest) {
        return problem;
    }
    QStringList facts{project.manifest->name,
                      counted(project.dependencies, TerritoryModel::tr("dépendance"),
                              TerritoryModel::tr("dépendances"))};
    return facts.join(QStringLiteral(" · "));
}

/// A name, a path or an address that the user or a file gave, on its line.
QString shownLine(const QString &words) {
    constexpr qsizetype most = 600;
    return shownWords(clampedLine(words, most));
}

QString weightText(int weight) { return TerritoryModel::tr("importance %1 sur 5").arg(weight); }

} // namespace

TerritoryModel::TerritoryModel(Preferences &preferences, QObject *parent)
    : QAbstractListModel(parent), m_preferences(preferences), m_rows(rows()) {
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (key == u"projects") {
            refresh();
        } else {
            rebuild();
        }
    });
    refresh();
}

void TerritoryModel::refresh() {
    rebuild();
    if (!m_preferences.settings().projects.isEmpty()) {
        detach(readFolders(this), QStringLiteral("reading the projects"));
    }
}

Task<> TerritoryModel::readFolders(QPointer<TerritoryModel> self) {
    const auto folders = self->m_preferences.settings().projects;
    const Readings readings = co_await onPool([folders] { return readAll(folders); });
    if (self && self->m_preferences.settings().projects == folders) {
        self->m_readings.clear();
        for (auto it = readings.cbegin(); it != readings.cend(); ++it) {
            self->m_readings.insert(it.key(), {projectDetail(*it), it->labels});
        }
        self->rebuild();
    }
}

void TerritoryModel::rebuild() {
    QList<Row> fresh = rows();
    if (fresh == m_rows) {
        return;
    }
    beginResetModel();
    m_rows = std::move(fresh);
    endResetModel();
    Q_EMIT rowsChanged();
}

QList<TerritoryModel::Row> TerritoryModel::rows() const {
    const Settings &settings = m_preferences.settings();
    QList<Row> list;
    for (auto it = settings.projects.cbegin(); it != settings.projects.cend(); ++it) {
        const Reading reading = m_readings.value(it.key());
        const QString described = settings.projectDescriptions.value(it.key());
        QStringList details{described, reading.detail};
        details.removeAll(QString());
        list.append({tr("Projets"), it.key(), details.join(QStringLiteral(" · ")), reading.labels,
                     0, it.value()});
    }
    if (settings.job && !settings.job->isEmpty()) {
        list.append({tr("Ton métier"), *settings.job, {}, {}, 0, {}});
    }
    for (const QString &interest : settings.interests) {
        const int weight = m_preferences.weightOf(interest);
        list.append({tr("Domaines"), interest, weightText(weight), {}, weight, {}});
    }
    const auto plain = [&list](const QString &group, const QList<QString> &names) {
        for (const QString &name : names) {
            list.append({group, name, {}, {}, 0, {}});
        }
    };
    plain(tr("Outils"), settings.addedTools);
    if (settings.accessMode == AccessMode::Only) {
        plain(tr("Applications gardées"), settings.keptApps);
    } else {
        plain(tr("Applications écartées"), settings.excludedApps);
    }
    for (const PrioritySite &site : settings.prioritySites) {
        list.append({tr("Sites de confiance"),
                     site.address,
                     site.feed.value_or(site.checked ? tr("pas de flux trouvé") : QString()),
                     {},
                     0,
                     {}});
    }
    plain(tr("À ne jamais ramener"), settings.exclusions);
    return list;
}

int TerritoryModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant TerritoryModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case Group:
        return row.group;
    case Name:
        return shownLine(row.name);
    case Detail:
        return shownLine(row.detail);
    case Labels: {
        QStringList labels;
        for (const QString &label : row.labels) {
            labels += shownLine(label);
        }
        return labels;
    }
    case Weight:
        return row.weight;
    case Folder:
        return row.folder;
    default:
        return {};
    }
}

QHash<int, QByteArray> TerritoryModel::roleNames() const {
    return {{Group, "group"},   {Name, "name"},     {Detail, "detail"},
            {Labels, "labels"}, {Weight, "weight"}, {Folder, "folder"}};
}

QString TerritoryModel::summary() const {
    const Settings &settings = m_preferences.settings();
    QStringList facts;
    const auto add = [&](qsizetype count, const QString &one, const QString &many) {
        if (count > 0) {
            facts += counted(count, one, many);
        }
    };
    add(settings.projects.size(), tr("projet"), tr("projets"));
    add(settings.interests.size(), tr("domaine"), tr("domaines"));
    add(settings.prioritySites.size(), tr("site de confiance"), tr("sites de confiance"));
    return facts.isEmpty() ? tr("Ton territoire est vide.") : facts.join(QStringLiteral(", "));
}

} // namespace vorle
