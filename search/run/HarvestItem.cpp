#include "search/run/HarvestItem.h"

#include "base/French.h"
#include "search/discovery/Version.h"

namespace vorle {

namespace {

void add(QList<TopicSource> &sources, const TopicSource &source) {
    const bool known = std::any_of(sources.begin(), sources.end(), [&](const TopicSource &other) {
        return other.url == source.url;
    });
    if (!known) {
        sources += source;
    }
}

} // namespace

qsizetype HarvestItem::indexOf(const QString &identifier) {
    const qlonglong number = identifier.startsWith(u'c') ? identifier.sliced(1).toLongLong() : 0;
    return number > 0 ? number - 1 : -1;
}

QList<TopicSource> HarvestItem::sources() const {
    QList<TopicSource> all = sourcesOf(candidate(), page);
    for (const TopicSource &other : otherSources) {
        add(all, other);
    }
    return all;
}

void HarvestItem::join(QList<Proposal> more, const QList<TopicSource> &addresses) {
    for (const TopicSource &address : addresses) {
        if (address.url != url) {
            add(otherSources, address);
        }
    }
    for (Proposal &proposal : more) {
        proposal.candidate.url = url;
    }
    proposals += more;
}

void HarvestItem::moveTo(const QString &address) {
    if (address == url) {
        return;
    }
    otherSources.prepend({candidate().title, url});
    url = address;
    for (Proposal &proposal : proposals) {
        proposal.candidate.url = address;
    }
}

HarvestItem::News HarvestItem::news() const {
    News news;
    for (Proposal proposal : proposals) {
        const QString dependency =
            proposal.planned != nullptr
                ? dependencyOf(proposal.candidate, *proposal.planned).value_or(QString())
                : QString();
        const QString inUse =
            proposal.planned != nullptr ? proposal.planned->versions.value(dependency) : QString();
        if (inUse.isEmpty() || isUnread()) {
            news.fresh += proposal;
            continue;
        }
        const VersionNews found = versionNews(dependency, inUse, page.title.value_or(QString()),
                                              QString::fromUtf8(page.text));
        proposal.currentVersion = inUse;
        proposal.newVersion = found.newVersion;
        if (!found.notNewer) {
            news.fresh += proposal;
            continue;
        }
        const DroppedLink old{
            proposal.candidate.title, url,
            French::tr("%1 : tu utilises déjà la version %2.").arg(dependency, inUse)};
        if (!news.old.contains(old)) {
            news.old += old;
        }
    }
    return news;
}

void HarvestItem::keepFresh() {
    if (QList<Proposal> fresh = news().fresh; !fresh.isEmpty()) {
        proposals = std::move(fresh);
    }
}

Topic HarvestItem::topicFor(const Judgment &judgment) const {
    Topic made = draftTopic(candidate(), page, judgment);
    made.sources = sources();
    for (const Proposal &proposal : proposals) {
        if (!made.publishedOn) {
            made.publishedOn = proposal.publishedOn;
        }
    }
    attachToTerritory(made);
    return made;
}

void HarvestItem::attachToTerritory(Topic &tied) const {
    for (const Proposal &proposal : proposals) {
        if (proposal.planned == nullptr) {
            continue;
        }
        const bool hadDependency = tied.dependency.has_value();
        vorle::attachToTerritory(tied, proposal.candidate, *proposal.planned);
        if (!hadDependency && tied.dependency) {
            tied.currentVersion = proposal.currentVersion;
            tied.newVersion = proposal.newVersion;
        }
    }
}

} // namespace vorle
