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
        const LinkRegistry::Claim claim = m_links.claim(candidate.url, index);
        if (claim.standing == LinkRegistry::Standing::Known) {
            return; // judged since
        }
        if (claim.standing == LinkRegistry::Standing::Same) {
            join(claim.item, proposals,
                 QList{TopicSource{candidate.title, candidate.url}} + others);
            return;
        }
        for (const TopicSource &other : others) {
            m_links.claim(other.url, index);
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

QList<RemainingLink> Harvest::left() const {
    QList<RemainingLink> links;
    for (const Item &item : m_items) {
        const bool toDigFor =
            m_recorder.gate.isClosed() && item.topic && item.isUnread() && !item.dugFor;
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
