#include "app/window/TopicPage.h"

#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "app/window/pictures/PictureFile.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "briefs/BriefWriter.h"
#include "core/ScoreScale.h"

namespace vorle {

namespace {

/// Words and code in turn, as the fences part them. Code is copied: its blanks stay as they are.
QList<ReadingPart> piecesOf(const Brief::Part &part) {
    static const QString fence = QStringLiteral("```");
    QList<ReadingPart> pieces;
    QStringList lines;
    bool code = part.title == codePartTitle();
    const auto end = [&] {
        const QString body = lines.join(u'\n');
        if (!body.trimmed().isEmpty() || (pieces.isEmpty() && !code)) {
            pieces.append({.title = pieces.isEmpty() ? shownWords(part.title) : QString(),
                           .body = code ? withoutHidden(body) : shownWords(body.trimmed()),
                           .code = code});
        }
        lines.clear();
    };
    for (const QString &line : part.body.split(u'\n')) {
        if (line.trimmed().startsWith(fence)) {
            end();
            code = !code;
        } else {
            lines += line;
        }
    }
    end();
    // A title alone stands over the code that follows it.
    if (pieces.size() > 1 && pieces[0].body.isEmpty()) {
        const QString title = pieces.takeFirst().title;
        pieces.first().title = title;
    }
    return pieces;
}

QVariantList partList(const QList<Brief::Part> &parts) {
    QList<ReadingPart> list;
    for (const Brief::Part &part : parts) {
        list += piecesOf(part);
    }
    return variants(list);
}

/// The first of its pictures that a page can be headed by.
QString bannerOf(const Topic &topic) {
    for (const Picture &picture : topic.gallery) {
        const QString path = keptPicturePath(picture.file);
        if (keptPictureSort(path) == PictureSort::Banner && canShowPicture(path)) {
            return picture.file;
        }
    }
    return {};
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
    const bool other = id != m_id;
    const TopicPtr before = m_topic;
    const ScoreExplanation score = m_score;
    m_id = id;
    m_topic = m_store.topic(id);
    if (other) {
        m_banner = m_topic ? bannerOf(*m_topic) : QString();
    }
    m_score = m_topic ? openScore(*m_topic, m_provenance.of(id), m_clock.now().toLocalTime().date())
                      : ScoreExplanation();
    m_seenText.reset();
    Q_EMIT topicChanged();
    if (other || briefOf(before) != briefOf(m_topic)) {
        Q_EMIT briefChanged();
    }
    if (other || score.grades != m_score.grades || score.facts != m_score.facts) {
        Q_EMIT scoreChanged();
    }
    Q_EMIT briefFailureChanged();
}

QString TopicPage::seenText() const {
    if (!m_seenText) {
        m_seenText =
            m_topic ? withoutHidden(QString::fromUtf8(m_topic->seenText.value_or(QByteArray())))
                    : QString();
    }
    return *m_seenText;
}

QVariantList TopicPage::grades() const {
    QList<NamedGrade> list;
    for (const ScoreExplanation::Grade &grade : m_score.grades) {
        list.append({grade.label, grade.grade});
    }
    return variants(list);
}

QString TopicPage::gradesText() const {
    QStringList grades;
    for (const ScoreExplanation::Grade &grade : m_score.grades) {
        grades += grade.label.toLower() + u' ' + QString::number(grade.grade);
    }
    return grades.join(QStringLiteral(" · "));
}

QString TopicPage::scoreText() const {
    const auto score = m_topic ? shownScore(*m_topic) : std::nullopt;
    return score ? tr("%1 sur 10").arg(*score) : QString();
}

QVariantList TopicPage::facts() const {
    QList<NamedText> list;
    for (const ScoreExplanation::Fact &fact : m_score.facts) {
        list.append({.name = fact.label, .text = shownWords(fact.text), .failed = false});
    }
    return variants(list);
}

std::optional<Brief> TopicPage::briefOf(const TopicPtr &topic) {
    return topic ? topic->brief : std::nullopt;
}

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
