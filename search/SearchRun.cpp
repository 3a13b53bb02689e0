#include "search/SearchRun.h"

#include "base/Text.h"
#include "core/ScoreScale.h"
#include "core/TopicStore.h"
#include "search/Links.h"

#include <QCoreApplication>

namespace vorle {

namespace {

constexpr qsizetype scopesAtOnce = 3;
constexpr int judgmentsAtOnce = 2;

QString tr(const char *text) { return QCoreApplication::translate("SearchRun", text); }

/// The text of whatever a step failed with, for the user.
QString failureText(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    return agentError != nullptr ? agentError->text() : QString::fromUtf8(error.what());
}

/// Whether the candidate says that it answers `subject`, alone or among other words, in any case.
bool answers(const Candidate &candidate, const QString &subject) {
    const QString &about = candidate.about;
    const auto boundary = [&](qsizetype at) {
        return at < 0 || at >= about.size() || !about[at].isLetterOrNumber();
    };
    for (qsizetype at = about.indexOf(subject, 0, Qt::CaseInsensitive); at >= 0;
         at = about.indexOf(subject, at + 1, Qt::CaseInsensitive)) {
        if (!subject.isEmpty() && boundary(at - 1) && boundary(at + subject.size())) {
            return true;
        }
    }
    return false;
}

bool holds(const QList<TopicSource> &sources, const QString &url) {
    return std::any_of(sources.begin(), sources.end(),
                       [&](const TopicSource &source) { return source.url == url; });
}

} // namespace

SearchRun::SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeBrief> brief,
                     CancelToken cancel)
    : m_tools(std::move(tools))
    , m_plan(std::move(plan))
    , m_brief(std::move(brief))
    , m_cancel(std::move(cancel))
    , m_pipeline(m_tools.asker)
    , m_judge(m_tools.asker) {
    m_report.warnings = m_plan.warnings;
    m_report.scopes.resize(m_plan.scopes.size());
    m_progress.scopes = static_cast<int>(m_plan.scopes.size());
}

Task<RunReport> SearchRun::execute() {
    m_elapsed.start();
    noteKnownLinks();
    std::deque<Task<>> asking;
    asking.push_back(forEachBounded(m_plan.scopes.size(), scopesAtOnce,
                                    [this](qsizetype index) { return askScope(index); }));
    co_await outlast(asking);
    m_everythingAsked = true;
    tell();
    co_await outlast(m_reads);
    m_everythingRead = true;
    judgeWaiting();
    co_await outlast(m_judgments);
    if (m_fault) {
        std::rethrow_exception(m_fault);
    }
    m_report.cancelled = m_report.cancelled || !m_waiting.isEmpty();
    finishReport();
    throwIfNothingWorked();
    co_return m_report;
}

/// Waits for every task, the ones added meanwhile too, whatever they throw: they use this object.
Task<> SearchRun::outlast(std::deque<Task<>> &tasks) {
    for (std::size_t i = 0; i < tasks.size(); ++i) {
        try {
            co_await tasks[i];
        } catch (const Cancelled &) {
            m_report.cancelled = true;
        } catch (...) {
            m_fault = std::current_exception();
        }
    }
}

void SearchRun::noteKnownLinks() {
    for (const QString &link : knownLinks(m_tools.store.topics())) {
        m_held.insert(canonicalLink(link));
    }
}

Task<> SearchRun::askScope(qsizetype index) {
    m_cancel.throwIfCancelled();
    const PlannedScope &planned = m_plan.scopes[index];
    ScopeReport &report = m_report.scopes[index];
    report.name = planned.name;
    m_progress.status = planned.name;
    tell();
    try {
        const Pipeline::Found found =
            co_await m_pipeline.candidates(planned, m_tools.agent, m_cancel);
        report.found = static_cast<int>(found.candidates.size()) + found.refused;
        report.refused = found.refused;
        m_report.last.costUSD += found.costUSD.value_or(0);
        for (const Candidate &candidate : found.candidates) {
            take(index, candidate);
        }
    } catch (const Cancelled &) {
        throw;
    } catch (const AgentError &error) {
        m_report.last.costUSD += error.costUSD().value_or(0);
        report.error = error.text();
        m_scopeError = std::current_exception();
    } catch (const std::exception &error) {
        report.error = failureText(error);
        m_scopeError = std::current_exception();
    }
    ++m_progress.scopesDone;
    tell();
}

