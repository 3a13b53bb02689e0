#include "search/run/TopicDraft.h"

#include "base/WebLink.h"
#include "core/ScoreScale.h"
#include "search/run/AboutNames.h"
#include "search/web/Links.h"

#include <algorithm>

namespace vorle {

QByteArray judgedContent(const ReadPage &page) {
    if (page.level != ReadLevel::Meta || !page.text.isEmpty()) { // a short plain text is all text
        return page.text;
    }
    return QStringList{page.title.value_or(QString()), page.description.value_or(QString())}
        .join(u'\n')
        .trimmed()
        .toUtf8();
}

Topic draftTopic(const Candidate &candidate, const ReadPage &page, const Judgment &judgment) {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = candidate.title.isEmpty() ? page.title.value_or(candidate.url) : candidate.title;
    topic.score = page.level == ReadLevel::None ? 0 : scoreFromRelevance(judgment.relevance);
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
    topic.readLevel = page.level;
    topic.urgency = judgment.urgency;
    topic.criteria = judgment.criteria;
    topic.sources = sourcesOf(candidate, page);
    topic.status = TopicStatus::Pending;
    if (const QByteArray content = judgedContent(page); !content.isEmpty()) {
        topic.seenText = content;
    }
    return topic;
}

ScoreProvenance draftProvenance(const JudgeContext &context, const JudgeCandidate &candidate,
                                const Judgment &judgment, const QUuid &topic,
                                const QDateTime &now) {
    ScoreProvenance provenance;
    provenance.topic = topic;
    provenance.at = now;
    provenance.agent = context.agent ? std::optional(json::rawText(*context.agent)) : std::nullopt;
    provenance.relevance = judgment.relevance;
    provenance.bytesRead = static_cast<int>(candidate.content.size());
    provenance.examples = static_cast<int>(context.examples.size());
    for (const Reflex &reflex : context.reflexes) {
        provenance.reflexes += ScoreProvenance::Reflex{reflex.id, reflex.title};
    }
    return provenance;
}

QList<TopicSource> sourcesOf(const Candidate &candidate, const ReadPage &page) {
    const QString title = page.title.value_or(QString());
    QList<TopicSource> sources{{title.isEmpty() ? candidate.title : title, candidate.url}};
    const QString end = canonicalLink(page.finalUrl);
    const bool another =
        end != canonicalLink(candidate.url) &&
        end != canonicalLink(readableLink(candidate.url).toString(QUrl::FullyEncoded));
    const auto led = WebLink::from(page.finalUrl);
    if (led && page.level != ReadLevel::None && another && namesOnePage(led->text())) {
        // Named by its site: the page's own title stands above it already.
        sources += TopicSource{WebLink::site(led->url(), QUrl::PrettyDecoded), led->text()};
    }
    return sources;
}

namespace {

bool isProject(const Candidate &candidate, const PlannedScope &planned) {
    return planned.project && namesIn(candidate.about, planned.names).contains(*planned.project);
}

std::optional<QString> interestOf(const Candidate &candidate, const PlannedScope &planned) {
    const QStringList topics = topicsOf(candidate, planned);
    return topics.isEmpty() ? std::nullopt : std::optional(topics.first());
}

} // namespace

QStringList topicsOf(const Candidate &candidate, const PlannedScope &planned) {
    QStringList topics = namesIn(candidate.about, planned.names);
    topics.removeIf([&](const QString &name) { return !planned.topics.contains(name); });
    std::ranges::stable_sort(topics, std::ranges::greater(), &QString::size);
    return topics;
}

std::optional<QString> dependencyOf(const Candidate &candidate, const PlannedScope &planned) {
    const QString &about = candidate.about;
    if (planned.project && isSameName(about, *planned.project)) {
        return std::nullopt;
    }
    if (planned.dependencies.contains(about)) {
        return about;
    }
    const auto found = std::ranges::find_if(planned.dependencies, [&](const QString &dependency) {
        return isSameName(dependency, about);
    });
    return found != planned.dependencies.end() ? std::optional(*found) : std::nullopt;
}

bool concerns(const Candidate &candidate, const PlannedScope &planned) {
    return isProject(candidate, planned) || dependencyOf(candidate, planned) ||
           interestOf(candidate, planned);
}

void attachToTerritory(Topic &topic, const Candidate &candidate, const PlannedScope &planned) {
    if (!topic.project) {
        topic.project = planned.project;
    }
    if (!topic.interest) {
        topic.interest = interestOf(candidate, planned);
    }
    if (!topic.dependency && topic.project == planned.project) {
        topic.dependency = dependencyOf(candidate, planned);
    }
}

} // namespace vorle
