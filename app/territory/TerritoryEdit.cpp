#include "app/territory/TerritoryEdit.h"

#include "base/French.h"
#include "base/Text.h"
#include "base/WebLink.h"

#include <algorithm>

namespace vorle::territory {

namespace {

QString folded(const QString &name) {
    return name.normalized(QString::NormalizationForm_C).toCaseFolded();
}

qsizetype indexOf(const QList<QString> &names, const QString &name) {
    const QString wanted = folded(name);
    const auto found = std::ranges::find_if(
        names, [&](const QString &each) { return folded(oneLine(each)) == wanted; });
    return found == names.end() ? -1 : found - names.begin();
}

Refusal knownText(List list) {
    if (list == &Settings::interests) {
        return French::tr("C’est déjà dans tes domaines.");
    }
    return list == &Settings::addedTools ? French::tr("C’est déjà dans tes outils.")
                                         : French::tr("C’est déjà dans cette liste.");
}

Refusal tooLong(const QString &text, qsizetype most) {
    return text.size() <= most
               ? std::nullopt
               : Refusal(French::tr("C’est trop long\u00A0: %1 signes au plus.").arg(most));
}

/// Puts `name` back at `at`, or at the end of a list that is shorter by now.
template <class Entry>
void insertBack(QList<Entry> &list, qsizetype at, const Entry &entry) {
    list.insert(std::min(at, list.size()), entry);
}

/// A folder has one name.
Refusal isFree(const Settings &settings, const QString &path, const QString &name) {
    const auto other = projectAt(settings, path);
    return other && *other != name && !path.isEmpty()
               ? Refusal(French::tr("Ce dossier est déjà suivi, sous le nom «\u202F%1\u202F».")
                             .arg(*other))
               : std::nullopt;
}

Refusal isSite(const QString &address) {
    if (!siteKey(address).isEmpty()) {
        return std::nullopt;
    }
    return French::tr("«\u202F%1\u202F» n’est pas l’adresse d’un site.").arg(address);
}

qsizetype siteAt(const QList<PrioritySite> &sites, const QString &key) {
    const auto found = std::ranges::find_if(
        sites, [&](const PrioritySite &site) { return siteKey(site.address) == key; });
    return found == sites.end() ? -1 : found - sites.begin();
}

qsizetype siteNamed(const QList<PrioritySite> &sites, const QString &address) {
    const auto found = std::ranges::find(sites, address, &PrioritySite::address);
    return found == sites.end() ? -1 : found - sites.begin();
}

} // namespace

QString oneLine(const QString &text) { return withoutHidden(text).simplified(); }

Refusal addName(Preferences &preferences, List list, const QString &name) {
    const QString bare = oneLine(name);
    if (bare.isEmpty()) {
        return QString();
    }
    if (auto refusal = tooLong(bare, maxNameLength)) {
        return refusal;
    }
    QList<QString> names = preferences.settings().*list;
    if (indexOf(names, bare) >= 0) {
        return knownText(list);
    }
    names += bare;
    return preferences.change(list, names);
}

std::optional<PutBack> removeName(Preferences &preferences, List list, const QString &name) {
    QList<QString> names = preferences.settings().*list;
    const qsizetype at = names.indexOf(name);
    if (at < 0) {
        return std::nullopt;
    }
    std::optional<int> weight;
    if (list == &Settings::interests) {
        auto weights = preferences.settings().interestWeights;
        if (weights.contains(name)) {
            weight = weights.take(name);
            preferences.change(&Settings::interestWeights, weights);
        }
    }
    names.removeAt(at);
    preferences.change(list, names);
    return [list, name, at, weight](Preferences &now) {
        QList<QString> present = now.settings().*list;
        if (indexOf(present, oneLine(name)) >= 0) {
            return;
        }
        if (weight) { // first: whoever looks at the name finds its weight
            auto weights = now.settings().interestWeights;
            weights.insert(name, *weight);
            now.change(&Settings::interestWeights, weights);
        }
        insertBack(present, at, name);
        now.change(list, present);
    };
}

Refusal renameInterest(Preferences &preferences, const QString &from, const QString &to) {
    const QString bare = oneLine(to);
    QList<QString> names = preferences.settings().interests;
    const qsizetype at = names.indexOf(from);
    if (at < 0 || bare.isEmpty() || bare == from) {
        return QString();
    }
    if (auto refusal = tooLong(bare, maxNameLength)) {
        return refusal;
    }
    const qsizetype other = indexOf(names, bare);
    if (other >= 0 && other != at) {
        return knownText(&Settings::interests);
    }
    auto weights = preferences.settings().interestWeights;
    if (weights.contains(from)) {
        weights.insert(bare, weights.take(from));
        preferences.change(&Settings::interestWeights, weights);
    }
    names[at] = bare;
    return preferences.change(&Settings::interests, names);
}

void setWeight(Preferences &preferences, const QString &interest, int weight) {
    if (preferences.settings().interests.contains(interest)) {
        auto weights = preferences.settings().interestWeights;
        weights.insert(interest, std::clamp(weight, 1, 5));
        preferences.change(&Settings::interestWeights, weights);
    }
}

void setAppInScope(Preferences &preferences, const QString &app, bool inScope) {
    const bool keeps = preferences.settings().accessMode == AccessMode::Only;
    const List list = keeps ? &Settings::keptApps : &Settings::excludedApps;
    QList<QString> names = preferences.settings().*list;
    names.removeAll(app);
    if (keeps == inScope) {
        names += app;
    }
    preferences.change(list, names);
}

Refusal setJob(Preferences &preferences, const QString &job) {
    const QString bare = oneLine(job);
    if (auto refusal = tooLong(bare, maxNameLength)) {
        return refusal;
    }
    return preferences.change(&Settings::job, bare.isEmpty() ? std::nullopt : std::optional(bare));
}

Refusal addProject(Preferences &preferences, const QString &name, const QString &path) {
    const QString bare = oneLine(name);
    if (bare.isEmpty()) {
        return QString();
    }
    if (auto refusal = tooLong(bare, maxNameLength)) {
        return refusal;
    }
    if (auto refusal = isFree(preferences.settings(), path, bare)) {
        return refusal;
    }
    auto projects = preferences.settings().projects;
    if (projects.contains(bare) && projects[bare] != path) {
        return French::tr("Un projet «\u202F%1\u202F» existe déjà, dans %2.")
            .arg(bare, projects[bare]);
    }
    projects[bare] = path;
    return preferences.change(&Settings::projects, projects);
}

std::optional<QString> projectAt(const Settings &settings, const QString &path) {
    const auto found = std::find(settings.projects.cbegin(), settings.projects.cend(), path);
    return found == settings.projects.cend() ? std::nullopt : std::optional(found.key());
}

QString freeProjectName(const Settings &settings, const QString &wanted) {
    const QString bare = oneLine(wanted).left(maxNameLength - 8);
    QString name = bare;
    for (int number = 2; settings.projects.contains(name); ++number) {
        name = bare + u' ' + QString::number(number);
    }
    return name;
}

Refusal moveProject(Preferences &preferences, const QString &name, const QString &path) {
    auto projects = preferences.settings().projects;
    if (!projects.contains(name)) {
        return French::tr("Aucun projet ne s’appelle «\u202F%1\u202F».").arg(name);
    }
    if (auto refusal = isFree(preferences.settings(), path, name)) {
        return refusal;
    }
    projects[name] = path;
    return preferences.change(&Settings::projects, projects);
}

std::optional<PutBack> removeProject(Preferences &preferences, const QString &name) {
    auto projects = preferences.settings().projects;
    if (!projects.contains(name)) {
        return std::nullopt;
    }
    const QString path = projects.take(name);
    preferences.change(&Settings::projects, projects);
    auto descriptions = preferences.settings().projectDescriptions;
    const QString description = descriptions.take(name);
    preferences.change(&Settings::projectDescriptions, descriptions);
    return [name, path, description](Preferences &now) {
        auto present = now.settings().projects;
        if (present.contains(name)) {
            return;
        }
        const auto other = path.isEmpty() ? std::nullopt : projectAt(now.settings(), path);
        const QString described = other.value_or(name);
        if (!description.isEmpty() && !now.settings().projectDescriptions.contains(described)) {
            setDescription(now, described, description); // first: who looks at it finds it
        }
        if (other) {
            return;
        }
        present.insert(name, path);
        now.change(&Settings::projects, present);
    };
}

Refusal setDescription(Preferences &preferences, const QString &project,
                       const QString &description) {
    const QString bare = oneLine(description);
    if (auto refusal = tooLong(bare, maxDescriptionLength)) {
        return refusal;
    }
    auto descriptions = preferences.settings().projectDescriptions;
    if (bare.isEmpty()) {
        descriptions.remove(project);
    } else {
        descriptions[project] = bare;
    }
    return preferences.change(&Settings::projectDescriptions, descriptions);
}

QString siteKey(const QString &address) {
    const auto link = WebLink::typed(address, WebLink::Host::Any);
    if (!link) {
        return {};
    }
    QString path = link->url().path(QUrl::FullyEncoded);
    while (path.endsWith(u'/')) {
        path.chop(1);
    }
    const int port = link->url().port();
    const QString query = link->url().query(QUrl::FullyEncoded);
    return WebLink::site(link->url()).toCaseFolded() +
           (port < 0 ? QString() : u':' + QString::number(port)) + path +
           (query.isEmpty() ? QString() : u'?' + query);
}

Refusal addSite(Preferences &preferences, const QString &address) {
    const QString bare = oneLine(address);
    if (bare.isEmpty()) {
        return QString();
    }
    if (auto refusal = isSite(bare)) {
        return refusal;
    }
    const SitesAdded came = addSites(preferences, {PrioritySite{bare, {}, {}}});
    if (came.known > 0) {
        return French::tr("Ce site est déjà dans ta liste.");
    }
    return came.beyondLimit > 0
               ? Refusal(
                     French::tr("Tu suis déjà %1 sites\u00A0: c’est le plus que je puisse lire.")
                         .arg(maxSites))
               : std::nullopt;
}

Refusal changeSite(Preferences &preferences, const QString &from, const QString &to) {
    const QString bare = oneLine(to);
    QList<PrioritySite> sites = preferences.settings().prioritySites;
    const qsizetype at = siteNamed(sites, from);
    if (at < 0 || bare.isEmpty() || bare == from) {
        return QString();
    }
    if (auto refusal = isSite(bare)) {
        return refusal;
    }
    const qsizetype other = siteAt(sites, siteKey(bare));
    if (other >= 0 && other != at) {
        return French::tr("Ce site est déjà dans ta liste.");
    }
    sites[at] = PrioritySite{bare, {}, {}};
    return preferences.change(&Settings::prioritySites, sites);
}

std::optional<PutBack> removeSite(Preferences &preferences, const QString &address) {
    QList<PrioritySite> sites = preferences.settings().prioritySites;
    const qsizetype at = siteNamed(sites, address);
    if (at < 0) {
        return std::nullopt;
    }
    const PrioritySite site = sites.takeAt(at);
    preferences.change(&Settings::prioritySites, sites);
    return [site, at](Preferences &now) {
        QList<PrioritySite> present = now.settings().prioritySites;
        const bool isBack = std::ranges::any_of(present, [&](const PrioritySite &one) {
            return siteKey(one.address) == siteKey(site.address);
        });
        if (!isBack && present.size() < maxSites) {
            insertBack(present, at, site);
            now.change(&Settings::prioritySites, present);
        }
    };
}

SitesAdded addSites(Preferences &preferences, const QList<PrioritySite> &sites) {
    SitesAdded came;
    QList<PrioritySite> trusted = preferences.settings().prioritySites;
    QSet<QString> keys;
    for (const PrioritySite &site : std::as_const(trusted)) {
        keys.insert(siteKey(site.address));
    }
    for (const PrioritySite &site : sites) {
        const QString key = siteKey(site.address);
        if (key.isEmpty() || site.address.size() > maxNameLength) {
            ++came.refused;
        } else if (keys.contains(key)) {
            ++came.known;
        } else if (trusted.size() >= maxSites) {
            ++came.beyondLimit;
        } else {
            keys.insert(key);
            trusted += site;
            ++came.added;
        }
    }
    if (came.added > 0) {
        preferences.change(&Settings::prioritySites, trusted);
    }
    return came;
}

} // namespace vorle::territory
