#include "app/window/TopicPage.h"

#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "briefs/BriefWriter.h"

namespace vorle {

namespace {

QVariantList partList(const QList<Brief::Part> &parts) {
    QList<ReadingPart> list;
    for (const Brief::Part &part : parts) {
        // Code is copied: its blanks stay as they are.
        const bool code = part.title == codePartTitle();
        list.append({.title = shownWords(part.title),
                     .body = code ? withoutHidden(part.body) : shownWords(part.body),
                     .code = code});
    }
    return variants(list);
}

} // namespace

TopicPage::TopicPage(TopicStore &store, ScoreProvenanceLog &provenance, BriefWriter &briefs,
                     const Clock &clock, QObject *parent)
    : QObject(parent), m_store(store), m_provenance(provenance), m_briefs(briefs), m_clock(clock) {
    connect(&briefs, &BriefWriter::failedChanged, this, &TopicPage::briefFailureChanged);
    connect(&store, &TopicStore::topicChanged, this, [this](const QUuid &id) {
        if (id == m_id && !id.isNull()) {
            take(id);
        }
    });
}

QString TopicPage::topicId() const { return m_id.isNull() ? QString() : identityText(m_id); }

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
    m_score = m_topic ? openScore(*m_topic, m_provenance.of(id), m_clock.now().toLocalTime().date())
                      : ScoreExplanation();
    Q_EMIT topicChanged();
    Q_EMIT briefFailureChanged();
}

QString TopicPage::seenText() const {
    return m_topic ? withoutHidden(QString::fromUtf8(m_topic->seenText.value_or(QByteArray())))
                   : QString();
}

QVariantList TopicPage::grades() const {
    QList<NamedGrade> list;
    for (const ScoreExplanation::Grade &grade : m_score.grades) {
        list.append({grade.label, grade.grade});
    }
    return variants(list);
}

QVariantList TopicPage::facts() const {
    QList<NamedText> list;
    for (const ScoreExplanation::Fact &fact : m_score.facts) {
        list.append({.name = fact.label, .text = shownWords(fact.text), .failed = false});
    }
    return variants(list);
}

Brief TopicPage::brief() const { return hasBrief() ? *m_topic->brief : Brief(); }

QVariantList TopicPage::essentials() const { return partList(brief().essentials); }

QVariantList TopicPage::parts() const { return partList(brief().details); }

QString TopicPage::forProject() const { return shownWords(brief().project.value_or(QString())); }

QString TopicPage::unclear() const {
    QStringList points;
    for (const QString &point : brief().unclear) {
        points += shownWords(point);
    }
    return points.join(u'\n');
}

QVariantList TopicPage::briefSources() const {
    QList<NamedLink> list;
    for (const Brief::Source &source : brief().sources) {
        list.append({.name = shownWords(source.title),
                     .url = source.url,
                     .address = WebLink::shown(source.url),
                     .picture = {},
                     .adds = shownWords(source.adds)});
    }
    return variants(list);
}

QString TopicPage::briefFailure() const { return shownWords(m_briefs.failureText(m_id)); }

void TopicPage::askBrief() {
    if (m_topic) {
        m_briefs.ask(m_id);
    }
}

} // namespace vorle
