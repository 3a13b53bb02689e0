#pragma once

#include "core/Brief.h"
#include "core/Judgment.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUuid>

#include <memory>
#include <optional>

namespace vorle {

/// Where a topic stands.
enum class TopicStatus {
    Pending,  ///< judged or captured, not yet released for triage
    Inbox,    ///< "À trier"
    Program,  ///< "Programme"
    Reserve,  ///< "Réserve"
    Done,     ///< "Bibliothèque"
    Dismissed ///< "pas pour moi": kept for learning
};
constexpr std::array<std::string_view, 6> rawStrings(TopicStatus) {
    return {"pending", "inbox", "program", "reserve", "done", "dismissed"};
}

/// The user's verdict once a topic is done.
enum class Worth { Meh, Useful, Gem };
constexpr std::array<std::string_view, 3> rawStrings(Worth) { return {"meh", "useful", "gem"}; }

/// What brought a topic in.
enum class Origin {
    Stack,      ///< a watched project
    List,       ///< the declared topics
    Surface,    ///< a trusted site's feed
    Suggestion, ///< the second search of topics that came back empty
    Capture     ///< the user's own link
};
constexpr std::array<std::string_view, 5> rawStrings(Origin) {
    return {"stack", "list", "surface", "suggestion", "capture"};
}

/// One link of a topic. The address is kept as the text it came as.
struct TopicSource {
    QString title;
    QString url;
    json::Rest unknown = {}; ///< keys of a later version

    /// The repository ("owner/repo") for a link to GitHub or its raw-content host; else the page
    /// title; "Source" when nothing better is known.
    QString displayName() const;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &TopicSource::title),
                          json::field("url", &TopicSource::url));
    }
    static constexpr auto jsonRest() { return &TopicSource::unknown; }
    bool operator==(const TopicSource &) const = default;
};

size_t qHash(const TopicSource &source, size_t seed = 0);

/// One picture of a topic's sources: where it was found and its file in the picture cache.
struct Picture {
    QString url;
    QString file;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("url", &Picture::url), json::field("file", &Picture::file));
    }
    static constexpr auto jsonRest() { return &Picture::unknown; }
    bool operator==(const Picture &) const = default;
};

/// The user's own score for a topic.
struct Correction {
    double score = 0; ///< 0 to 10
    QList<QString> tags;
    QString text;
    QDateTime at;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("score", &Correction::score), json::field("tags", &Correction::tags),
            json::field("text", &Correction::text), json::field("at", &Correction::at));
    }
    static constexpr auto jsonRest() { return &Correction::unknown; }
    bool operator==(const Correction &) const = default;
};

/// One subject that a run brought back or the user captured, with its judgment, its sources, its
/// place in the user's week and its history. The record of the topics file.
struct Topic {
    QUuid id;
    QString title;
    int score = 0; ///< 0 to 10; 0 when nothing could be read
    QList<Picture> gallery;
    std::optional<QString> project;
    std::optional<QString> interest;
    int minutes = 0;
    std::optional<QString> kind; ///< normally an ItemKind's raw string
    QString summary;
    QString why;
    QString firstStep;
    std::optional<QList<QString>> changes;
    std::optional<QString> risks;
    std::optional<QString> tldr;
    std::optional<ReadLevel> readLevel;
    std::optional<Judgment::Urgency> urgency;
    std::optional<Judgment::Criteria> criteria;
    std::optional<Correction> correction;
    std::optional<QString> dependency;
    std::optional<QString> currentVersion;
    std::optional<QString> newVersion;
    std::optional<QString> publishedOn;
    QList<TopicSource> sources; ///< the first is the main one
    TopicStatus status = TopicStatus::Inbox;
    int postponedCount = 0;
    QDateTime foundAt;
    std::optional<QDateTime> triagedAt;
    std::optional<QDateTime> doneAt;
    std::optional<Worth> worth;
    std::optional<QString> capturedURL;
    std::optional<QString> note;
    /// The source's text as it was read, in UTF-8: up to 8,000 characters a topic, rarely shown,
    /// so it is never turned into UTF-16 for nothing.
    std::optional<QByteArray> seenText;
    std::optional<Brief> brief;
    std::optional<Origin> origin;
    /// When another program handed the link over, which is a stranger's then: it may not lead to
    /// this machine. Goes once the link is judged.
    std::optional<QDateTime> sharedAt;
    json::Rest unknown = {}; ///< keys of a later version: they survive a save

    /// The first source, or nothing when the topic has none.
    const TopicSource *mainSource() const { return sources.isEmpty() ? nullptr : &sources.first(); }

    /// To be dealt with before the others: the judge said "now"; or, for a topic without that
    /// word, a score of 9 or more on a kind that speaks of a flaw ("faille") or a break ("casse").
    bool isUrgent() const;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("id", &Topic::id), json::field("title", &Topic::title),
            json::field("score", &Topic::score), json::field("gallery", &Topic::gallery),
            json::field("project", &Topic::project), json::field("interest", &Topic::interest),
            json::field("minutes", &Topic::minutes), json::field("kind", &Topic::kind),
            json::field("summary", &Topic::summary), json::field("why", &Topic::why),
            json::field("firstStep", &Topic::firstStep), json::field("changes", &Topic::changes),
            json::field("risks", &Topic::risks), json::field("tldr", &Topic::tldr),
            json::field("readLevel", &Topic::readLevel), json::field("urgency", &Topic::urgency),
            json::field("criteria", &Topic::criteria),
            json::field("correction", &Topic::correction),
            json::field("dependency", &Topic::dependency),
            json::field("currentVersion", &Topic::currentVersion),
            json::field("newVersion", &Topic::newVersion),
            json::field("publishedOn", &Topic::publishedOn),
            json::field("sources", &Topic::sources), json::field("status", &Topic::status),
            json::field("postponedCount", &Topic::postponedCount),
            json::field("foundAt", &Topic::foundAt), json::field("triagedAt", &Topic::triagedAt),
            json::field("doneAt", &Topic::doneAt), json::field("worth", &Topic::worth),
            json::field("capturedURL", &Topic::capturedURL), json::field("note", &Topic::note),
            json::field("seenText", &Topic::seenText), json::field("brief", &Topic::brief),
            json::field("origin", &Topic::origin), json::field("sharedAt", &Topic::sharedAt));
    }
    static constexpr auto jsonRest() { return &Topic::unknown; }
    bool operator==(const Topic &) const = default;
};

size_t qHash(const Topic &topic, size_t seed = 0);

/// A topic as the store hands it out: shared, never changed. A change of the topic makes a new
/// one, so what is held stays as it was.
using TopicPtr = std::shared_ptr<const Topic>;

/// Whether it is a captured link that was not judged yet. What the judge makes of it will stand in
/// its place, so until then it can be dismissed and nothing else.
bool isBeingRead(const Topic &topic);

/// Whether it is a captured link that was never judged: it is being read, or it was dismissed
/// before it was. It can be dismissed, or be put back to be read, and nothing else: there is
/// nothing to decide on.
bool isUnjudgedCapture(const Topic &topic);

/// The label a person sees for one change of a topic, from the words in it, capital or not:
/// a flaw before a break, a gain, a new interface. Empty when no word is recognised.
QString changeLabel(const QString &change);

} // namespace vorle

// Lets QList move whole records as bytes when it grows.
Q_DECLARE_TYPEINFO(vorle::TopicSource, Q_RELOCATABLE_TYPE);
Q_DECLARE_TYPEINFO(vorle::Topic, Q_RELOCATABLE_TYPE);