void SearchRun::take(qsizetype scope, Candidate candidate) {
    const PlannedScope &planned = m_plan.scopes[scope];
    for (const QString &topic : planned.topics) {
        if (answers(candidate, topic)) {
            m_covered.insert(topic);
        }
    }
    const QString link = canonicalLink(candidate.url);
    if (m_held.contains(link)) {
        ++m_report.scopes[scope].known;
        return;
    }
    if (const auto same = m_itemByLink.constFind(link); same != m_itemByLink.cend()) {
        ++m_report.scopes[scope].merged;
        Item &item = m_items[static_cast<std::size_t>(*same)];
        if (item.candidate.url != candidate.url && !holds(item.otherSources, candidate.url)) {
            item.otherSources.append({candidate.title, candidate.url});
        }
        return;
    }
    const auto place = static_cast<qsizetype>(m_items.size());
    m_itemByLink.insert(link, place);
    m_items.push_back({std::move(candidate), scope, {}, {}});
    ++m_progress.candidates;
    m_reads.push_back(read(place));
}

Task<> SearchRun::read(qsizetype place) {
    Item &item = m_items[static_cast<std::size_t>(place)];
    item.page = co_await m_tools.reader.read(item.candidate.url, m_cancel);
    ++m_progress.read;
    if (joinsAnother(place)) {
        --m_progress.candidates;
        --m_progress.read;
        tell();
        co_return;
    }
    switch (item.page.level) {
    case ReadLevel::Full:
    case ReadLevel::Seen:
        ++m_report.read;
        break;
    case ReadLevel::Meta:
        ++m_report.glimpsed;
        break;
    case ReadLevel::None:
        ++m_report.unread;
        break;
    }
    JudgeCandidate candidate;
    candidate.id = QStringLiteral("c") + QString::number(place + 1);
    candidate.title = item.candidate.title;
    candidate.url = item.candidate.url;
    candidate.kind =
        json::fromRaw<ItemKind>(item.candidate.kind).value_or(guessKind(item.candidate.url));
    candidate.level = item.page.level;
    candidate.content = item.page.level == ReadLevel::Meta
                            ? QStringList{item.page.title.value_or(QString()),
                                          item.page.description.value_or(QString())}
                                  .join(u'\n')
                                  .trimmed()
                                  .toUtf8()
                            : item.page.text;
    m_waiting.append(std::move(candidate));
    judgeWaiting();
    tell();
}

/// A link that led to a page already held, or being read under another address.
bool SearchRun::joinsAnother(qsizetype place) {
    const Item &item = m_items[static_cast<std::size_t>(place)];
    const QString finalLink = canonicalLink(item.page.finalUrl);
    if (item.page.level == ReadLevel::None || finalLink.isEmpty()) {
        return false;
    }
    if (m_held.contains(finalLink)) {
        ++m_report.scopes[item.scope].known;
        return true;
    }
    const auto same = m_itemByLink.constFind(finalLink);
    if (same == m_itemByLink.cend()) {
        m_itemByLink.insert(finalLink, place);
        return false;
    }
    if (*same == place) {
        return false;
    }
    ++m_report.scopes[item.scope].merged;
    m_items[static_cast<std::size_t>(*same)].otherSources.append(
        {item.candidate.title, item.candidate.url});
    return true;
}

void SearchRun::judgeWaiting() {
    while (!m_cancel.isCancelled() && m_judging < judgmentsAtOnce && !m_waiting.isEmpty()) {
        const qsizetype size = nextBatchSize(m_waiting);
        // A batch that could still grow waits for more, as long as more may come.
        if (!m_everythingRead && size == m_waiting.size() && size < Judge::batchCandidates) {
            return;
        }
        const QList<JudgeCandidate> batch = m_waiting.first(size);
        m_waiting.remove(0, size);
        ++m_judging;
        m_judgments.push_back(judgeBatch(batch));
    }
}

