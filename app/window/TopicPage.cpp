#include "app/window/TopicPage.h"

#include "app/labels/Wording.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "briefs/BriefWriter.h"

namespace vorle {

namespace {

QVariantList partList(const QList<Brief::Part> &parts) {
    QVariantList list;
    for (const Brief::Part &part : parts) {
        // Code is copied: its blanks stay as they are.
        const bool code = part.title == codePartTitle();
        list += QVariantMap{
            {QStringLiteral("title"), shownWords(part.title)},
            {QStringLiteral("body"), code ? withoutHidden(part.body) : shownWords(part.body)},
            {QStringLiteral("code"), code}};
    }
    return list;
}

} // namespace

TopicPage::TopicPage(TopicStore &store, ScoreProvenanceLog &notes, BriefWriter &briefs,
                     const Clock &clock, QObject *parent)
    : QObject(parent), m_store(store), m_notes(notes), m_briefs(briefs), m_clock(clock) {
    connect(&briefs, &BriefWriter::failedChanged, this, &TopicPage::briefFailureChanged);
    connect(&store, &TopicStore::topicChanged, this, [this](const QUuid &id) {
        if (id == m_id && !id.isNull()) {
            take(id);
        }
    });
}

QString TopicPage::topicId() const {
    return m_id.isNull() ? QString() : m_id.toString(QUuid::WithoutBraces);
}

void TopicPage::setTopicId(const QString &topicId) {
    const QUuid id = QUuid::fromString(topicId);
    if (id == m_id) {
        return;
    }
    take(id);
}

void TopicPage::take(const QUuid &id) {
    m_id = id;
    m_topic = m_store.topic(id);
    m_score = m_topic ? openScore(*m_topic, m_notes.note(id), m_clock.now().toLocalTime().date())
                      : ScoreExplanation();
    Q_EMIT topicChanged();
    Q_EMIT briefFailureChanged();
}

QString TopicPage::seenText() const {
    return m_topic ? withoutHidden(QString::fromUtf8(m_topic->seenText.value_or(QByteArray())))
                   : QString();
}

QVariantList TopicPage::grades() const {
    QVariantList list;
    for (const ScoreExplanation::Grade &grade : m_score.grades) {
        list += QVariantMap{{QStringLiteral("name"), grade.label},
                            {QStringLiteral("grade"), grade.grade}};
    }
    return list;
}

QVariantList TopicPage::facts() const {
    QVariantList list;
    for (const ScoreExplanation::Fact &fact : m_score.facts) {
        list += QVariantMap{{QStringLiteral("label"), fact.label},
                            {QStringLiteral("text"), shownWords(fact.text)}};
    }
    return list;
}

QVariantMap TopicPage::brief() const {
    const Brief brief = hasBrief() ? *m_topic->brief : Brief();
    QVariantList sources;
    for (const Brief::Source &source : brief.sources) {
        sources += QVariantMap{{QStringLiteral("title"), shownWords(source.title)},
                               {QStringLiteral("url"), source.url},
                               {QStringLiteral("address"), WebLink::shown(source.url)},
                               {QStringLiteral("adds"), shownWords(source.adds)}};
    }
    QStringList unclear;
    for (const QString &point : brief.unclear) {
        unclear += shownWords(point);
    }
    return {{QStringLiteral("essentials"), partList(brief.essentials)},
            {QStringLiteral("details"), partList(brief.details)},
            {QStringLiteral("project"), shownWords(brief.project.value_or(QString()))},
            {QStringLiteral("unclear"), unclear},
            {QStringLiteral("sources"), sources}};
}

QString TopicPage::briefFailure() const { return shownWords(m_briefs.failureText(m_id)); }

void TopicPage::askBrief() {
    if (m_topic) {
        m_briefs.ask(m_id);
    }
}

} // namespace vorle
