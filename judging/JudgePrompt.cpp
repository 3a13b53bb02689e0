#include "judging/JudgePrompt.h"

#include "agents/PromptText.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "core/Corrections.h"

#include <QDate>

namespace vorle {

namespace {

constexpr qsizetype titleCharacters = 300;
constexpr qsizetype noteCharacters = 1'000;
/// Characters may be of any size: stacked marks must not make a block of megabytes.
constexpr qsizetype contentBytes = 40'000;
constexpr qsizetype exampleCharacters = 600;
constexpr qsizetype exampleBytes = 2'400;
/// A name, a label, a version, a line of the profile: what lock files and apps are called is
/// written by strangers too.
constexpr qsizetype nameCharacters = 200;
constexpr qsizetype descriptionCharacters = 1'000;
constexpr qsizetype reflexCharacters = 400;
constexpr qsizetype profileBytes = 16'000;
constexpr qsizetype examplesBytes = 24'000;
constexpr qsizetype maxExamples = 12;
constexpr qsizetype maxVersions = 80;

QString scoreText(double score) { return QString::number(score, 'g', 3); }

QString bullets(const QStringList &lines) {
    return lines.isEmpty() ? QString()
                           : QStringLiteral("- ") + lines.join(QStringLiteral("\n- ")) + u'\n';
}

QString name(const QString &text) { return oneLine(text, nameCharacters); }

QStringList names(QStringList texts) {
    for (QString &text : texts) {
        text = name(text);
    }
    return texts;
}

QString projectText(const JudgeProfile::Project &project) {
    QString text = name(project.name);
    if (!project.description.isEmpty()) {
        text += QStringLiteral(": ") + oneLine(project.description, descriptionCharacters);
    }
    if (!project.labels.isEmpty()) {
        text += QStringLiteral(" [") + names(project.labels).join(QStringLiteral(", ")) + u']';
    }
    if (!project.versions.isEmpty()) {
        const auto shown = project.versions.first(std::min(maxVersions, project.versions.size()));
        text += QStringLiteral("\n  versions in use: ") + names(shown).join(QStringLiteral(", "));
    }
    return text;
}

/// What is left of the examples section. A block too long for it is passed over, and the next may
/// still find room.
class ExampleRoom {
public:
    bool takes(const QString &block) {
        const qsizetype size = promptSize(block) + 1; // a line apart from the next
        if (size > m_left) {
            return false;
        }
        m_left -= size;
        return true;
    }

private:
    qsizetype m_left = examplesBytes;
};

QString reflexText(const QStringList &lines) {
    QString text;
    for (const QString &line : lines) {
        text += reflexLine(line);
    }
    return promptPrefix(text, reflexBytes).toString();
}

} // namespace

QString reflexLine(const QString &instruction) {
    return QStringLiteral("- ") + oneLine(instruction, reflexCharacters) + u'\n';
}

QString candidateBlock(const JudgeCandidate &candidate) {
    QString block = QStringLiteral("### id: ") + candidate.id + u'\n';
    block += QStringLiteral("Title: ") + oneLine(candidate.title, titleCharacters) + u'\n';
    // Whole or not at all: a link that was cut leads elsewhere.
    if (const auto link = WebLink::from(candidate.url, WebLink::Giver::User)) {
        block += (candidate.level == ReadLevel::None ? QStringLiteral("Link (could not be read): ")
                                                     : QStringLiteral("Link: ")) +
                 link->text() + u'\n';
    }
    block += QStringLiteral("Kind (guessed): ") + json::rawText(candidate.kind) + u'\n';
    if (candidate.level) {
        block += QStringLiteral("Read level: ") + json::rawText(*candidate.level) + u'\n';
    }
    if (candidate.note && !candidate.note->isEmpty()) {
        block += QStringLiteral("Their note when saving it: ") +
                 oneLine(*candidate.note, noteCharacters) + u'\n';
    }
    if (candidate.project && !candidate.project->isEmpty()) {
        block += QStringLiteral("Their project it is for: ") +
                 oneLine(*candidate.project, nameCharacters) + u'\n';
    }
    // What the level says counts: a page that was read may hold little, and one that was not may
    // carry words of ours.
    const bool unread =
        candidate.level ? *candidate.level == ReadLevel::None : candidate.content.isEmpty();
    const QString content =
        unread ? QStringLiteral("(nothing could be read)")
               : promptPrefix(escapedForPrompt(QString::fromUtf8(candidate.content)), contentBytes)
                     .toString();
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
        outcome += QStringLiteral(": they scored it ") + scoreText(topic.correction->score);
        if (const auto judged = judgedScore(topic)) {
            outcome += QStringLiteral(" (vorle had said ") + QString::number(*judged) + u')';
        }
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
    candidate.level = topic.readLevel;
    candidate.note = topic.note;
    const QString text = topic.seenText ? QString::fromUtf8(*topic.seenText) : topic.summary;
    candidate.content =
        promptPrefix(firstCharacters(text, exampleCharacters), exampleBytes).toUtf8();
    return candidateBlock(candidate) + outcomeText(topic) + u'\n';
}

QList<TopicPtr> exampleTopics(const QList<TopicPtr> &topics) {
    QList<TopicPtr> chosen;
    for (const TopicPtr &topic : topics) {
        const bool decided = topic->status == TopicStatus::Program ||
                             topic->status == TopicStatus::Done ||
                             topic->status == TopicStatus::Dismissed;
        // A link given and taken back before it was judged is no decision.
        if ((decided && !isUnjudgedCapture(*topic)) || topic->correction) {
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
    QList<TopicPtr> shown;
    ExampleRoom room;
    for (const TopicPtr &topic : std::as_const(chosen)) {
        if (shown.size() < maxExamples && room.takes(exampleBlock(*topic))) {
            shown += topic;
        }
    }
    return shown;
}

QString profileText(const JudgeProfile &profile) {
    QString text = QStringLiteral("Job: ") +
                   (profile.job.isEmpty() ? QStringLiteral("not given") : name(profile.job)) +
                   QStringLiteral("\nLanguage they read: ") + name(profile.language) + u'\n';
    QStringList projects;
    for (const auto &project : profile.projects) {
        projects += projectText(project);
    }
    QStringList interests;
    for (const auto &interest : profile.interests) {
        interests += name(interest.topic) + QStringLiteral(" (weight ") +
                     QString::number(interest.weight) + u')';
    }
    const auto section = [&](const QString &title, const QStringList &lines) {
        if (!lines.isEmpty()) {
            text += title + u'\n' + bullets(lines);
        }
    };
    section(QStringLiteral("Projects they work on:"), projects);
    section(QStringLiteral("Topics they follow, weight 1 to 5 (5 matters most):"), interests);
    section(QStringLiteral("Tools they use:"), names(profile.tools));
    text.chop(1);
    return promptPrefix(text, profileBytes).toString();
}

QString judgePrompt(const QString &instruction, const QDate &today, const JudgeProfile &profile,
                    const QStringList &reflexLines, const QList<TopicPtr> &examples,
                    const QList<JudgeCandidate> &candidates) {
    QString exampleText;
    ExampleRoom room;
    for (const TopicPtr &topic : examples) {
        if (const QString block = exampleBlock(*topic); room.takes(block)) {
            exampleText += (exampleText.isEmpty() ? QString() : QStringLiteral("\n")) + block;
        }
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
         {QStringLiteral("@REFLEXES"), reflexLines.isEmpty() ? none : reflexText(reflexLines)},
         {QStringLiteral("@EXAMPLES"), exampleText.isEmpty() ? none : exampleText},
         {QStringLiteral("@CANDIDATES"), candidateText}});
}

} // namespace vorle
