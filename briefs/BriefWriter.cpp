#include "briefs/BriefWriter.h"

#include "base/MainThread.h"
#include "base/SystemErrorText.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "briefs/BriefPrompt.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/BriefWriter";

// Twice what the instruction asks for and more: the agent is held, not corrected.
constexpr qsizetype maxEssentials = 6;
constexpr qsizetype maxDetails = 8;
constexpr qsizetype maxUnclear = 6;
constexpr qsizetype maxSources = 8;
constexpr qsizetype titleCharacters = 150;
constexpr qsizetype bodyCharacters = 1'500;
constexpr qsizetype pointCharacters = 400;
constexpr qsizetype codeCharacters = 4'000;
constexpr double maxMinutes = 60;

QString clampedText(const QString &text, qsizetype characters) {
    return clampedLines(trimmed(text).toString(), characters);
}

/// Agents like to fence code whatever they are told.
QString withoutFence(const QString &code) {
    const QString bare = trimmed(code).toString();
    const QString fence = QStringLiteral("```");
    const qsizetype end = bare.lastIndexOf(u'\n');
    const bool fenced =
        bare.startsWith(fence) && end > 0 && trimmed(QStringView(bare).sliced(end)) == fence;
    return fenced ? bare.sliced(bare.indexOf(u'\n'), end - bare.indexOf(u'\n')) : code;
}

QList<Brief::Part> clampedParts(const QList<Brief::Part> &parts, qsizetype most) {
    QList<Brief::Part> clamped;
    for (const Brief::Part &part : parts) {
        const Brief::Part one{clampedLine(part.title, titleCharacters),
                              clampedText(part.body, bodyCharacters)};
        if (clamped.size() < most && !(one.title.isEmpty() && one.body.isEmpty())) {
            clamped += one;
        }
    }
    return clamped;
}

QList<Brief::Source> clampedSources(const QList<Brief::Source> &sources) {
    QList<Brief::Source> clamped;
    for (const Brief::Source &source : sources) {
        const auto link = WebLink::from(source.url);
        const bool known =
            std::any_of(clamped.begin(), clamped.end(), [&](const Brief::Source &other) {
                return link && other.url == link->text();
            });
        if (clamped.size() < maxSources && link && !known) {
            clamped += {clampedLine(source.title, titleCharacters), link->text(),
                        clampedLine(source.adds, pointCharacters)};
        }
    }
    return clamped;
}

} // namespace

QString codePartTitle() { return QCoreApplication::translate("BriefWriter", "Exemple de code"); }

std::optional<Brief> briefFrom(const BriefWriter::Output &output) {
    Brief brief;
    brief.essentials = clampedParts(output.essentials, maxEssentials);
    if (brief.essentials.isEmpty()) {
        return std::nullopt;
    }
    brief.details = clampedParts(output.details, maxDetails);
    const QString code =
        clampedLines(withoutFence(output.code.value_or(QString())), codeCharacters);
    if (!code.isEmpty()) {
        brief.details += {codePartTitle(), code};
    }
    const QString project = clampedText(output.forProject.value_or(QString()), bodyCharacters);
    if (!project.isEmpty()) {
        brief.project = project;
    }
    for (const QString &point : output.unclear) {
        const QString clamped = clampedLine(point, pointCharacters);
        if (brief.unclear.size() < maxUnclear && !clamped.isEmpty()) {
            brief.unclear += clamped;
        }
    }
    brief.sources = clampedSources(output.sources);
    return brief;
}

BriefWriter::BriefWriter(Parts parts, QObject *parent) : QObject(parent), m_parts(parts) {}

BriefWriter::~BriefWriter() { m_call.cancel(); }

std::optional<BriefWriter::Receipt> BriefWriter::receipt(const QUuid &id) const {
    const auto found = m_receipts.constFind(id);
    return found == m_receipts.cend() ? std::nullopt : std::optional(*found);
}

