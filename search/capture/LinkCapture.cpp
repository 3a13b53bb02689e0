#include "search/capture/LinkCapture.h"

#include "base/Text.h"
#include "base/WebLink.h"
#include "core/Preferences.h"
#include "judging/Judge.h"
#include "search/run/JudgedProjects.h"
#include "search/run/LinkRegistry.h"
#include "search/run/RunRecorder.h"
#include "search/run/TopicDraft.h"
#include "search/web/Links.h"
#include "search/web/SourceImage.h"

namespace vorle {

namespace {

constexpr qsizetype capturedTitleCharacters = 300;
constexpr qsizetype noteCharacters = 4'000;

Candidate candidateOf(const Topic &captured) {
    return {.title = captured.sources.isEmpty() ? QString() : captured.sources.first().title,
            .url = captured.capturedURL.value_or(QString()),
            .kind = json::rawText(guessKind(captured.capturedURL.value_or(QString()))),
            .about = captured.project.value_or(QString())};
}

} // namespace

LinkCapture::LinkCapture(Parts parts, QObject *parent) : QObject(parent), m_parts(parts) {}
LinkCapture::~LinkCapture() = default;

std::variant<QUuid, LinkCapture::Refusal> LinkCapture::take(Link link) {
    const auto typed = WebLink::typed(link.url);
    if (!typed) {
        return Refusal{tr("Ce n’est pas l’adresse d’une page web."), std::nullopt};
    }
    const QString &address = typed->text();
    const LinkRegistry::Claim claim = LinkRegistry(m_parts.store.topics()).claim(address, 0);
    if (claim.standing == LinkRegistry::Standing::Known) {
        return Refusal{tr("Tu as déjà ce lien."), claim.topic};
    }
    Topic topic;
    topic.id = QUuid::createUuid();
    const QString title = clampedLine(link.title, capturedTitleCharacters);
    topic.title = title.isEmpty() ? QUrl(address).host() : title;
    topic.project = link.project;
    topic.sources = {{title, address}};
    topic.status = TopicStatus::Pending;
    topic.readLevel = ReadLevel::None; // until it is read: no score, rather than 0
    topic.foundAt = m_parts.clock.now();
    topic.capturedURL = address;
    topic.origin = Origin::Capture;
    if (const QString note = clampedLines(link.note, noteCharacters); !note.isEmpty()) {
        topic.note = note;
    }
    const QUuid id = topic.id;
    m_parts.store.add({std::move(topic)});
    start(id);
    return id;
}

void LinkCapture::resume() {
    for (const TopicPtr &topic : m_parts.store.topics(TopicStatus::Pending)) {
        if (isBeingRead(*topic)) {
            start(topic->id);
        }
    }
}

LinkCapture::State LinkCapture::state(const QUuid &id) const {
    const TopicPtr topic = m_parts.store.topic(id);
    if (!topic || !isBeingRead(*topic)) {
        return State::None;
    }
    if (m_failures.contains(id)) {
        return State::Failed;
    }
    return m_running && !m_queue.isEmpty() && m_queue.first() == id ? State::Reading
                                                                    : State::Queued;
}

QString LinkCapture::failureText(const QUuid &id) const {
    return state(id) == State::Failed ? m_failures.value(id) : QString();
}

void LinkCapture::retry(const QUuid &id) {
    if (state(id) == State::Failed) {
        start(id);
    }
}

void LinkCapture::ask(const QUuid &id) {
    const TopicPtr topic = m_parts.store.topic(id);
    if (topic && isBeingRead(*topic)) {
        start(id);
    }
}

void LinkCapture::start(const QUuid &id) {
    m_failures.remove(id);
    if (!m_queue.contains(id)) {
        m_queue += id;
    }
    Q_EMIT stateChanged(id);
    if (!m_running) {
        m_work.add(logged(work(), QStringLiteral("captured links")));
    }
}

Task<> LinkCapture::work() {
    m_running = true;
    Q_EMIT runningChanged();
    while (!m_queue.isEmpty() && !m_cancel.token().isCancelled()) {
        const QUuid id = m_queue.first();
        Q_EMIT stateChanged(id);
        std::optional<QString> failure;
        QList<QUuid> ended{id};
        try {
            co_await complete(id);
        } catch (const Cancelled &) {
            break;
        } catch (const std::exception &error) {
            failure = vorle::failureText(error);
            const auto *agentError = dynamic_cast<const AgentError *>(&error);
            if (agentError != nullptr && agentError->limit()) {
                ended = m_queue; // no other would fare better
            }
        }
        for (const QUuid &one : std::as_const(ended)) {
            end(one, failure);
        }
    }
    m_queue.clear();
    m_running = false;
    Q_EMIT runningChanged();
}

void LinkCapture::end(const QUuid &id, const std::optional<QString> &failure) {
    m_queue.removeOne(id);
    const TopicPtr topic = m_parts.store.topic(id);
    if (failure && topic && isBeingRead(*topic)) {
        m_failures.insert(id, *failure);
        Q_EMIT failed(id, *failure);
    }
    Q_EMIT stateChanged(id);
}

Task<> LinkCapture::complete(QUuid id) {
    const TopicPtr captured = m_parts.store.topic(id);
    if (!captured || !isBeingRead(*captured)) {
        co_return;
    }
    // An agent that cannot answer costs no reading either.
    const EngineAgent &agent = m_parts.asker.agent();
    const AgentKind kind = agent.locator().choose();
    agent.check(kind);
    const Candidate candidate = candidateOf(*captured);
    const ReadPage page =
        co_await m_parts.reader.read(candidate.url, m_cancel.token(), Reach::Anywhere);
    const auto folders = m_parts.preferences.settings().projects;
    const auto projects = co_await askProjects(folders, m_cancel.token());
    const QDateTime now = m_parts.clock.now();
    const auto context = std::make_shared<const JudgeContext>(
        judgeContext(judgeContextSource(m_parts.preferences,
                                        judgedProjects(projects, m_parts.preferences.settings()),
                                        m_parts.store.topics()),
                     now.toLocalTime().date(), kind));
    const JudgeCandidate shown{.id = QStringLiteral("c-1"),
                               .title = page.title.value_or(captured->title),
                               .url = candidate.url,
                               .kind = guessKind(candidate.url),
                               .level = page.level,
                               .note = captured->note,
                               .content = judgedContent(page)};
    const Judge::Verdicts verdicts =
        co_await Judge(m_parts.asker).judge(context, {shown}, m_cancel.token());
    const auto found = verdicts.byId.constFind(shown.id);
    if (found == verdicts.byId.constEnd()) {
        throw AgentError::unreadable();
    }
    Topic judged = draftTopic(candidate, page, *found);
    judged.id = id;
    judged.project = captured->project;
    if (!m_parts.store.completeCaptured(std::move(judged))) {
        co_return;
    }
    co_await m_parts.provenance.add({draftProvenance(*context, shown, *found, id, now)});
    Q_EMIT completed(id);
    if (const auto picture = co_await m_parts.images.picture(candidate.url, m_cancel.token())) {
        m_parts.store.setGallery(id, {*picture});
    }
}

} // namespace vorle
