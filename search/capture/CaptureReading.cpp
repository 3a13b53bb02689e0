#include "search/capture/CaptureReading.h"

#include "core/Preferences.h"
#include "core/ScoreScale.h"
#include "search/run/JudgedProjects.h"
#include "search/run/RunRecorder.h"
#include "search/run/TopicDraft.h"
#include "search/web/Links.h"
#include "search/web/SourceImage.h"

#include <algorithm>
#include <map>

namespace vorle {

namespace {

Candidate candidateOf(const Topic &captured) {
    return {.title = captured.sources.isEmpty() ? QString() : captured.sources.first().title,
            .url = captured.capturedURL.value_or(QString()),
            .kind = json::rawText(guessKind(captured.capturedURL.value_or(QString()))),
            .about = captured.project.value_or(QString())};
}

/// What was read of a page, and what another program saw of it: it may have been let in where we
/// are not.
QByteArray contentOf(const ReadPage &page, const QByteArray &shared) {
    const QByteArray own = judgedContent(page);
    if (shared.isEmpty() || own.contains(shared)) {
        return own;
    }
    return own.isEmpty() || shared.contains(own) ? shared : own + "\n\n" + shared;
}

/// How well the judge knows the page: what another program saw of it was seen.
ReadLevel levelOf(const ReadPage &page, const QByteArray &shared) {
    return shared.isEmpty() || page.level == ReadLevel::Full ? page.level : ReadLevel::Seen;
}

bool isUnreachable(const ReadPage &page) {
    return page.outcome == HttpResponse::Outcome::Failed ||
           page.outcome == HttpResponse::Outcome::TimedOut;
}

/// Whether others may fare better than the ones that this failed on.
bool isOfTheseAlone(const AgentError &error) {
    return !error.limit() && error.kind() != AgentError::Case::NotFound &&
           error.kind() != AgentError::Case::SignedOut;
}

} // namespace

struct CaptureReading::Work {
    std::shared_ptr<const JudgeContext> context;
    std::map<qsizetype, Read> read; ///< by the place in the list that was asked for
    QList<QUuid> judged;
    Told told;
    CancelToken cancel;
    qsizetype next = 0;
};

bool CaptureReading::isAgentReady() const {
    const EngineAgent &agent = m_parts.asker.agent();
    try {
        agent.check(agent.locator().choose());
        return true;
    } catch (const AgentError &) {
        return false;
    }
}

Task<> CaptureReading::complete(QList<Link> links, Told told, CancelToken cancel) {
    // An agent that cannot answer costs no reading either.
    const EngineAgent &agent = m_parts.asker.agent();
    const AgentKind kind = agent.locator().choose();
    agent.check(kind);
    const auto work = std::make_shared<Work>();
    work->told = std::move(told);
    work->cancel = std::move(cancel);
    co_await forEachBounded(links.size(), links.size(),
                            [this, work, links](qsizetype at) { return readOne(work, links[at]); });
    if (work->read.empty()) {
        co_return;
    }
    const auto folders = m_parts.preferences.settings().projects;
    const auto projects = co_await askProjects(folders, work->cancel);
    work->context = std::make_shared<const JudgeContext>(
        judgeContext(judgeContextSource(m_parts.preferences,
                                        judgedProjects(projects, m_parts.preferences.settings()),
                                        m_parts.store.topics()),
                     m_parts.clock.now().toLocalTime().date(), kind));
    QList<Read> waiting;
    for (auto &[place, read] : work->read) {
        waiting += std::move(read);
    }
    work->read.clear();
    while (!waiting.isEmpty()) {
        QList<JudgeCandidate> shown;
        for (const Read &read : std::as_const(waiting)) {
            shown += read.shown;
        }
        const qsizetype size = nextBatchSize(shown);
        const QList<Read> batch = waiting.first(size);
        waiting.remove(0, size);
        co_await judge(work, batch);
    }
    const QList<QUuid> judged = work->judged;
    co_await forEachBounded(
        judged.size(), std::max<qsizetype>(1, judged.size()),
        [this, work, judged](qsizetype at) { return addPicture(work, judged[at]); });
}

Task<> CaptureReading::readOne(std::shared_ptr<Work> work, Link link) {
    const qsizetype place = work->next++;
    const TopicPtr captured = m_parts.store.topic(link.id);
    if (!captured || !isBeingRead(*captured)) {
        co_return;
    }
    const Candidate candidate = candidateOf(*captured);
    const Reach reach = captured->sharedAt ? Reach::PublicOnly : Reach::Anywhere;
    const ReadPage page = co_await m_parts.reader.read(candidate.url, work->cancel, reach);
    const QByteArray shared = captured->seenText.value_or(QByteArray());
    if (isUnreachable(page) && shared.isEmpty() && link.patience == Patience::Waits) {
        work->told.unreachable(link.id);
        co_return;
    }
    const QString title = page.title.value_or(captured->title);
    work->read.emplace(place, Read{.id = link.id,
                                   .candidate = candidate,
                                   .page = page,
                                   .shown = {.id = QStringLiteral("c-%1").arg(place + 1),
                                             .title = title,
                                             .url = candidate.url,
                                             .kind = guessKind(candidate.url),
                                             .level = levelOf(page, shared),
                                             .note = captured->note,
                                             .project = captured->project,
                                             .content = contentOf(page, shared)}});
}

Task<> CaptureReading::judge(std::shared_ptr<Work> work, QList<Read> batch) {
    QList<JudgeCandidate> shown;
    for (const Read &read : std::as_const(batch)) {
        shown += read.shown;
    }
    Judge::Verdicts verdicts;
    try {
        verdicts = co_await Judge(m_parts.asker).judge(work->context, shown, work->cancel);
    } catch (const AgentError &error) {
        if (batch.size() == 1 || !isOfTheseAlone(error)) {
            throw;
        }
    }
    QList<Read> unanswered;
    for (const Read &read : std::as_const(batch)) {
        const auto found = verdicts.byId.constFind(read.shown.id);
        if (found == verdicts.byId.constEnd()) {
            unanswered += read;
        } else {
            co_await keep(work, read, *found);
        }
    }
    if (batch.size() == 1 && !unanswered.isEmpty()) {
        throw AgentError::unreadable();
    }
    co_await judgeAlone(work, unanswered);
}

Task<> CaptureReading::judgeAlone(std::shared_ptr<Work> work, QList<Read> batch) {
    bool lastFailed = false;
    for (const Read &read : std::as_const(batch)) {
        try {
            co_await judge(work, {read});
            lastFailed = false;
        } catch (const AgentError &error) {
            // Two in a row: it is not about this or that link.
            if (!isOfTheseAlone(error) || lastFailed) {
                throw;
            }
            lastFailed = true;
            work->told.failed(read.id, failureText(error));
        }
    }
}

Task<> CaptureReading::keep(std::shared_ptr<Work> work, Read link, Judgment judgment) {
    const TopicPtr captured = m_parts.store.topic(link.id);
    if (!captured) {
        co_return;
    }
    Topic judged = draftTopic(link.candidate, link.page, judgment);
    judged.id = link.id;
    judged.project = captured->project;
    if (const QByteArray &shared = captured->seenText.value_or(QByteArray());
        shared.size() > judged.seenText.value_or(QByteArray()).size()) {
        judged.seenText = shared;
    }
    if (link.shown.level != link.page.level) { // it was judged by what another program saw
        judged.readLevel = link.shown.level;
        judged.score = scoreFromRelevance(judgment.relevance);
    }
    const QDateTime now = m_parts.clock.now();
    if (!m_parts.store.completeCaptured(std::move(judged))) {
        co_return;
    }
    co_await m_parts.provenance.add(
        {draftProvenance(*work->context, link.shown, judgment, link.id, now)});
    work->judged += link.id;
    work->told.judged(link.id);
}

Task<> CaptureReading::addPicture(std::shared_ptr<Work> work, QUuid id) {
    const TopicPtr topic = m_parts.store.topic(id);
    const QString address = topic ? topic->capturedURL.value_or(QString()) : QString();
    if (const auto picture = co_await m_parts.images.picture(address, work->cancel)) {
        m_parts.store.setGallery(id, {*picture});
    }
}

} // namespace vorle