void BriefWriter::ask(const QUuid &id) {
    requireMainThread(subject);
    if (m_writing == id || m_queue.contains(id)) {
        return;
    }
    const bool hadFailed = m_failures.remove(id);
    m_queue += id;
    if (hadFailed) {
        Q_EMIT failedChanged();
    }
    Q_EMIT queueChanged();
    if (!m_running) {
        setRunning(true);
        m_work.add(logged(work(), QStringLiteral("briefs")));
    }
}

void BriefWriter::withdraw(const QUuid &id) {
    requireMainThread(subject);
    if (m_queue.removeOne(id)) {
        Q_EMIT queueChanged();
    } else if (m_writing == id) {
        m_call.cancel();
        setWriting(std::nullopt);
    }
}

void BriefWriter::stop() {
    requireMainThread(subject);
    if (!m_queue.isEmpty()) {
        m_queue.clear();
        Q_EMIT queueChanged();
    }
    if (m_writing) {
        withdraw(*m_writing);
    }
}

Task<> BriefWriter::work() {
    const QPointer<BriefWriter> self(this);
    while (!m_queue.isEmpty()) {
        const QUuid id = m_queue.takeFirst();
        m_call = CancelSource();
        const CancelToken cancel = m_call.token();
        setWriting(id);
        Q_EMIT queueChanged();
        std::optional<Asked<Output>> asked;
        std::optional<QString> failure;
        bool isLimit = false;
        try {
            if (m_parts.store.topic(id)) {
                asked = co_await m_parts.asker.ask<Output>(questionFor(id), cancel);
            }
        } catch (const Cancelled &) {
            // Told by whoever withdrew the topic.
        } catch (const AgentError &error) {
            failure = error.text();
            isLimit = error.limit().has_value();
        } catch (const std::system_error &error) {
            failure = systemRefusalText(error);
        } catch (const std::exception &error) {
            failure = QString::fromUtf8(error.what());
        }
        if (!self) {
            co_return;
        }
        if (!cancel.isCancelled()) {
            setWriting(std::nullopt);
            if (asked) {
                keep(id, *asked);
            } else if (failure) {
                fail(id, *failure);
            }
        }
        if (isLimit) { // no other would fare better
            for (const QUuid &waiting : std::exchange(m_queue, {})) {
                fail(waiting, *failure);
            }
            Q_EMIT queueChanged();
        }
    }
    setRunning(false);
}

Question BriefWriter::questionFor(const QUuid &id) const {
    const AgentKind agent = m_parts.asker.agent().locator().choose();
    m_parts.asker.agent().check(agent);
    Question question;
    question.prompt =
        briefPrompt(loadPrompt(m_parts.asker.resources(), QStringLiteral("brief-prompt")),
                    m_parts.clock.now().toLocalTime().date(), m_parts.preferences.settings(),
                    *m_parts.store.topic(id));
    question.schemaName = QStringLiteral("brief-schema");
    question.step = QStringLiteral("brief");
    question.web = WebAccess::On;
    question.agent = agent;
    return question;
}

void BriefWriter::keep(const QUuid &id, const Asked<Output> &asked) {
    const auto brief = briefFrom(asked.answer);
    if (!brief) {
        fail(id, AgentError::unreadable().text());
        return;
    }
    Receipt receipt{std::nullopt, asked.spent.costUSD};
    if (asked.answer.minutes && std::isfinite(*asked.answer.minutes)) {
        receipt.minutes =
            static_cast<int>(std::lround(std::clamp(*asked.answer.minutes, 1.0, maxMinutes)));
    }
    m_receipts.insert(id, receipt);
    if (m_parts.store.setBrief(id, brief)) {
        Q_EMIT written(id);
    }
}

void BriefWriter::fail(const QUuid &id, const QString &text) {
    m_failures.insert(id, text);
    Q_EMIT failedChanged();
}

void BriefWriter::setWriting(std::optional<QUuid> id) {
    m_writing = id;
    Q_EMIT writingChanged();
}

void BriefWriter::setRunning(bool running) {
    m_running = running;
    Q_EMIT runningChanged();
}

} // namespace vorle
