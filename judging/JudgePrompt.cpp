#include "judging/JudgePrompt.h"

#include "agents/PromptText.h"
#include "base/Text.h"

#include <QDate>

namespace vorle {

namespace {

constexpr qsizetype titleCharacters = 300;
constexpr qsizetype linkCharacters = 2'000;
constexpr qsizetype noteCharacters = 1'000;
/// Characters may be of any size: stacked marks must not make a block of megabytes.
constexpr qsizetype contentBytes = 40'000;
constexpr qsizetype exampleCharacters = 600;
constexpr qsizetype profileBytes = 16'000;
constexpr qsizetype examplesBytes = 24'000;
constexpr qsizetype mostExamples = 12;
constexpr qsizetype mostVersions = 80;

QString scoreText(double score) { return QString::number(score, 'g', 3); }

QString bullets(const QStringList &lines) {
    return lines.isEmpty() ? QString()
                           : QStringLiteral("- ") + lines.join(QStringLiteral("\n- ")) + u'\n';
}

} // namespace

QString candidateBlock(const JudgeCandidate &candidate) {
    QString block = QStringLiteral("### id: ") + candidate.id + u'\n';
    block += QStringLiteral("Title: ") + oneLine(candidate.title, titleCharacters) + u'\n';
    if (!candidate.url.isEmpty()) {
        block += (candidate.level == ReadLevel::None ? QStringLiteral("Link (could not be read): ")
                                                     : QStringLiteral("Link: ")) +
                 oneLine(candidate.url, linkCharacters) + u'\n';
    }
    block += QStringLiteral("Kind (guessed): ") + json::rawText(candidate.kind) + u'\n';
    block += QStringLiteral("Read level: ") + json::rawText(candidate.level) + u'\n';
    if (candidate.note && !candidate.note->isEmpty()) {
        block += QStringLiteral("Their note when saving it: ") +
                 oneLine(*candidate.note, noteCharacters) + u'\n';
    }
    const QString content =
        candidate.content.isEmpty()
            ? QStringLiteral("(nothing could be read)")
            : defused(utf8Prefix(QString::fromUtf8(candidate.content), contentBytes).toString());
    return block + QStringLiteral("Content:\n\"\"\"\n") + content + QStringLiteral("\n\"\"\"\n");
}

QString outcomeText(const Topic &topic) {
    QString outcome;
    if (topic.status == TopicStatus::Dismissed) {
        outcome = QStringLiteral("set it aside: not for them");
    } else if (topic.worth == Worth::Gem) {
        outcome = QStringLiteral("a gem, worth it");
    } else if (topic.worth == Worth::Useful) {
        outcome = QStringLiteral("useful");
    } else if (topic.status == TopicStatus::Program || topic.status == TopicStatus::Done) {
        outcome = QStringLiteral("kept it");
    } else {
        outcome = QStringLiteral("not decided yet");
    }
    if (topic.correction) {
        outcome += QStringLiteral(": they scored it ") + scoreText(topic.correction->score) +
                   QStringLiteral(" (vorle had said ") + QString::number(topic.score) + u')';
    }
    return outcome;
}

QString exampleBlock(const Topic &topic) {
    JudgeCandidate candidate;
    candidate.id = topic.id.toString(QUuid::WithoutBraces).toUpper();
    candidate.title = topic.title;
    candidate.url = topic.mainSource() != nullptr ? topic.mainSource()->url : QString();
    candidate.kind =
        json::fromRaw<ItemKind>(topic.kind.value_or(QString())).value_or(ItemKind::Article);
    candidate.level = topic.readLevel.value_or(ReadLevel::None);
    candidate.note = topic.note;
    const QString text = topic.seenText ? QString::fromUtf8(*topic.seenText) : topic.summary;
    candidate.content = firstCharacters(text, exampleCharacters).toUtf8();
    return candidateBlock(candidate) + outcomeText(topic) + u'\n';
}

QList<TopicPtr> exampleTopics(const QList<TopicPtr> &topics) {
    QList<TopicPtr> chosen;
    for (const TopicPtr &topic : topics) {
        const bool decided = topic->status == TopicStatus::Program ||
                             topic->status == TopicStatus::Done ||
                             topic->status == TopicStatus::Dismissed;
        if (decided || topic->correction) {
            chosen.append(topic);
        }
    }
    const auto moment = [](const Topic &topic) {
        return topic.correction ? topic.correction->at : topic.triagedAt.value_or(topic.foundAt);
    };
    const auto before = [&](const TopicPtr &a, const TopicPtr &b) {
        if (a->correction.has_value() != b->correction.has_value()) {
            return a->correction.has_value();
        }
        return moment(*a) > moment(*b);
    };
    std::stable_sort(chosen.begin(), chosen.end(), before);
    const qsizetype most = std::min(mostExamples, chosen.size());
    qsizetype count = 0;
    for (qsizetype bytes = 0; count < most; ++count) {
        bytes += utf8Size(exampleBlock(*chosen[count])) + 1;
        if (bytes > examplesBytes) {
            break;
        }
    }
    return chosen.first(count);
}

QString profileText(const JudgeProfile &profile) {
    QString text = QStringLiteral("Job: ") +
                   (profile.job.isEmpty() ? QStringLiteral("not given") : profile.job) +
                   QStringLiteral("\nLanguage they read: ") + profile.language + u'\n';
    QStringList projects;
    for (const auto &project : profile.projects) {
        QString line = project.name;
        if (!project.description.isEmpty()) {
            line += QStringLiteral(": ") + project.description;
        }
        if (!project.labels.isEmpty()) {
            line += QStringLiteral(" [") + project.labels.join(QStringLiteral(", ")) + u']';
        }
        if (!project.versions.isEmpty()) {
            const auto shown =
                project.versions.first(std::min(mostVersions, project.versions.size()));
            line += QStringLiteral("\n  versions in use: ") + shown.join(QStringLiteral(", "));
        }
        projects += line;
    }
    QStringList interests;
    for (const auto &interest : profile.interests) {
        interests +=
            interest.topic + QStringLiteral(" (weight ") + QString::number(interest.weight) + u')';
    }
    const auto section = [&](const QString &title, const QStringList &lines) {
        if (!lines.isEmpty()) {
            text += title + u'\n' + bullets(lines);
        }
    };
    section(QStringLiteral("Projects they work on:"), projects);
    section(QStringLiteral("Topics they follow, weight 1 to 5 (5 matters most):"), interests);
    section(QStringLiteral("Tools they use:"), profile.tools);
    text.chop(1);
    return utf8Prefix(text, profileBytes).toString();
}

QString judgePrompt(const QString &instruction, const QDate &today, const JudgeProfile &profile,
                    const QStringList &reflexLines, const QList<TopicPtr> &examples,
                    const QList<JudgeCandidate> &candidates) {
    QString exampleText;
    for (const TopicPtr &topic : examples) {
        const QString block =
            (exampleText.isEmpty() ? QString() : QStringLiteral("\n")) + exampleBlock(*topic);
        if (utf8Size(exampleText) + utf8Size(block) > examplesBytes) {
            break;
        }
        exampleText += block;
    }
    QString candidateText;
    for (const JudgeCandidate &candidate : candidates) {
        candidateText += (candidateText.isEmpty() ? QString() : QStringLiteral("\n")) +
                         candidateBlock(candidate);
    }
    const QString none = QStringLiteral("(none yet)");
    return replacedOnce(
        instruction,
        {{QStringLiteral("@TODAY"), promptDate(today)},
         {QStringLiteral("@PROFILE"), profileText(profile)},
         {QStringLiteral("@REFLEXES"), reflexLines.isEmpty() ? none : bullets(reflexLines)},
         {QStringLiteral("@EXAMPLES"), exampleText.isEmpty() ? none : exampleText},
         {QStringLiteral("@CANDIDATES"), candidateText}});
}

} // namespace vorle
