#include "app/models/TopicCard.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "app/triage/Gist.h"
#include "base/French.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "core/Corrections.h"
#include "core/DurationText.h"
#include "core/NumberText.h"
#include "core/ScoreScale.h"
#include "search/web/SourceImage.h"

#include <QFileInfo>
#include <QUrl>

#include <memory>

namespace vorle {

namespace {

QString text(const std::optional<QString> &value) { return value.value_or(QString()); }

/// Words that a page or the agent wrote.
QString shown(const QString &words) { return shownWords(words); }
QString shown(const std::optional<QString> &words) { return shownWords(text(words)); }

QVariantList changesOf(const Topic &topic) {
    QList<NamedText> list;
    for (const QString &change : topic.changes.value_or(QList<QString>())) {
        list.append({.name = changeLabel(change), .text = shown(change), .failed = false});
    }
    return variants(list);
}

/// The file: address of the picture kept for a link. Only a plain file name is believed.
QString pictureOf(const Topic &topic, const QString &link) {
    for (const Picture &picture : topic.gallery) {
        if (picture.url == link && !picture.file.isEmpty() &&
            QFileInfo(picture.file).fileName() == picture.file) {
            return QUrl::fromLocalFile(SourceImage::defaultCacheFolder() + u'/' + picture.file)
                .toString();
        }
    }
    return {};
}

QVariantList sourcesOf(const Topic &topic) {
    QList<NamedLink> list;
    for (const TopicSource &source : topic.sources) {
        list.append({.name = shown(source.displayName()),
                     .url = source.url,
                     .address = WebLink::shown(source.url),
                     .picture = pictureOf(topic, source.url),
                     .adds = {}});
    }
    return variants(list);
}

/// "undici 7.12.0 → 7.18.1", or what of it is known.
QString versionsOf(const Topic &topic) {
    QStringList versions;
    for (const auto &version : {topic.currentVersion, topic.newVersion}) {
        if (version && !version->isEmpty()) {
            versions += shown(*version);
        }
    }
    QString words = versions.join(QStringLiteral(" → "));
    if (topic.dependency && !topic.dependency->isEmpty()) {
        const QString name = shown(*topic.dependency);
        words = words.isEmpty() ? name : name + u' ' + words;
    }
    return words;
}

QString postponedText(const Topic &topic) {
    return topic.postponedCount > 0
               ? French::tr("reporté %1 fois").arg(numberText(topic.postponedCount))
               : QString();
}

/// A card without a topic is that of one without words.
const TopicPtr &nothing() {
    static const TopicPtr topic = std::make_shared<const Topic>();
    return topic;
}

} // namespace

TopicCard::TopicCard() : m_topic(nothing()) {}

TopicCard::TopicCard(TopicPtr topic, Standing standing)
    : m_topic(std::move(topic)), m_standing(std::move(standing)) {}

QString TopicCard::topicId() const {
    return m_topic->id.isNull() ? QString() : identityText(m_topic->id);
}

QString TopicCard::title() const { return shown(m_topic->title); }

QString TopicCard::gist() const { return shown(gistOf(*m_topic)); }

QString TopicCard::summary() const { return shown(m_topic->summary); }

QString TopicCard::why() const { return shown(m_topic->why); }

QString TopicCard::firstStep() const { return shown(m_topic->firstStep); }

QVariantList TopicCard::changes() const { return changesOf(*m_topic); }

QString TopicCard::risks() const { return shown(m_topic->risks); }

QString TopicCard::subject() const { return shown(subjectOf(*m_topic)); }

QString TopicCard::facts() const {
    if (topicId().isEmpty()) {
        return {};
    }
    const bool judged = !isBeingRead(*m_topic);
    QStringList facts{captureText(),
                      kindLabel(m_topic->kind),
                      judged ? durationText(m_topic->minutes) : QString(),
                      publishedText(),
                      judged ? readLevelLabel(m_topic->readLevel) : QString(),
                      postponedText(*m_topic),
                      m_topic->worth ? worthLabel(*m_topic->worth) : QString()};
    facts.removeAll(QString());
    return facts.join(QStringLiteral("   ·   "));
}

QString TopicCard::captureText() const {
    if (!isBeingRead(*m_topic)) {
        return {};
    }
    return captureProblem().isEmpty() ? French::tr("lien capturé, en lecture…")
                                      : French::tr("lien capturé, pas encore jugé");
}

/// "12 novembre"; a date in other words as it is.
QString TopicCard::publishedText() const {
    const QString written = shown(m_topic->publishedOn).simplified();
    const QDate day = QDate::fromString(written.left(10), Qt::ISODate);
    constexpr qsizetype most = 24;
    return day.isValid() ? dayLabel(day, m_standing.today)
                         : firstCharacters(written, most).toString();
}

QString TopicCard::versionText() const { return versionsOf(*m_topic); }

QString TopicCard::urgencyText() const { return urgencyLabel(m_topic->urgency, m_standing.today); }

QString TopicCard::urgencySentence() const {
    return shown(vorle::urgencySentence(m_topic->urgency, m_standing.today));
}

QVariantList TopicCard::sources() const { return sourcesOf(*m_topic); }

QString TopicCard::sitesText() const {
    const TopicSource *source = m_topic->mainSource();
    const qsizetype more = m_topic->sources.size() - 1;
    return source == nullptr ? QString()
                             : WebLink::site(QUrl(source->url), QUrl::PrettyDecoded) +
                                   (more > 0 ? QStringLiteral("  +%1").arg(more) : QString());
}

QString TopicCard::note() const { return text(m_topic->note); }

QString TopicCard::worth() const {
    return m_topic->worth ? json::rawText(*m_topic->worth) : QString();
}

QString TopicCard::briefState() const {
    return m_standing.briefState.isEmpty() && m_topic->brief ? QStringLiteral("written")
                                                             : m_standing.briefState;
}

bool TopicCard::pendingCapture() const { return isBeingRead(*m_topic); }

QString TopicCard::captureProblem() const {
    return isBeingRead(*m_topic) ? m_standing.captureProblem : QString();
}

QString TopicCard::refusal() const {
    const auto refused = vorle::refusal(*m_topic, TopicStatus::Program);
    return refused ? refusalText(*refused, m_standing.captureProblem.isEmpty() ? Reading::UnderWay
                                                                               : Reading::Stopped)
                   : QString();
}

std::optional<int> TopicCard::score() const {
    return topicId().isEmpty() || isBeingRead(*m_topic) ? std::nullopt : shownScore(*m_topic);
}

BadgeLook TopicCard::badge() const { return BadgeLook::of(score()); }

int TopicCard::formerScore() const { return standingScore(*m_topic).former.value_or(-1); }

} // namespace vorle
