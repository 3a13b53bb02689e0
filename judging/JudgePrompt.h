#pragma once

#include "core/TopicStore.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace vorle {

/// One candidate as the judge sees it.
struct JudgeCandidate {
    QString id;
    QString title;
    QString url;                       ///< what is no web link has no line
    ItemKind kind = ItemKind::Article; ///< guessed when it was found
    /// Absent where nobody knows how far the page was read: of topics from elsewhere.
    std::optional<ReadLevel> level = ReadLevel::None;
    std::optional<QString> note;    ///< the user's, when they captured it themselves
    std::optional<QString> project; ///< that the user tied it to, likewise
    QByteArray content;             ///< UTF-8, as read; empty when nothing could be read
};

/// Who the judge judges for.
struct JudgeProfile {
    struct Project {
        QString name;
        QString description;
        QStringList labels;
        QStringList versions; ///< "react 19.2.0": what the project uses today
    };
    struct Interest {
        QString topic;
        int weight = 3; ///< 1 to 5
    };

    QString job;
    QString language = QStringLiteral("French");
    QList<Project> projects;
    QList<Interest> interests;
    QStringList tools;
};

/// The English block that presents one candidate, each line ended by a line break. What strangers
/// wrote is kept apart: the content stands between lines of three double quotes, and fences and
/// block headings inside it are defused; titles and notes are held to one line, links whole or left
/// out.
QString candidateBlock(const JudgeCandidate &candidate);

/// The same lines for a topic the user decided on, then what they did with it. At most 600
/// characters of its text.
QString exampleBlock(const Topic &topic);

/// What the user did with a topic, in English: "kept it", "set it aside: not for them", "useful",
/// "a gem, worth it", then their own score when they corrected it.
QString outcomeText(const Topic &topic);

/// The decided or corrected topics shown to the judge: corrected ones first, then the most recent,
/// 12 at most, and no more than fit into the examples section.
QList<TopicPtr> exampleTopics(const QList<TopicPtr> &topics);

/// The profile as lines of English, each name and description held to its line, at most 16,000
/// bytes as promptSize counts them.
QString profileText(const JudgeProfile &profile);

/// What the lines of reflexes may take of a prompt, as promptSize counts.
inline constexpr qsizetype reflexBytes = 8'000;

/// A reflex's instruction as it stands in the prompt: one line, its break included.
QString reflexLine(const QString &instruction);

/// The instruction with @TODAY, @PROFILE, @REFLEXES, @EXAMPLES and @CANDIDATES replaced in one
/// pass, so that none of these words inside a page's text is ever taken for a placeholder. Without
/// any decision yet the examples section holds no block; it never takes more than 24,000
/// bytes, nor the reflexes more than `reflexBytes`.
QString judgePrompt(const QString &instruction, const QDate &today, const JudgeProfile &profile,
                    const QStringList &reflexLines, const QList<TopicPtr> &examples,
                    const QList<JudgeCandidate> &candidates);

} // namespace vorle
