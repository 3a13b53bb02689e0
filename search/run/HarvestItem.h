#pragma once

#include "core/RunReport.h"
#include "search/run/TopicDraft.h"

namespace vorle {

/// One scope's word for a link, and what the page turned out to be to that scope.
struct Proposal {
    Candidate candidate;
    qsizetype report = 0; ///< the scope's index in the report
    const PlannedScope *planned =
        nullptr; ///< none for a trusted site's item about nothing declared
    std::optional<QString> publishedOn;
    std::optional<QString> site;           ///< the trusted site whose feed it was kept from
    std::optional<QString> currentVersion; ///< of the dependency it is about, once read
    std::optional<QString> newVersion;
};

/// One page of a run on its way to a topic, whoever brought it and under whatever address.
struct HarvestItem {
    enum class Stage {
        Reading,
        Taken,    ///< judged, being judged, or left without a judgment
        OldNews,  ///< for all who brought it; one to whom it is news takes it up again
        Elsewhere ///< another item, or a topic, has the page and all that this one brought
    };

    QString url;                     ///< the address that is read, the topic's main one
    QList<Proposal> proposals;       ///< never empty; the first one makes the card
    QList<TopicSource> otherSources; ///< the same page under other addresses
    ReadPage page;
    Stage stage = Stage::Reading;
    std::optional<QUuid> topic; ///< once judged
    bool dugFor = false;        ///< a readable page was looked for in its place
    bool isLeft = false;        ///< the agent reached its limit before it was judged

    HarvestItem(Candidate candidate, QList<Proposal> brought)
        : url(candidate.url), proposals(std::move(brought)) {}

    /// What the agent is told of the item at `index` in the harvest: "c1" for the first.
    static QString identifier(qsizetype index) { return u'c' + QString::number(index + 1); }
    /// The index behind an identifier; -1 for any other text.
    static qsizetype indexOf(const QString &identifier);

    const Candidate &candidate() const { return proposals.first().candidate; }
    bool isUnread() const { return page.level == ReadLevel::None; }

    /// Every address it is known by.
    QList<TopicSource> sources() const;
    /// Takes in what others brought of this page.
    void join(QList<Proposal> more, const QList<TopicSource> &addresses);
    /// `address` becomes the main one; the present one stays among the sources.
    void moveTo(const QString &address);

    /// Those to whom the page is news, with the versions read on it; and why it is none to the
    /// others: a release that is not newer than what their project uses.
    struct News {
        QList<Proposal> fresh;
        QList<DroppedLink> old;
    };
    News news() const;
    /// Leaves those to whom the page is no news, unless they are all.
    void keepFresh();

    /// The topic, without the moment it was found and its origin.
    Topic topicFor(const Judgment &judgment) const;
    /// Ties a topic to all it was brought for.
    void attachToTerritory(Topic &tied) const;
};

} // namespace vorle
