#include "search/run/SearchScope.h"

#include "agents/Ask.h"
#include "agents/PromptText.h"
#include "base/WebLink.h"

namespace vorle {

namespace {

// Sizes kept under the longest argument Linux accepts (131,071 bytes), with room for the
// instruction itself and for what its author adds to it.
constexpr qsizetype manifestBytes = 80'000;

// Names come from folders, bundles and files: each keeps to its line.
constexpr qsizetype nameCharacters = 200;
constexpr qsizetype descriptionCharacters = 2'000;

QString name(const QString &text) { return oneLine(text, nameCharacters); }

QString description(const QString &text) { return oneLine(text, descriptionCharacters); }

QStringList names(QStringList texts) {
    for (QString &text : texts) {
        text = name(text);
    }
    return texts;
}

QString bulleted(QStringList lines) {
    constexpr qsizetype weightCharacters = 20;
    for (QString &line : lines) {
        line = oneLine(line, nameCharacters + weightCharacters);
    }
    return QStringLiteral("- ") + lines.join(QStringLiteral("\n- "));
}

struct ScopeWriter {
    QString operator()(const CodeProject &project) const {
        QString text =
            QStringLiteral("Project watched: **") + name(project.name) + QStringLiteral("**");
        if (project.description && !project.description->isEmpty()) {
            text += QStringLiteral(", ") + description(*project.description);
        }
        return text + QStringLiteral(". Its dependency file `") + project.manifestName +
               QStringLiteral("` is below. Work out which parts matter most, then look for news on "
                              "those dependencies, their tooling, and the project's field."
                              "\n\n") +
               fencedForPrompt(project.manifestText);
    }

    QString operator()(const PlainProject &project) const {
        QString text =
            QStringLiteral("Project watched: **") + name(project.name) + QStringLiteral("**");
        if (!project.description.isEmpty()) {
            text += QStringLiteral(", ") + description(project.description);
        }
        return text + QStringLiteral(". It may not be code. Look for what would help it move "
                                     "forward: news in its field, tools, methods, examples of "
                                     "similar projects.");
    }

    QString operator()(const DeclaredInterests &interests) const {
        QStringList blocks;
        if (!interests.topics.isEmpty()) {
            blocks += QStringLiteral(
                          "Topics the person follows (weight 1 to 5, 5 matters most). Search each "
                          "one on its own and bring back at least one link for every topic, more "
                          "for the heavier ones. A topic far from their job counts as much as the "
                          "others: they chose it.\n") +
                      bulleted(interests.topics);
        }
        if (!interests.tools.isEmpty()) {
            blocks += QStringLiteral("Tools they told me they use: ") +
                      names(interests.tools).join(QStringLiteral(", ")) +
                      QStringLiteral(". Look for what is new in them: features, versions, ways of "
                                     "using them.");
        }
        if (!interests.apps.isEmpty()) {
            blocks += QStringLiteral("Apps on their Mac, as context on how they work, not topics "
                                     "to search for their own sake: ") +
                      names(interests.apps).join(QStringLiteral(", ")) + QStringLiteral(".");
        }
        return blocks.join(QStringLiteral("\n\n"));
    }

    QString operator()(const EmptyTopics &empty) const {
        return QStringLiteral(
                   "Topics the person follows that a first search came back empty on. There is "
                   "always news on a living topic: look where its community talks, not only in "
                   "the press. Community sites and forums, Reddit, Discord or forum recaps, "
                   "YouTube videos, patch notes and official blogs, newsletters, case studies, "
                   "practitioners' posts. Search in English and in the language the topic is "
                   "written in. Bring at least two links for every topic below.\n") +
               bulleted(empty.topics);
    }
};

/// The whole lines of `text` that fit in `maxBytes`; a first line longer than that is cut.
QString wholeLines(const QString &text, qsizetype maxBytes) {
    const QStringView fitting = promptPrefix(text, maxBytes);
    if (fitting.size() == text.size()) {
        return text;
    }
    const qsizetype lineEnd = fitting.lastIndexOf(u'\n');
    return (lineEnd > 0 ? fitting.first(lineEnd) : fitting).toString();
}

} // namespace

QString scopeText(const SearchScope &scope) { return std::visit(ScopeWriter{}, scope); }

QString topicLine(const QString &topic, int weight) {
    return name(topic) + QStringLiteral(" (weight ") + QString::number(weight) + u')';
}

QString radiusSentence(int level) {
    if (level <= 0) {
        return QStringLiteral(
            "Stay strictly on what this person already uses or names (listed dependencies, tools, "
            "the subject itself): no alternatives, no neighbouring tools.");
    }
    if (level == 1) {
        return QStringLiteral(
            "What they already use or name first; you may add a direct alternative or a "
            "neighbouring tool or approach when it changes something for them.");
    }
    return QStringLiteral(
        "What they already use or name first; you may add one or two further topics (a new "
        "approach, an emerging tool) when they could really serve them.");
}

QString stayOnTopicSentence() { return QStringLiteral("Stay on the topic itself."); }

QString radiusText(const QString &sentence, const QStringList &exclusions,
                   const QStringList &trustedSites) {
    QString text = sentence;
    if (!exclusions.isEmpty()) {
        text += QStringLiteral(" Never use these sites or folders as a source: ") +
                names(exclusions).join(QStringLiteral(", ")) + u'.';
    }
    if (!trustedSites.isEmpty()) {
        text += QStringLiteral(" The person trusts these sites: look there first (search them with "
                               "site:), then widen to the rest of the web: ") +
                names(trustedSites).join(QStringLiteral(", ")) + u'.';
    }
    return text;
}

QString joinedLinks(const QStringList &links, qsizetype maxBytes) {
    const QString separator = QStringLiteral(" ; ");
    QString joined;
    qsizetype used = 0;
    for (const QString &known : links) {
        // An older file may hold what is none; the user's own may be long.
        const auto held = WebLink::from(known, WebLink::Giver::User);
        if (!held) {
            continue;
        }
        const QString &link = held->text();
        used += promptSize(link) + (joined.isEmpty() ? 0 : separator.size());
        if (used > maxBytes) {
            break;
        }
        joined += (joined.isEmpty() ? QString() : separator) + link;
    }
    return joined;
}

QString candidatesPrompt(const QString &instruction, const SearchScope &scope,
                         const CandidatesRequest &request, std::optional<qsizetype> maxBytes) {
    SearchScope fitted = scope;
    if (auto *project = std::get_if<CodeProject>(&fitted); project != nullptr && maxBytes) {
        project->manifestText = wholeLines(project->manifestText, manifestBytes);
    }
    const QString withoutKnown =
        fillTemplate(instruction, {{QStringLiteral("@TODAY"), promptDate(request.today)},
                                   {QStringLiteral("@SINCE"), promptDate(request.since)},
                                   {QStringLiteral("@SCOPE"), scopeText(fitted)},
                                   {QStringLiteral("@COUNT"), QString::number(request.count)},
                                   {QStringLiteral("@RADIUS"), request.radius}});
    // A manifest may hold the placeholder too: the links are shared out among all its places.
    const QString placeholder = QStringLiteral("@KNOWN");
    const qsizetype times = std::max<qsizetype>(1, withoutKnown.count(placeholder));
    const qsizetype room =
        maxBytes ? std::min(*maxBytes, promptBytes) - promptSize(withoutKnown) : knownBytes;
    const QString known = joinedLinks(request.knownLinks, std::min(room, knownBytes) / times);
    return fillTemplate(withoutKnown,
                        {{placeholder, known.isEmpty() ? QStringLiteral("none") : known}});
}

} // namespace vorle
