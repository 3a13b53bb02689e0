#include "app/models/territory/TerritoryModel.h"

#include "app/labels/Wording.h"

#include <utility>

namespace vorle {

namespace {

constexpr qsizetype maxUndone = 50;
/// Past that many interests a run thins out: the counter's own words.
constexpr qsizetype enoughInterests = 6;

QList<NameRow> nameRows(const QList<QString> &names) {
    QList<NameRow> rows;
    for (const QString &name : names) {
        const NameRow row{name, shownLine(name), {}};
        if (!rows.contains(row)) { // a file written by hand may hold one twice
            rows += row;
        }
    }
    return rows;
}

} // namespace

TerritoryModel::TerritoryModel(const Parts &parts, QObject *parent)
    : QObject(parent)
    , m_preferences(parts.preferences)
    , m_projects({parts.preferences, parts.files}, kept())
    , m_sites({parts.preferences, parts.store.file(), parts.feeds, parts.files, parts.clock,
               parts.zone},
              kept())
    , m_apps({parts.preferences, parts.apps}, kept())
    , m_reflexes({parts.preferences, parts.store, parts.clock, parts.zone})
    , m_preview({parts.preferences, parts.store, parts.asker, parts.clock, parts.apps}) {
    connect(&parts.preferences, &Preferences::changed, this, &TerritoryModel::show);
    connect(&m_projects, &ProjectsModel::read, this, &TerritoryModel::changed);
    connect(&m_apps, &AppsModel::listed, this, &TerritoryModel::changed);
    show();
}

void TerritoryModel::setActive(bool active) {
    if (active == m_active) {
        return;
    }
    m_active = active;
    if (active) {
        m_projects.refresh();
        m_sites.refresh();
        m_apps.refresh();
    }
    m_reflexes.setActive(active);
    m_preview.setActive(active);
    Q_EMIT activeChanged();
}

Task<> TerritoryModel::stopped() {
    co_await m_preview.stopped();
    co_await m_apps.stopped();
    co_await m_sites.stopped();
    co_await m_projects.stopped();
}

void TerritoryModel::show() {
    QList<InterestRow> interests;
    for (const QString &name : settings().interests) {
        const int weight = m_preferences.weightOf(name);
        const InterestRow row{name, shownLine(name), weight, tr("importance %1 sur 5").arg(weight)};
        if (!interests.contains(row)) {
            interests += row;
        }
    }
    m_interests.show(interests);
    m_tools.show(nameRows(settings().addedTools));
    m_exclusions.show(nameRows(settings().exclusions));
    Q_EMIT changed();
}

QString TerritoryModel::summary() const {
    QStringList facts;
    const auto add = [&](qsizetype count, const QString &one, const QString &many) {
        if (count > 0) {
            facts += counted(count, one, many);
        }
    };
    add(settings().projects.size(), tr("projet"), tr("projets"));
    add(settings().interests.size(), tr("domaine"), tr("domaines"));
    add(settings().prioritySites.size(), tr("site de confiance"), tr("sites de confiance"));
    return facts.isEmpty() ? tr("Ton territoire est vide.") : facts.join(QStringLiteral(", "));
}

QString TerritoryModel::counterText() const { return tr(" sur 6 · au-delà, la fouille se dilue"); }

bool TerritoryModel::diluted() const { return settings().interests.size() > enoughInterests; }

QString TerritoryModel::jobProposal() const {
    if (discovery::jobEvidence(m_projects.labels(), m_apps.names()).isEmpty()) {
        return {}; // nothing pointed to the one that it would be
    }
    const QString proposed = discovery::jobTitle(m_projects.labels(), m_apps.names());
    return proposed == job() ? QString() : proposed;
}

/// What is stored past 2 acts as 2, and is not written anew by somebody who presses what is chosen.
void TerritoryModel::setRadius(int radius) {
    if (radius != this->radius()) {
        m_preferences.change(&Settings::radiusLevel, std::clamp(radius, 0, 2));
    }
}

QStringList TerritoryModel::radiusLabels() const {
    QStringList names = radiusNames();
    for (QString &name : names) {
        name = name.toUpper();
    }
    return names;
}

QStringList TerritoryModel::radiusTexts() const {
    return {tr("Je ne regarde que tes dépendances et tes outils."),
            tr("Tes dépendances d’abord, puis les outils voisins et leurs alternatives."),
            tr("Tes dépendances, leurs voisins, et quelques découvertes hors de tes domaines.")};
}

QString TerritoryModel::add(territory::List list, const QString &name) {
    return shownWords(territory::addName(m_preferences, list, name).value_or(QString()));
}

void TerritoryModel::remove(territory::List list, const QString &name) {
    if (auto putBack = territory::removeName(m_preferences, list, name)) {
        keepRemoved(name, *std::move(putBack));
    }
}

QString TerritoryModel::addInterest(const QString &name) { return add(&Settings::interests, name); }
QString TerritoryModel::addTool(const QString &name) { return add(&Settings::addedTools, name); }
QString TerritoryModel::addExclusion(const QString &name) {
    return add(&Settings::exclusions, name);
}
void TerritoryModel::removeInterest(const QString &name) { remove(&Settings::interests, name); }
void TerritoryModel::removeTool(const QString &name) { remove(&Settings::addedTools, name); }
void TerritoryModel::removeExclusion(const QString &name) { remove(&Settings::exclusions, name); }

QString TerritoryModel::renameInterest(const QString &from, const QString &to) {
    return shownWords(territory::renameInterest(m_preferences, from, to).value_or(QString()));
}

void TerritoryModel::setWeight(const QString &interest, int weight) {
    territory::setWeight(m_preferences, interest, weight);
}

QString TerritoryModel::setJob(const QString &job) {
    return shownWords(territory::setJob(m_preferences, job).value_or(QString()));
}

TellRemoved TerritoryModel::kept() {
    return [this](const QString &what, territory::PutBack back) {
        keepRemoved(what, std::move(back));
    };
}

void TerritoryModel::keepRemoved(const QString &what, territory::PutBack putBack) {
    m_removed.append({what, std::move(putBack)});
    if (m_removed.size() > maxUndone) {
        m_removed.removeFirst();
    }
    Q_EMIT undoChanged();
}

QString TerritoryModel::undoText() const {
    return m_removed.isEmpty()
               ? QString()
               : shownWords(
                     tr("«\u202F%1\u202F» est retiré").arg(shownLine(m_removed.last().what)));
}

QString TerritoryModel::redoneText() const {
    return m_removed.isEmpty()
               ? QString()
               : shownWords(tr("«\u202F%1\u202F» est remis").arg(shownLine(m_removed.last().what)));
}

bool TerritoryModel::undo() {
    if (m_removed.isEmpty()) {
        return false;
    }
    const Removed last = m_removed.takeLast();
    last.putBack(m_preferences);
    Q_EMIT undoChanged();
    return true;
}

} // namespace vorle
