#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace vorle {

/// What one agent call looks for news about.
struct CodeProject {
    QString name;
    std::optional<QString> description;
    QString manifestName; ///< the dependency file's name, as "package.json"
    QString manifestText;
};

/// A watched project that is not code, or whose folder holds no dependency file known here.
struct PlainProject {
    QString name;
    QString description;
};

/// The declared topics (each with its weight, see topicLine), tools and apps, together.
struct DeclaredInterests {
    QStringList topics;
    QStringList tools;
    QStringList apps;
};

/// Declared topics that a first search came back empty on.
struct EmptyTopics {
    QStringList topics;
};

using SearchScope = std::variant<CodeProject, PlainProject, DeclaredInterests, EmptyTopics>;

/// The English text that presents the scope to the agent.
QString scopeText(const SearchScope &scope);

/// "topic (weight 4)", weight 1 to 5.
QString topicLine(const QString &topic, int weight);

/// How far from the territory a search may go: the sentence of a level from 0 (only what they
/// use) to 2 (a few discoveries); a level below 0 acts as 0, one above 2 as 2.
QString radiusSentence(int level);

/// The sentence that stands in the place of the level's for the declared topics.
QString stayOnTopicSentence();

/// `sentence`, then the excluded sites and folders, then the trusted sites, each part only when
/// its list is not empty.
QString radiusText(const QString &sentence, const QStringList &exclusions,
                   const QStringList &trustedSites);

/// What fills the candidates instruction besides the scope.
struct CandidatesRequest {
    QDate today;
    QDate since;
    int count = 8;
    QString radius;
    QStringList knownLinks; ///< newest first
};

/// The size of a prompt, in bytes of UTF-8, at which known links stop being listed for an agent
/// that takes only so much.
inline constexpr qsizetype promptBytes = 100'000;

/// What known links may take of any prompt, whatever the agent: each call pays for them, and what
/// comes back all the same is known by its link.
inline constexpr qsizetype knownBytes = 30'000;

/// As many links, in order, what is none (see WebLink) apart, as fit in `maxBytes` with the " ; "
/// between them.
QString joinedLinks(const QStringList &links, qsizetype maxBytes);

/// The instruction with its placeholders replaced one after the other, in their fixed order
/// (@TODAY, @SINCE, @SCOPE, @COUNT, @RADIUS, @KNOWN), every occurrence.
///
/// `maxBytes` is the size an agent accepts in UTF-8, or nothing when any size goes. Under a limit
/// the manifest of a code project is cut at the end of a line past 80,000 bytes, and known links
/// are listed until the prompt takes 100,000 bytes. They never take more than `knownBytes`.
QString candidatesPrompt(const QString &instruction, const SearchScope &scope,
                         const CandidatesRequest &request, std::optional<qsizetype> maxBytes);

} // namespace vorle
