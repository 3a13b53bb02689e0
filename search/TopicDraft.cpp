#include "search/TopicDraft.h"

#include "core/ScoreScale.h"

namespace vorle {

bool isAbout(const Candidate &candidate, const QString &subject) {
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

QByteArray judgedContent(const ReadPage &page) {
    if (page.level != ReadLevel::Meta) {
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
    topic.sources = {{page.title.value_or(candidate.title), candidate.url}};
    topic.status = TopicStatus::Pending;
    if (const QByteArray content = judgedContent(page); !content.isEmpty()) {
        topic.seenText = content;
    }
    return topic;
}

ScoreNote draftNote(const JudgeBrief &brief, const JudgeCandidate &candidate,
                    const Judgment &judgment, const QUuid &topic, const QDateTime &now) {
    ScoreNote note;
    note.topic = topic;
    note.at = now;
    note.agent = brief.agent ? std::optional(json::rawText(*brief.agent)) : std::nullopt;
    note.relevance = judgment.relevance;
    note.bytesRead = static_cast<int>(candidate.content.size());
    note.examples = static_cast<int>(brief.examples.size());
    for (const Reflex &reflex : brief.reflexes) {
        note.reflexes += ScoreNote::Reflex{reflex.id, reflex.title};
    }
    return note;
}

void placeInTerritory(Topic &topic, const Candidate &candidate, const PlannedScope &planned) {
    if (planned.project) {
        topic.project = planned.project;
    }
    const auto interest =
        std::find_if(planned.topics.begin(), planned.topics.end(),
                     [&](const QString &name) { return isAbout(candidate, name); });
    if (interest != planned.topics.end()) {
        topic.interest = *interest;
    }
    const auto *code = std::get_if<CodeProject>(&planned.scope);
    const QString &about = candidate.about;
    if (code != nullptr && !about.isEmpty() &&
        about.compare(code->name, Qt::CaseInsensitive) != 0 &&
        (planned.versions.contains(about) || code->manifestText.contains(about))) {
        topic.dependency = about;
    }
}

} // namespace vorle