Task<> SearchRun::judgeBatch(QList<JudgeCandidate> batch) {
    try {
        const Judge::Verdicts verdicts = co_await m_judge.judge(m_brief, batch, m_cancel);
        m_report.last.costUSD += verdicts.costUSD.value_or(0);
        keep(batch, verdicts);
    } catch (const Cancelled &) {
        --m_judging;
        throw;
    } catch (const std::exception &error) {
        const auto *agentError = dynamic_cast<const AgentError *>(&error);
        m_report.last.costUSD += agentError != nullptr ? agentError->costUSD().value_or(0) : 0.0;
        m_report.unjudged += static_cast<int>(batch.size());
        m_report.warnings +=
            tr("Liens non jugés : %1. %2").arg(batch.size()).arg(failureText(error));
        m_judgeError = std::current_exception();
    }
    --m_judging;
    judgeWaiting();
    tell();
}

void SearchRun::keep(const QList<JudgeCandidate> &batch, const Judge::Verdicts &verdicts) {
    QList<Topic> topics;
    for (const JudgeCandidate &candidate : batch) {
        const auto verdict = verdicts.byId.constFind(candidate.id);
        if (verdict == verdicts.byId.cend()) {
            ++m_report.unjudged;
            continue;
        }
        const auto place = static_cast<std::size_t>(candidate.id.sliced(1).toLongLong() - 1);
        topics.append(topicFrom(m_items[place], *verdict));
        ++m_progress.judged;
    }
    m_report.topics += m_tools.store.add(std::move(topics));
}

Topic SearchRun::topicFrom(const Item &item, const Judgment &judgment) const {
    const PlannedScope &planned = m_plan.scopes[item.scope];
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = item.candidate.title.isEmpty() ? item.page.title.value_or(item.candidate.url)
                                                 : item.candidate.title;
    topic.score = item.page.level == ReadLevel::None ? 0 : scoreFromRelevance(judgment.relevance);
    topic.minutes = judgment.criteria.effortMinutes;
    topic.kind = json::rawText(judgment.kind);
    topic.summary = judgment.summary;
    topic.why = judgment.why;
    topic.firstStep = judgment.firstStep;
    if (!judgment.changes.isEmpty()) {
        topic.changes = judgment.changes;
    }
    if (!judgment.tldr.isEmpty()) {
        topic.tldr = judgment.tldr;
    }
    topic.readLevel = item.page.level;
    topic.urgency = judgment.urgency;
    topic.criteria = judgment.criteria;
    topic.sources = {{item.page.title.value_or(item.candidate.title), item.candidate.url}};
    topic.sources += item.otherSources;
    topic.status = TopicStatus::Pending;
    topic.foundAt = m_tools.now();
    topic.origin = planned.origin;
    if (!item.page.text.isEmpty()) {
        topic.seenText = item.page.text;
    }
    if (planned.project) {
        topic.project = planned.project;
    }
    const auto interest =
        std::find_if(planned.topics.begin(), planned.topics.end(),
                     [&](const QString &name) { return answers(item.candidate, name); });
    if (interest != planned.topics.end()) {
        topic.interest = *interest;
    }
    const auto *code = std::get_if<CodeProject>(&planned.scope);
    if (code != nullptr && !item.candidate.about.isEmpty() &&
        item.candidate.about.compare(code->name, Qt::CaseInsensitive) != 0 &&
        code->manifestText.contains(item.candidate.about)) {
        topic.dependency = item.candidate.about;
    }
    return topic;
}

void SearchRun::finishReport() {
    for (const PlannedScope &planned : m_plan.scopes) {
        for (const QString &topic : planned.topics) {
            if (!m_covered.contains(topic)) {
                m_report.last.uncovered += topic;
            }
        }
    }
    m_report.last.date = m_tools.now();
    m_report.last.added = static_cast<int>(m_report.topics.size());
    m_report.last.seconds = static_cast<double>(m_elapsed.elapsed()) / 1000.0;
}

void SearchRun::throwIfNothingWorked() const {
    if (m_report.cancelled) {
        return;
    }
    const bool everyScopeFailed =
        std::all_of(m_report.scopes.begin(), m_report.scopes.end(),
                    [](const ScopeReport &scope) { return !scope.error.isEmpty(); });
    if (everyScopeFailed && m_scopeError) {
        std::rethrow_exception(m_scopeError);
    }
    if (m_judgeError && m_report.topics.isEmpty()) {
        std::rethrow_exception(m_judgeError);
    }
}

void SearchRun::tell() {
    if (m_everythingAsked) {
        m_progress.status = tr("Lecture et tri : ") +
                            tr("%1 sur %2").arg(m_progress.judged).arg(m_progress.candidates);
    }
    m_tools.tell(m_progress);
}

} // namespace vorle
