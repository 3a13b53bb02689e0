// The part of a harvest that takes up what an earlier one left, and tells what this one leaves.

#include "search/run/Harvest.h"

#include <utility>

namespace vorle {

void Harvest::takeLeft(QList<Proposal> proposals, const QList<TopicSource> &others,
                       std::optional<QUuid> topic) {
    const auto index = static_cast<qsizetype>(m_items.size());
    const Candidate candidate = proposals.first().candidate;
    if (topic) {
        if (!m_tools.store.isUnreadStill(*topic)) {
            return;
        }
    } else {
        // Whoever has one of its addresses by now has the page: it was judged, or captured.
        const auto addresses = QList{TopicSource{candidate.title, candidate.url}} + others;
        for (const TopicSource &address : addresses) {
            const LinkRegistry::Claim claim = m_links.claim(address.url, index);
            if (claim.standing == LinkRegistry::Standing::New) {
                continue;
            }
            m_links.give(index, claim);
            if (claim.standing == LinkRegistry::Standing::Known) {
                takeUp(claim.topic, proposals.first().report);
                m_tools.store.addSources(claim.topic, addresses);
            } else {
                join(claim.item, proposals, addresses);
            }
            return;
        }
    }
    Item &item = m_items.emplace_back(candidate, std::move(proposals));
    item.otherSources = others;
    item.topic = topic;
    if (!topic) {
        ++m_recorder.progress.candidates;
    }
    m_reads.add(topic ? readAgain(index) : read(index));
}

/// A card's page that could not be read: it may be by now, and is dug for where it is not.
Task<> Harvest::readAgain(qsizetype index) {
    at(index).page = co_await m_tools.reader.read(at(index).url, m_cancel);
    if (!at(index).isUnread()) {
        at(index).keepFresh();
        putToJudge(index);
    }
}

/// Not judged, and not counted as read: it is read again when its turn comes.
void Harvest::leaveForLater(const QList<JudgeCandidate> &batch) {
    for (const JudgeCandidate &candidate : batch) {
        Item &item = at(Item::indexOf(candidate.id));
        if (!std::exchange(item.isLeft, true) && !item.topic) {
            --readCount(item.page.level);
        }
    }
}

void Harvest::leaveUnjudged() {
    m_isCutShort = true;
    for (Item &item : m_items) {
        if (item.topic) { // one that was read since waits for the judge
            item.isLeft = !item.isUnread() && m_tools.store.isUnreadStill(*item.topic);
        } else if (item.stage == Item::Stage::Reading) {
            item.isLeft = true;
        } else if (item.stage == Item::Stage::Taken && !std::exchange(item.isLeft, true)) {
            --readCount(item.page.level);
        }
    }
}

QList<RemainingLink> Harvest::left() const {
    QList<RemainingLink> links;
    const bool mayDigLater = m_recorder.gate.isClosed() || m_isCutShort;
    for (const Item &item : m_items) {
        const bool toDigFor = mayDigLater && item.topic && item.isUnread() && !item.dugFor;
        if (!item.isLeft && !toDigFor) {
            continue;
        }
        RemainingLink link{{}, item.otherSources, item.topic};
        for (const Proposal &proposal : item.proposals) {
            const ScopeReport &scope = m_recorder.report.scopes[proposal.report];
            link.proposals += RemainingProposal{
                proposal.candidate,
                scope.name,
                scope.origin,
                proposal.planned != nullptr ? std::optional(proposal.planned->name) : std::nullopt,
                proposal.publishedOn,
                proposal.site};
        }
        links += link;
    }
    return links;
}

} // namespace vorle
