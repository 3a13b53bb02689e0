#pragma once

#include "app/labels/ScoreExplanation.h"
#include "base/Clock.h"
#include "core/TopicStore.h"

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vorle {

class BriefWriter;

/// What the enlarged card shows of one topic beyond its row in the list: its reading notes, the
/// text that was read, how its score came about. Computed when the topic is chosen or changes.
/// Main thread; the store outlives it.
class TopicPage final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The topic shown; "" for none.
    Q_PROPERTY(QString topicId READ topicId WRITE setTopicId NOTIFY topicChanged FINAL)
    /// The picture at the head of its page: a file of the picture cache, "" for none. What was
    /// there when the topic was chosen: one that comes later would push away what is being read.
    Q_PROPERTY(QString banner READ banner NOTIFY topicChanged FINAL)
    Q_PROPERTY(QString seenText READ seenText NOTIFY topicChanged FINAL)
    /// List of NamedGrade: the judge's four grades; empty when it gave none.
    Q_PROPERTY(QVariantList grades READ grades NOTIFY scoreChanged FINAL)
    /// List of NamedText: what else stood behind the score.
    Q_PROPERTY(QVariantList facts READ facts NOTIFY scoreChanged FINAL)
    /// Why the last try at reading notes failed, in the agent's own words; "" when it did not.
    Q_PROPERTY(QString briefFailure READ briefFailure NOTIFY briefFailureChanged FINAL)
    /// Whether its score is the user's own.
    Q_PROPERTY(bool corrected READ corrected NOTIFY topicChanged FINAL)
    Q_PROPERTY(bool hasBrief READ hasBrief NOTIFY briefChanged FINAL)
    /// The judge's grades on one line, and the score they come to ("8 sur 10"); "" without.
    Q_PROPERTY(QString gradesText READ gradesText NOTIFY topicChanged FINAL)
    Q_PROPERTY(QString scoreText READ scoreText NOTIFY topicChanged FINAL)
    /// The reading notes: lists of ReadingPart, what they say for the project, what stays unclear,
    /// and a list of NamedLink; all empty without any.
    Q_PROPERTY(QVariantList essentials READ essentials NOTIFY briefChanged FINAL)
    Q_PROPERTY(QVariantList parts READ parts NOTIFY briefChanged FINAL)
    Q_PROPERTY(QString forProject READ forProject NOTIFY briefChanged FINAL)
    Q_PROPERTY(QString unclear READ unclear NOTIFY briefChanged FINAL)
    Q_PROPERTY(QVariantList briefSources READ briefSources NOTIFY briefChanged FINAL)

public:
    /// `provenance`, `briefs` and `clock` outlive it, as the store does. What is asked of it is
    /// asked of `briefs`.
    TopicPage(TopicStore &store, ScoreProvenanceLog &provenance, BriefWriter &briefs,
              const Clock &clock, QObject *parent = nullptr);

    QString topicId() const;
    void setTopicId(const QString &topicId);
    QString banner() const { return m_banner; }
    QString seenText() const;
    QVariantList grades() const;
    QString gradesText() const;
    QString scoreText() const;
    QVariantList facts() const;
    bool corrected() const { return m_topic && m_topic->correction.has_value(); }
    bool hasBrief() const { return m_topic && m_topic->brief.has_value(); }
    QString briefFailure() const;
    QVariantList essentials() const;
    QVariantList parts() const;
    QString forProject() const;
    QString unclear() const;
    QVariantList briefSources() const;

    /// Asks for reading notes of the topic shown.
    Q_INVOKABLE void askBrief();

Q_SIGNALS:
    void topicChanged();
    /// Lists are told only where they are others: what shows them is made anew, and words that are
    /// marked in it, or a button that has the keyboard, would go.
    void briefChanged();
    void scoreChanged();
    void briefFailureChanged();

private:
    void take(const QUuid &id);
    Brief brief() const { return briefOf(m_topic).value_or(Brief()); }
    static std::optional<Brief> briefOf(const TopicPtr &topic);

    TopicStore &m_store;
    ScoreProvenanceLog &m_provenance;
    BriefWriter &m_briefs;
    const Clock &m_clock;
    QUuid m_id;
    TopicPtr m_topic;
    mutable std::optional<QString> m_seenText; // once it was asked for
    QString m_banner;
    ScoreExplanation m_score;
};

} // namespace vorle
