#pragma once

#include "app/models/BadgeLook.h"
#include "core/TopicStore.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// A topic with what its list knows of it: what its card and its page show, worded. A value, that
/// stays as it was when the store changes; each text is made when it is asked for. What is not
/// there is empty. Main thread.
class TopicCard {
    Q_GADGET
    QML_VALUE_TYPE(topicCard)
    /// The topic's identity, "" of a card without a topic: all else is then empty too.
    Q_PROPERTY(QString topicId READ topicId FINAL)
    Q_PROPERTY(QString title READ title FINAL)
    /// The one text that says what it is about.
    Q_PROPERTY(QString gist READ gist FINAL)
    Q_PROPERTY(QString summary READ summary FINAL)
    Q_PROPERTY(QString why READ why FINAL)
    Q_PROPERTY(QString firstStep READ firstStep FINAL)
    /// List of NamedText: what changes, each with its sort.
    Q_PROPERTY(QVariantList changes READ changes FINAL)
    Q_PROPERTY(QString risks READ risks FINAL)
    /// The project, else the interest; of a link that waits to be judged, who brought it.
    Q_PROPERTY(QString subject READ subject FINAL)
    /// "Sécurité · 20 min · lu en partie · il y a 2 jours": of how it was read, what is unusual.
    Q_PROPERTY(QString facts READ facts FINAL)
    /// The same for a closed card, which has the day apart: "Sécurité · 20 min · github.com"
    Q_PROPERTY(QString closedFacts READ closedFacts FINAL)
    /// What who listens is told of it beside title and score: "Nouveau. Tiravue, faille, 15 min, il
    /// y a 2 jours. Un nom de fichier forgé permettait…"
    Q_PROPERTY(QString told READ told FINAL)
    /// When it came out: "il y a 2 jours". Of a link that waits, when it was captured.
    Q_PROPERTY(QString dateText READ dateText FINAL)
    /// It came since the person was last here.
    Q_PROPERTY(bool isNew READ isNew FINAL)
    /// "undici 7.12.0 → 7.18.1"; and its parts.
    Q_PROPERTY(QString versionText READ versionText FINAL)
    Q_PROPERTY(QString dependency READ dependency FINAL)
    Q_PROPERTY(QString currentVersion READ currentVersion FINAL)
    Q_PROPERTY(QString newVersion READ newVersion FINAL)
    /// "avant le 28 novembre", "à faire maintenant"; and with its reason, as a sentence.
    Q_PROPERTY(QString urgencyText READ urgencyText FINAL)
    Q_PROPERTY(QString urgencySentence READ urgencySentence FINAL)
    /// List of NamedLink; and the first one's site with how many more there are: "github.com  +2".
    Q_PROPERTY(QVariantList sources READ sources FINAL)
    Q_PROPERTY(QString sitesText READ sitesText FINAL)
    /// The first one's site alone.
    Q_PROPERTY(QString site READ site FINAL)
    Q_PROPERTY(QString note READ note FINAL)
    /// The user's verdict as it is kept: "meh", "useful", "gem" or "".
    Q_PROPERTY(QString worth READ worth FINAL)
    /// Of the reserve: see ReserveActivity. Of the program: it does not fit in the week.
    Q_PROPERTY(bool moved READ moved FINAL)
    Q_PROPERTY(bool waits READ waits FINAL)
    /// How far its reading notes are: "", "queued", "writing", "failed" or "written".
    Q_PROPERTY(QString briefState READ briefState FINAL)
    /// A captured link that is still being read, and why it could not be judged.
    Q_PROPERTY(bool pendingCapture READ pendingCapture FINAL)
    Q_PROPERTY(QString captureProblem READ captureProblem FINAL)
    /// The score's disc, and the app's own score where the user gave another, else -1.
    Q_PROPERTY(vorle::BadgeLook badge READ badge FINAL)
    Q_PROPERTY(int formerScore READ formerScore FINAL)

public:
    /// What the list knows of the topic beyond its record.
    struct Standing {
        QDate today;
        bool moved = false;
        bool waits = false;
        QString briefState = {};
        QString captureProblem = {};
        bool isNew = false; ///< see TopicListModel::setNewSince

        bool operator==(const Standing &) const = default;
    };

    TopicCard(); ///< without a topic
    TopicCard(TopicPtr topic, Standing standing);

    QString topicId() const;
    QString title() const;
    QString gist() const;
    QString summary() const;
    QString why() const;
    QString firstStep() const;
    QVariantList changes() const;
    QString risks() const;
    QString subject() const;
    QString facts() const;
    QString closedFacts() const;
    QString told() const;
    QString dateText() const;
    bool isNew() const { return m_standing.isNew; }
    QString versionText() const;
    QString dependency() const;
    QString currentVersion() const;
    QString newVersion() const;
    QString urgencyText() const;
    QString urgencySentence() const;
    QVariantList sources() const;
    QString sitesText() const;
    QString site() const;
    QString note() const;
    QString worth() const;
    bool moved() const { return m_standing.moved; }
    bool waits() const { return m_standing.waits; }
    QString briefState() const;
    bool pendingCapture() const;
    QString captureProblem() const;
    BadgeLook badge() const;
    int formerScore() const;

    /// The score shown: the user's own, rounded, else the judge's; nothing without either.
    std::optional<int> score() const;
    /// Why it can be dismissed and nothing else; "" when it may be decided.
    QString refusal() const;

    bool operator==(const TopicCard &) const = default;

private:
    QString kindText() const;
    QString captureText() const;
    QString effortText() const;
    QStringList unusual() const;

    TopicPtr m_topic; // never null
    Standing m_standing;
};

} // namespace vorle
