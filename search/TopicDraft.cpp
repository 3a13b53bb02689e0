#include "search/TopicDraft.h"

#include "core/ScoreScale.h"
#include "search/Links.h"

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

QList<TopicSource> sourcesOf(const Candidate &candidate, const ReadPage &page) {
    constexpr qsizetype longestLink = 2'000;
    const QString title = page.title.value_or(QString());
    QList<TopicSource> sources{{title.isEmpty() ? candidate.title : title, candidate.url}};
    const QString end = canonicalLink(page.finalUrl);
    const bool another =
        end != canonicalLink(candidate.url) &&
        end != canonicalLink(readableLink(candidate.url).toString(QUrl::FullyEncoded));
    if (page.level != ReadLevel::None && another && namesOnePage(page.finalUrl) &&
        page.finalUrl.size() <= longestLink) {
        // Named by its site: the page's own title stands above it already.
        QString site = QUrl(page.finalUrl).host();
        if (site.startsWith(u"www.")) {
            site.remove(0, 4);
        }
        sources += TopicSource{site, page.finalUrl};
    }
    return sources;
}

namespace {

/// Whether a manifest holds the name by itself: "react" is not in "react-native".
bool namesDependency(const QString &manifest, const QString &name) {
    const auto at = [&](qsizetype place) {
        return place >= 0 && place < manifest.size() ? manifest[place] : QChar(u' ');
    };
    const auto continues = [](QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'-'; };
    for (qsizetype i = manifest.indexOf(name); i >= 0; i = manifest.indexOf(name, i + 1)) {
        const QChar before = at(i - 1);
        if (!continues(before) && before != u'.' && !continues(at(i + name.size()))) {
            return !name.isEmpty();
        }
    }
    return false;
}

bool isDependency(const QString &about, const PlannedScope &planned) {
    const auto *code = std::get_if<CodeProject>(&planned.scope);
    return code != nullptr && about.compare(code->name, Qt::CaseInsensitive) != 0 &&
           (planned.versions.contains(about) || namesDependency(code->manifestText, about));
}

std::optional<QString> interestOf(const Candidate &candidate, const PlannedScope &planned) {
    const auto interest =
        std::find_if(planned.topics.begin(), planned.topics.end(),
                     [&](const QString &name) { return isAbout(candidate, name); });
    return interest != planned.topics.end() ? std::optional(*interest) : std::nullopt;
}

} // namespace

bool concerns(const Candidate &candidate, const PlannedScope &planned) {
    return (planned.project && isAbout(candidate, *planned.project)) ||
           isDependency(candidate.about, planned) || interestOf(candidate, planned);
}

void placeInTerritory(Topic &topic, const Candidate &candidate, const PlannedScope &planned) {
    if (!topic.project) {
        topic.project = planned.project;
    }
    if (!topic.interest) {
        topic.interest = interestOf(candidate, planned);
    }
    if (!topic.dependency && topic.project == planned.project &&
        isDependency(candidate.about, planned)) {
        topic.dependency = candidate.about;
    }
}

} // namespace vorle
