// The part of a harvest that digs: for the cards whose page could not be read, readable pages are
// looked for, read and judged once more.

#include "base/French.h"
#include "search/run/Harvest.h"
#include "search/web/Links.h"

#include <QElapsedTimer>

namespace vorle {

namespace {

constexpr qsizetype maxConcurrentDigCalls = 2;

/// Adds what the agent read there, where this machine read less than the whole page: those words
/// are all that a page without an answer has.
void addTold(ReadPage &page, const QString &what) {
    if (what.isEmpty() || page.level == ReadLevel::Full) {
        return;
    }
    if (!page.text.isEmpty()) {
        page.text += "\n\n" + what.toUtf8();
        return;
    }
    const QString description = page.description.value_or(QString());
    page.description = description.isEmpty() ? what : description + u'\n' + what;
    page.level = ReadLevel::Meta;
}

} // namespace

QList<DigItem> Harvest::unreadItems() const {
    QList<DigItem> items;
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        const Item &item = m_items[i];
        if (item.topic && item.isUnread()) {
            items += DigItem{Item::identifier(static_cast<qsizetype>(i)), item.candidate().title,
                             item.url, item.candidate().about};
        }
    }
    return items;
}

Task<> Harvest::dig() {
    const QList<DigItem> items = unreadItems();
    if (items.isEmpty() || m_recorder.gate.isClosed()) {
        co_return;
    }
    m_recorder.show(French::tr("Recherche des pages illisibles : ") +
                    QString::number(items.size()));
    // What was found is read and judged before anything that went wrong is passed on.
    std::exception_ptr fault;
    const qsizetype calls = (items.size() + Pipeline::maxDigBatch - 1) / Pipeline::maxDigBatch;
    co_await settle(forEachBounded(calls, maxConcurrentDigCalls,
                                   [&](qsizetype call) {
                                       return askToDig(items.mid(call * Pipeline::maxDigBatch,
                                                                 Pipeline::maxDigBatch));
                                   }),
                    fault);
    co_await settle(finishReading(), fault);
    co_await settle(m_judging.finish(), fault);
    if (fault) {
        std::rethrow_exception(fault);
    }
}

Task<> Harvest::askToDig(QList<DigItem> items) {
    if (m_recorder.gate.isClosed()) {
        co_return;
    }
    DigFrame frame{m_context->today, m_tools.exclusions, m_tools.agent};
    QElapsedTimer clock;
    clock.start();
    const auto recordCall = [&](const AgentSpend &spent, RunRecorder::CallEnd end) {
        m_recorder.recordCall(RunStep::Dig, static_cast<double>(clock.elapsed()) / 1000.0, spent,
                              end);
    };
    bool tried = true;
    try {
        const Pipeline::DugUp dug = co_await m_pipeline.dig(items, std::move(frame), m_cancel);
        recordCall(dug.spent, RunRecorder::CallEnd::Answered);
        for (const Dug &result : dug.results) {
            m_reads.add(readDug(result));
        }
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &error) {
        recordCall(failureSpend(error), RunRecorder::CallEnd::Failed);
        tried = !m_recorder.gate.isClosedBy(error);
        if (tried) {
            m_recorder.report.warnings +=
                French::tr("Les pages illisibles n’ont pas pu être recherchées : %1")
                    .arg(failureText(error));
        }
    }
    for (const DigItem &item : std::as_const(items)) {
        at(Item::indexOf(item.id)).dugFor = tried;
    }
}

/// Whether a card stands there whose page could not be read; false for an index made up.
bool Harvest::isUnreadTopic(qsizetype index) const {
    if (index < 0 || index >= static_cast<qsizetype>(m_items.size())) {
        return false;
    }
    const Item &item = m_items[static_cast<std::size_t>(index)];
    return item.topic && item.isUnread();
}

