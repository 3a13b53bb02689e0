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
#include "core/KindLabel.h"
#include "core/NumberText.h"
#include "core/ScoreScale.h"
#include "search/web/Links.h"

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

/// The file in the picture cache kept for a link. Only a plain file name is believed.
QString pictureOf(const Topic &topic, const QString &link) {
    for (const Picture &picture : topic.gallery) {
        if (picture.url == link && !picture.file.isEmpty() &&
            QFileInfo(picture.file).fileName() == picture.file) {
            return picture.file;
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

/// Each on its own: what is not there leaves no sign.
QString joined(QStringList parts) {
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" · "));
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

QString TopicCard::subject() const {
    const QString subject = shown(subjectOf(*m_topic));
    return subject.isEmpty() && isBeingRead(*m_topic) ? French::tr("Capturé par toi") : subject;
}

QString TopicCard::facts() const {
    return topicId().isEmpty() ? QString()
                               : joined(QStringList{captureText(), kindText(), effortText()} +
                                        unusual() + QStringList{dateText()});
}

QString TopicCard::closedFacts() const {
    return topicId().isEmpty() ? QString()
                               : joined(QStringList{captureText(), kindText(), effortText()} +
                                        unusual() + QStringList{site()});
}

QString TopicCard::told() const {
    QStringList sentences{isNew() ? French::tr("Nouveau") : QString(),
                          moved() ? French::tr("A bougé") : QString(),
                          urgencyText(),
                          captureProblem(),
                          joined({subject(), facts()}),
                          gist()};
    sentences.removeAll(QString());
    for (QString &sentence : sentences) {
        sentence.replace(QStringLiteral(" · "), QStringLiteral(", "));
        sentence[0] = sentence[0].toUpper();
        if (sentence.endsWith(u'.')) {
            sentence.chop(1);
        }
    }
    return sentences.join(QStringLiteral(". "));
}

/// A topic without a kind is what its link most likely leads to.
QString TopicCard::kindText() const {
    if (isBeingRead(*m_topic)) {
        return {};
    }
    const QString kind = vorle::kindLabel(m_topic->kind);
    const TopicSource *source = m_topic->mainSource();
    return kind.isEmpty() && source != nullptr ? vorle::kindLabel(guessKind(source->url)) : kind;
}

QString TopicCard::captureText() const {
    if (!isBeingRead(*m_topic)) {
        return {};
    }
    return captureProblem().isEmpty() ? French::tr("je le lis…") : French::tr("pas encore jugé");
}

QString TopicCard::effortText() const {
    return isBeingRead(*m_topic) ? QString() : durationText(m_topic->minutes);
}

/// What most topics have nothing of.
QStringList TopicCard::unusual() const {
    const bool whole = isBeingRead(*m_topic) || m_topic->readLevel == ReadLevel::Full;
    return {whole ? QString() : readLevelLabel(m_topic->readLevel), postponedText(*m_topic),
            m_topic->worth ? worthLabel(*m_topic->worth) : QString()};
}

QString TopicCard::dateText() const {
    if (isBeingRead(*m_topic)) {
        return agoLabel(m_topic->foundAt.toLocalTime().date(), m_standing.today);
    }
    // A date in other words stays as it is.
    const QString written = shown(m_topic->publishedOn).simplified();
    const QDate day = QDate::fromString(written.left(10), Qt::ISODate);
    constexpr qsizetype most = 24;
    return day.isValid() ? agoLabel(day, m_standing.today)
                         : firstCharacters(written, most).toString();
}

QString TopicCard::versionText() const {
    QStringList versions{currentVersion(), newVersion()};
    versions.removeAll(QString());
    QStringList words{dependency(), versions.join(QStringLiteral(" → "))};
    words.removeAll(QString());
    return words.join(u' ');
}

QString TopicCard::dependency() const { return shown(m_topic->dependency); }

QString TopicCard::currentVersion() const { return shown(m_topic->currentVersion); }

QString TopicCard::newVersion() const { return shown(m_topic->newVersion); }

QString TopicCard::urgencyText() const { return urgencyLabel(m_topic->urgency, m_standing.today); }

QString TopicCard::urgencySentence() const {
    return shown(vorle::urgencySentence(m_topic->urgency, m_standing.today));
}

QVariantList TopicCard::sources() const { return sourcesOf(*m_topic); }

QString TopicCard::site() const {
    const TopicSource *source = m_topic->mainSource();
    return source == nullptr ? QString() : WebLink::site(QUrl(source->url), QUrl::PrettyDecoded);
}

QString TopicCard::sitesText() const {
    const qsizetype more = m_topic->sources.size() - 1;
    return site() + (more > 0 ? QStringLiteral("  +%1").arg(more) : QString());
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
