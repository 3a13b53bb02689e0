#include "search/run/Harvest.h"

#include "base/French.h"
#include "search/web/Links.h"

#include <algorithm>

namespace vorle {

Harvest::Harvest(Tools tools, RunRecorder &recorder, std::shared_ptr<const JudgeContext> context,
                 CancelToken cancel)
    : m_tools(std::move(tools))
    , m_recorder(recorder)
    , m_cancel(cancel)
    , m_pipeline(m_tools.asker)
    , m_context(std::move(context))
    , m_judging(
          m_tools.asker, m_context, cancel, m_recorder.gate,
          {.called =
               [this](double seconds, const AgentSpend &spent, RunRecorder::CallEnd end) {
                   m_recorder.recordCall(RunStep::Judge, seconds, spent, end);
               },
           .judged = [this](const auto &batch, const auto &verdicts) { keep(batch, verdicts); },
           .failed =
               [this](const auto &batch, const std::exception &error) {
                   for (const QString &link : leave(batch, failureText(error))) {
                       m_judgeError = std::current_exception();
                       m_failedLinks.insert(canonicalLink(link));
                   }
               },
           .gaveUp = [this](const auto &batch,
                            const std::exception *error) { giveUp(batch, error); },
           .left = [this](const auto &batch) { leaveForLater(batch); }})
    , m_links(m_tools.store.topics()) {
    const TopicStore &store = m_tools.store;
    QObject::connect(&store, &TopicStore::topicChanged, &m_listener,
                     [this](const QUuid &id) { follow(id); });
    QObject::connect(&store, &TopicStore::topicsAdded, &m_listener, [this](const auto &ids) {
        for (const QUuid &id : ids) {
            follow(id);
        }
    });
}

/// A link that the user captured meanwhile, or took in with others, is held from then on.
void Harvest::follow(const QUuid &topic) {
    const TopicPtr present = m_tools.store.topic(topic);
    const bool isOwn =
        std::ranges::any_of(m_items, [&](const Item &item) { return item.topic == topic; });
    if (present && !isOwn) {
        m_links.know(*present);
    }
}

/// The topic that came to have the item's page since the item claimed it.
std::optional<QUuid> Harvest::holderOf(const Item &item) const {
    std::optional<QUuid> holder = m_links.topicOf(item.url);
    for (const TopicSource &source : item.sources()) {
        holder = holder ? holder : m_links.topicOf(source.url);
    }
    return holder;
}

void Harvest::take(const Candidate &candidate, const Origins &origins) {
    const auto index = static_cast<qsizetype>(m_items.size());
    const LinkRegistry::Claim claim = this->claim(candidate.url, index);
    ScopeReport &scope = m_recorder.report.scopes[origins.report];
    if (claim.standing == LinkRegistry::Standing::Known) {
        scope.known += takeUp(claim.topic, origins.report) ? 0 : 1;
        return;
    }
    QList<Proposal> proposals;
    const auto propose = [&](const PlannedScope *planned) {
        proposals +=
            Proposal{candidate, origins.report, planned, origins.publishedOn, origins.site, {}, {}};
    };
    for (const PlannedScope *planned : origins.planned) {
        propose(planned);
    }
    if (proposals.isEmpty()) {
        propose(nullptr);
    }
    if (claim.standing == LinkRegistry::Standing::Same) {
        ++scope.merged;
        join(claim.item, proposals, {{candidate.title, candidate.url}});
        return;
    }
    m_items.emplace_back(candidate, std::move(proposals));
    ++m_recorder.progress.candidates;
    m_reads.add(read(index));
}

/// Asks whose a link is. A topic that holds it was come upon again by that.
LinkRegistry::Claim Harvest::claim(const QString &link, qsizetype index) {
    const LinkRegistry::Claim claim = m_links.claim(link, index);
    if (claim.standing == LinkRegistry::Standing::Known) {
        m_records.add(m_tools.finds.record(claim.topic));
    }
    return claim;
}

/// Another scope, or another address of the same page: one card is for all of them, whether it was
/// judged already or not.
void Harvest::join(qsizetype index, const QList<Proposal> &proposals,
                   const QList<TopicSource> &sources) {
    Item &item = at(index);
    const bool wasOld = item.stage == Item::Stage::OldNews;
    if (wasOld) {
        item.proposals.clear(); // those were told
    }
    item.join(proposals, sources);
    if (wasOld && passOn(index)) {
        ++m_recorder.progress.candidates;
        m_recorder.report.notNewer.removeIf(
            [&](const DroppedLink &old) { return old.url == item.url; });
    } else if (item.stage == Item::Stage::Taken) {
        item.keepFresh();
    }
    if (const TopicPtr topic = item.topic ? m_tools.store.topic(*item.topic) : nullptr) {
        Topic tied = *topic;
        item.attachToTerritory(tied);
        if (tied != *topic) {
            m_tools.store.replacePending(std::move(tied));
        }
        m_tools.store.addSources(*item.topic, item.sources());
        recordSites(item);
    }
}

/// A stop goes before whatever else went wrong.
Task<> Harvest::finish(TaskGroup &tasks) {
    std::exception_ptr fault;
    co_await settle(tasks.join(), fault);
    m_cancel.throwIfCancelled();
    if (fault) {
        std::rethrow_exception(fault);
    }
}

Task<> Harvest::finishReading() { return finish(m_reads); }

Task<> Harvest::finishPictures() { return finish(m_pictures); }

Task<> Harvest::finishRecords() { return finish(m_records); }

/// A picture for each of a topic's first sources, in their order.
Task<> Harvest::fetchPictures(QUuid id) {
    constexpr qsizetype maxPictures = 4;
    const TopicPtr topic = m_tools.store.topic(id);
    std::vector<Task<std::optional<Picture>>> pictures;
    for (qsizetype i = 0; topic && i < std::min(topic->sources.size(), maxPictures); ++i) {
        pictures.push_back(m_tools.images.picture(topic->sources[i].url, m_cancel));
    }
    QList<Picture> gallery;
    for (Task<std::optional<Picture>> &picture : pictures) {
        if (const auto found = co_await picture) {
            gallery += *found;
        }
    }
    if (!gallery.isEmpty()) {
        m_tools.store.setGallery(id, std::move(gallery));
    }
}

Task<> Harvest::read(qsizetype index) {
    Item &item = at(index);
    item.page = co_await m_tools.reader.read(item.url, m_cancel);
    if (leadsElsewhere(index) || !passOn(index)) {
        --m_recorder.progress.candidates;
    }
    m_recorder.tell();
}

/// Whether the link led to a page that is known already, or that another item has: it then has all
/// that this one brought, and what this one claimed.
bool Harvest::leadsElsewhere(qsizetype index) {
    Item &item = at(index);
    if (item.isUnread() || !namesOnePage(item.page.finalUrl)) {
        return false;
    }
    const LinkRegistry::Claim claim = this->claim(item.page.finalUrl, index);
    if (claim.standing == LinkRegistry::Standing::New) {
        return false;
    }
    item.stage = Item::Stage::Elsewhere;
    m_links.give(index, claim);
    ScopeReport &scope = m_recorder.report.scopes[item.proposals.first().report];
    QList<TopicSource> sources = item.otherSources;
    sources.prepend({item.candidate().title, item.url});
    if (claim.standing == LinkRegistry::Standing::Known) {
        ++scope.known;
        m_tools.store.addSources(claim.topic, sources);
    } else {
        ++scope.merged;
        join(claim.item, item.proposals, sources);
    }
    return true;
}

/// Sends a page that was read to the judge, for those to whom it is news. False when it is none to
/// anybody: it is told apart, not shown.
bool Harvest::passOn(qsizetype index) {
    Item &item = at(index);
    const auto [fresh, old] = item.news();
    if (fresh.isEmpty()) {
        item.stage = Item::Stage::OldNews;
        for (const DroppedLink &link : old) {
            if (!m_recorder.report.notNewer.contains(link)) {
                m_recorder.report.notNewer += link;
            }
        }
        return false;
    }
    item.stage = Item::Stage::Taken;
    item.proposals = fresh;
    ++readCount(item.page.level);
    ++m_recorder.progress.read;
    putToJudge(index);
    return true;
}

int &Harvest::readCount(ReadLevel level) {
    ReadCounts &read = m_recorder.report.read;
    switch (level) {
    case ReadLevel::Full:
        return read.full;
    case ReadLevel::Seen:
        return read.seen;
    case ReadLevel::Meta:
        return read.meta;
    case ReadLevel::None:
        break;
    }
    return read.none;
}

void Harvest::putToJudge(qsizetype index) {
    const Item &item = at(index);
    JudgeCandidate candidate;
    candidate.id = Item::identifier(index);
    candidate.title = item.candidate().title;
    candidate.url = item.url;
    // The link tells best; where it tells nothing, the agent's word counts.
    candidate.kind = guessKind(item.url);
    if (candidate.kind == ItemKind::Article) {
        candidate.kind = json::fromRaw<ItemKind>(item.candidate().kind).value_or(ItemKind::Article);
    }
    candidate.level = item.page.level;
    candidate.content = judgedContent(item.page);
    if (m_tools.refusedBefore.contains(canonicalLink(item.url))) {
        m_judging.addDoubtful(std::move(candidate));
    } else {
        m_judging.add(std::move(candidate));
    }
}

void Harvest::keep(const QList<JudgeCandidate> &batch, const Judge::Verdicts &verdicts) {
    QList<Topic> added;
    QList<JudgeCandidate> unanswered;
    QList<QUuid> pictured; // a page that could not be read has no picture to give
    QList<ScoreProvenance> judged;
    for (const JudgeCandidate &candidate : batch) {
        const auto verdict = verdicts.byId.constFind(candidate.id);
        if (verdict == verdicts.byId.cend()) {
            unanswered += candidate;
            continue;
        }
        Item &item = at(Item::indexOf(candidate.id));
        Topic topic = item.topicFor(*verdict);
        topic.foundAt = m_tools.foundAt.value_or(m_tools.now());
        topic.origin = m_recorder.report.scopes[item.proposals.first().report].origin;
        if (item.topic) { // dug up: judged once more, in its place
            topic.id = *item.topic;
            if (!m_tools.store.replacePending(topic) && !m_tools.store.completeUnread(topic)) {
                continue; // the user has it as it was judged first
            }
            ++m_recorder.report.dug;
        } else if (const std::optional<QUuid> holder = holderOf(item)) {
            item.stage = Item::Stage::Elsewhere;
            ++m_recorder.report.scopes[item.proposals.first().report].known;
            ++m_recorder.progress.judged;
            m_tools.store.addSources(*holder, item.sources());
            continue;
        } else {
            item.topic = topic.id;
            added += std::move(topic);
            count(*item.topic, item.proposals.first().report);
            recordSites(item);
        }
        judged += draftProvenance(*m_context, candidate, *verdict, *item.topic, m_tools.now());
        if (!item.isUnread()) {
            pictured += *item.topic;
        }
    }
    m_tools.store.add(std::move(added));
    if (!judged.isEmpty()) {
        m_records.add(m_tools.provenance.add(std::move(judged)));
    }
    for (const QUuid &topic : pictured) {
        m_pictures.add(fetchPictures(topic));
    }
    leave(unanswered, French::tr("L’IA n’a rien répondu pour ce lien."));
    m_recorder.tell();
}

void Harvest::count(const QUuid &topic, qsizetype report) {
    Yield &yield = *m_recorder.report.scopes[report].yield;
    yield.topicIds += topic;
    ++yield.added;
    m_recorder.report.topicIds += topic;
    ++m_recorder.progress.judged;
}

/// A card that a part of this very run made, and was killed before it could tell: it is told now.
bool Harvest::takeUp(const QUuid &topic, qsizetype report) {
    const TopicPtr made = m_tools.store.topic(topic);
    const bool isUntold = made && m_tools.foundAt && made->foundAt == *m_tools.foundAt &&
                          made->origin == m_recorder.report.scopes[report].origin &&
                          !m_recorder.report.topicIds.contains(topic);
    if (isUntold) {
        ++readCount(made->readLevel.value_or(ReadLevel::None));
        count(topic, report);
    }
    return isUntold;
}

/// A card counts for every site whose feed it was kept from, whoever else brought it and whenever.
void Harvest::recordSites(const Item &item) {
    for (const Proposal &proposal : item.proposals) {
        for (SiteReport &site : *m_recorder.report.sites) {
            if (proposal.site == site.site && !site.yield.topicIds.contains(*item.topic)) {
                site.yield.topicIds += *item.topic;
                ++site.yield.added;
            }
        }
    }
}

/// What was not judged is no topic; it is told, and may come back with the next run. An item that
/// was judged once stays as it was. Gives the links that are left.
QStringList Harvest::leave(const QList<JudgeCandidate> &batch, const QString &reason) {
    QStringList left;
    for (const JudgeCandidate &candidate : batch) {
        if (!at(Item::indexOf(candidate.id)).topic) {
            m_recorder.report.unjudged += DroppedLink{candidate.title, candidate.url, reason};
            left += candidate.url;
        }
    }
    return left;
}

/// The judge is the trouble: these were not tried, and the next run is to find them again.
void Harvest::giveUp(const QList<JudgeCandidate> &batch, const std::exception *error) {
    const QString reason =
        error != nullptr ? failureText(*error)
                         : French::tr("L’IA n’a rien répondu pour les liens d’avant : celui-ci n’a "
                                      "pas été essayé.");
    QList<DroppedLink> &unjudged = m_recorder.report.unjudged;
    const qsizetype before = unjudged.size();
    for (const QString &link : leave(batch, reason)) {
        m_judgeError = error != nullptr ? std::current_exception() : m_judgeError;
        m_failedLinks.insert(canonicalLink(link));
        m_gaveUp = true;
    }
    for (qsizetype i = before; i < unjudged.size(); ++i) {
        unjudged[i].untried = true;
    }
}

QSet<QString> Harvest::oldNews() const {
    QSet<QString> links;
    for (const Item &item : m_items) {
        if (item.stage == Item::Stage::OldNews) {
            links.insert(canonicalLink(item.url));
            for (const TopicSource &other : item.otherSources) {
                links.insert(canonicalLink(other.url));
            }
        }
    }
    return links;
}

} // namespace vorle