/// Claims what was dug up for an unreadable card. Where another card has that page already, this
/// one joins it: it is one piece of news. Gives the index of the card that the page is for now; -1
/// when there is nothing left to do for it.
qsizetype Harvest::joinAnother(qsizetype index, const QString &link, const TopicSource &found) {
    const LinkRegistry::Claim claim = this->claim(link, index);
    Item &item = at(index);
    const bool isOwn =
        claim.standing == LinkRegistry::Standing::Known && claim.topic == *item.topic;
    if (claim.standing == LinkRegistry::Standing::New || isOwn) {
        return index;
    }
    // One that got no judgment is no card: nothing would be left of this one.
    const bool isCard = claim.standing == LinkRegistry::Standing::Known || at(claim.item).topic ||
                        at(claim.item).stage == Item::Stage::OldNews;
    if (!isCard) {
        return -1;
    }
    const TopicPtr topic = m_tools.store.topic(*item.topic);
    if (!topic || topic->status != TopicStatus::Pending) {
        return -1; // the user has it as it is
    }
    const bool isKnown = claim.standing == LinkRegistry::Standing::Known;
    const std::optional<QUuid> heir = isKnown ? std::optional(claim.topic) : at(claim.item).topic;
    if (!heir) {
        return -1; // that card is yet to be made, and somebody may have handed this one's link over
    }
    m_links.give(index, claim);
    ScopeReport &scope = m_recorder.report.scopes[item.proposals.first().report];
    const QList<TopicSource> sources = item.sources() + QList{found};
    if (isKnown) {
        ++scope.known;
        m_tools.store.addSources(claim.topic, sources);
    } else {
        ++scope.merged;
        join(claim.item, item.proposals, sources);
    }
    // Its links are the other one's by now: nothing is lost whatever happens next.
    item.topic.reset();
    item.stage = Item::Stage::Elsewhere;
    dropFromReport(topic->id);
    m_tools.store.withdrawPending(topic->id, *heir);
    // That one may wait for a page as well.
    return !isKnown && isUnreadTopic(claim.item) ? claim.item : -1;
}

void Harvest::dropFromReport(const QUuid &topic) {
    const auto drop = [&](Yield &yield) {
        yield.added -= static_cast<int>(yield.topicIds.removeAll(topic));
    };
    m_recorder.report.topicIds.removeOne(topic);
    for (ScopeReport &scope : m_recorder.report.scopes) {
        drop(*scope.yield);
    }
    for (SiteReport &site : *m_recorder.report.sites) {
        drop(site.yield);
    }
}

Task<> Harvest::readDug(Dug dug) {
    qsizetype index = Item::indexOf(dug.id);
    const TopicSource found{dug.title, dug.url};
    if (!isUnreadTopic(index)) {
        co_return;
    }
    index = joinAnother(index, dug.url, found);
    if (index < 0) {
        co_return;
    }
    // The very link may have been found readable by the agent.
    ReadPage page = co_await m_tools.reader.read(dug.url, m_cancel);
    addTold(page, dug.what);
    if (page.level == ReadLevel::None || !isUnreadTopic(index)) {
        co_return;
    }
    if (namesOnePage(page.finalUrl)) {
        index = joinAnother(index, page.finalUrl, found);
    }
    if (index < 0) {
        co_return;
    }
    if (page.title.value_or(QString()).isEmpty()) {
        page.title = dug.title.isEmpty() ? std::nullopt : std::optional(dug.title);
    }
    Item &item = at(index);
    item.moveTo(dug.url);
    item.page = std::move(page);
    item.keepFresh(); // what is old news is in the store already: the judge will grade it
    // The find is kept whatever becomes of its judgment.
    if (const TopicPtr topic = m_tools.store.topic(*item.topic)) {
        Topic moved = *topic;
        moved.sources = item.sources();
        m_tools.store.replacePending(std::move(moved));
    }
    putToJudge(index);
}

void Harvest::finalizeUnread() {
    for (const Item &item : m_items) {
        const TopicPtr topic = item.topic ? m_tools.store.topic(*item.topic) : nullptr;
        if (topic && topic->readLevel == ReadLevel::None) {
            Topic settled = *topic;
            settled.summary = French::tr("Je n’ai rien pu lire sur ce sujet : à creuser.");
            settled.firstStep =
                French::tr("Ouvrir le lien et décider s’il vaut une recherche de plus.");
            m_tools.store.replacePending(std::move(settled));
        }
    }
}

} // namespace vorle
