#include "app/models/territory/AppsModel.h"

#include "app/triage/SearchFold.h"
#include "base/OnDisk.h"

#include <algorithm>

namespace vorle {

namespace {

int rankOf(const discovery::App &app, const QStringList &tools) {
    return tools.contains(app.name) ? 0 : discovery::isLeisureApp(app) ? 2 : 1;
}

} // namespace

AppsModel::AppsModel(const Parts &parts, TellRemoved removed, QObject *parent)
    : QObject(parent), m_parts(parts), m_removed(std::move(removed)) {
    connect(&parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::accessMode, &Settings::keptApps,
                                 &Settings::excludedApps)) {
            show();
            Q_EMIT onlyChanged();
        } else if (Preferences::isKeyOf(key, &Settings::addedTools)) {
            Q_EMIT listed();
        }
    });
    show();
}

AppsModel::~AppsModel() { m_cancel.cancel(); }

Task<> AppsModel::stopped() {
    m_cancel.cancel();
    co_await m_work.join();
}

void AppsModel::refresh() {
    if (m_parts.apps) {
        m_work.add(logged(list(this), QStringLiteral("listing the apps")));
    }
}

Task<> AppsModel::list(QPointer<AppsModel> self) {
    auto apps = co_await onDisk(self->m_parts.apps, maxDiskWait, self->m_cancel.token());
    if (!self || !apps) {
        co_return;
    }
    const QStringList tools = discovery::proposedTools(*apps);
    std::ranges::stable_sort(*apps, {},
                             [&](const discovery::App &app) { return rankOf(app, tools); });
    if (*apps != self->m_apps) {
        self->m_apps = *std::move(apps);
        self->m_tools = tools;
        self->show();
        Q_EMIT self->listed();
    }
}

bool AppsModel::only() const {
    return m_parts.preferences.settings().accessMode == AccessMode::Only;
}

void AppsModel::setOnly(bool only) {
    m_parts.preferences.change(&Settings::accessMode,
                               only ? AccessMode::Only : AccessMode::AllExcept);
}

QList<QString> Settings::*AppsModel::chosenList() const {
    return only() ? &Settings::keptApps : &Settings::excludedApps;
}

void AppsModel::setFilter(const QString &filter) {
    if (filter != m_filter) {
        m_filter = filter;
        Q_EMIT filterChanged();
        show();
    }
}

void AppsModel::show() {
    const QList<QString> &chosen = m_parts.preferences.settings().*chosenList();
    QList<NameRow> rows;
    for (const QString &name : chosen) {
        rows += {name, shownLine(name), iconOf(name)};
    }
    m_rows.show(rows);
    const QByteArray wanted = foldedForSearch(m_filter.trimmed());
    QList<AppRow> choices;
    for (const discovery::App &app : std::as_const(m_apps)) {
        if (wanted.isEmpty() || foldedForSearch(app.name).contains(wanted)) {
            choices += {app.name, shownLine(app.name),
                        m_tools.contains(app.name)     ? tr("outil reconnu")
                        : discovery::isLeisureApp(app) ? tr("loisir")
                                                       : QString(),
                        app.icon, chosen.contains(app.name)};
        }
    }
    m_choices.show(choices);
}

QString AppsModel::iconOf(const QString &app) const {
    const auto found = std::ranges::find(m_apps, app, &discovery::App::name);
    return found == m_apps.end() ? QString() : found->icon;
}

QString AppsModel::chooseText() const {
    return m_apps.isEmpty()
               ? tr("Choisir des apps…")
               : tr("Choisir parmi %1…").arg(counted(m_apps.size(), tr("app"), tr("apps")));
}

QStringList AppsModel::proposedTools() const {
    const QList<QString> &added = m_parts.preferences.settings().addedTools;
    QStringList proposed = m_tools;
    proposed.removeIf([&](const QString &tool) { return added.contains(tool); });
    return proposed;
}

QStringList AppsModel::names() const { return discovery::namesOf(m_apps); }

void AppsModel::choose(const QString &name, bool chosen) {
    territory::setAppInScope(m_parts.preferences, name, chosen == only());
}

void AppsModel::remove(const QString &name) {
    if (auto putBack = territory::removeName(m_parts.preferences, chosenList(), name)) {
        m_removed(name, *std::move(putBack));
    }
}

} // namespace vorle
