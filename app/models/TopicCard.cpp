#include "app/models/TopicCard.h"

#include "app/labels/DecisionLabels.h"
#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/CardParts.h"
#include "app/models/TopicListModel.h"
#include "base/French.h"
#include "base/Text.h"
#include "base/WebLink.h"
#include "core/Corrections.h"
#include "core/DurationText.h"
#include "core/NumberText.h"
#include "core/ScoreScale.h"
#include "search/web/SourceImage.h"

#include <QFileInfo>
#include <QTimeZone>
#include <QUrl>

#include <array>

namespace vorle {

namespace {

QString text(const std::optional<QString> &value) { return value.value_or(QString()); }

/// Words that a page or the agent wrote.
QString shown(const QString &words) { return shownWords(words); }
QString shown(const std::optional<QString> &words) { return shownWords(text(words)); }

QString hostOf(const QString &address) {
    const QString host = QUrl(address).host();
    return host.startsWith(QStringLiteral("www.")) ? host.sliced(4) : host;
}

QVariantList changesOf(const Topic &topic) {
    QList<NamedText> list;
    for (const QString &change : topic.changes.value_or(QList<QString>())) {
        list.append({.name = changeLabel(change), .text = shown(change)});
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
QString versionText(const Topic &topic) {
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

/// "12 novembre"; a date in other words as it is.
QString publishedText(const TopicCard &card) {
    const QString written = shown(card.topic.publishedOn).simplified();
    const QDate day = QDate::fromString(written.left(10), Qt::ISODate);
    constexpr qsizetype most = 24;
    return day.isValid() ? dayLabel(day, card.now.toLocalTime().date())
                         : firstCharacters(written, most).toString();
}

QString postponedText(const Topic &topic) {
    return topic.postponedCount > 0
               ? French::tr("reporté %1 fois").arg(numberText(topic.postponedCount))
               : QString();
}

QString captureText(const TopicCard &card) {
    if (!isBeingRead(card.topic)) {
        return {};
    }
    return card.captureProblem.isEmpty() ? French::tr("lien capturé, en lecture…")
                                         : French::tr("lien capturé, pas encore jugé");
}

QString refusalOf(const TopicCard &card) {
    const auto refused = refusal(card.topic, TopicStatus::Program);
    return refused ? refusalText(*refused, card.captureProblem.isEmpty() ? Reading::UnderWay
                                                                         : Reading::Stopped)
                   : QString();
}

using Role = TopicListModel::Role;
using Card = const TopicCard &;

struct RoleValue {
    int role;
    QVariant (*value)(const TopicCard &card);
};

/// One line a role, in the order of TopicListModel::Role; Section is the model's own.
constexpr RoleValue roleValues[] = {
    {Role::TopicId, [](Card c) -> QVariant { return identityText(c.topic.id); }},
    {Role::Section, [](Card) -> QVariant { return QString(); }},
    {Role::Title, [](Card c) -> QVariant { return shown(c.topic.title); }},
    {Role::Tldr, [](Card c) -> QVariant { return shown(c.topic.tldr); }},
    {Role::Summary, [](Card c) -> QVariant { return shown(c.topic.summary); }},
    {Role::Gist,
     [](Card c) -> QVariant {
         return c.topic.summary.isEmpty() ? shown(c.topic.tldr) : shown(c.topic.summary);
     }},
    {Role::Why, [](Card c) -> QVariant { return shown(c.topic.why); }},
    {Role::FirstStep, [](Card c) -> QVariant { return shown(c.topic.firstStep); }},
    {Role::Changes, [](Card c) -> QVariant { return changesOf(c.topic); }},
    {Role::Risks, [](Card c) -> QVariant { return shown(c.topic.risks); }},
    {Role::Place,
     [](Card c) -> QVariant { return shown(c.topic.project.value_or(text(c.topic.interest))); }},
    {Role::Project, [](Card c) -> QVariant { return shown(c.topic.project); }},
    {Role::Interest, [](Card c) -> QVariant { return shown(c.topic.interest); }},
    {Role::KindLabel, [](Card c) -> QVariant { return kindLabel(c.topic.kind); }},
    {Role::Minutes, [](Card c) -> QVariant { return c.topic.minutes; }},
    {Role::MinutesText,
     [](Card c) -> QVariant {
         return isBeingRead(c.topic) ? QString() : durationText(c.topic.minutes);
     }},
    {Role::ReadLevelText,
     [](Card c) -> QVariant {
         return isBeingRead(c.topic) ? QString() : readLevelLabel(c.topic.readLevel);
     }},
    {Role::HasScore, [](Card c) -> QVariant { return c.score().has_value(); }},
    {Role::Score, [](Card c) -> QVariant { return c.score().value_or(0); }},
    {Role::Digits, [](Card c) -> QVariant { return scoreBadge(c.score()).digits; }},
    {Role::FormerScore,
     [](Card c) -> QVariant { return standingScore(c.topic).former.value_or(-1); }},
    {Role::AccentLight,
     [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).accent.light); }},
    {Role::AccentDark,
     [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).accent.dark); }},
    {Role::InkLight, [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).ink.light); }},
    {Role::InkDark, [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).ink.dark); }},
    {Role::FillLight,
     [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).fill.light); }},
    {Role::FillDark, [](Card c) -> QVariant { return qtColour(scoreBadge(c.score()).fill.dark); }},
    {Role::Filled, [](Card c) -> QVariant { return scoreBadge(c.score()).filled; }},
    {Role::Gem, [](Card c) -> QVariant { return scoreBadge(c.score()).gem; }},
    {Role::AccessibleName,
     [](Card c) -> QVariant { return shown(scoreBadge(c.score()).accessibleName); }},
    {Role::TierNumber, [](Card c) -> QVariant { return static_cast<int>(tierOf(c.topic)); }},
    {Role::TierLabel, [](Card c) -> QVariant { return tierLabel(tierOf(c.topic)); }},
    {Role::Urgent, [](Card c) -> QVariant { return c.topic.isUrgent(); }},
    {Role::UrgencyText,
     [](Card c) -> QVariant { return urgencyLabel(c.topic.urgency, c.now.toLocalTime().date()); }},
    {Role::UrgencySentence,
     [](Card c) -> QVariant {
         return shown(urgencySentence(c.topic.urgency, c.now.toLocalTime().date()));
     }},
    {Role::Sources, [](Card c) -> QVariant { return sourcesOf(c.topic); }},
    {Role::MainUrl,
     [](Card c) -> QVariant {
         return c.topic.mainSource() == nullptr ? QString() : c.topic.mainSource()->url;
     }},
    {Role::MainSite,
     [](Card c) -> QVariant {
         return c.topic.mainSource() == nullptr ? QString() : hostOf(c.topic.mainSource()->url);
     }},
    {Role::VersionText, [](Card c) -> QVariant { return versionText(c.topic); }},
    {Role::PublishedOn, [](Card c) -> QVariant { return publishedText(c); }},
    {Role::FoundText,
     [](Card c) -> QVariant {
         return dayText(c.topic.foundAt, c.now, QTimeZone::systemTimeZone());
     }},
    {Role::Note, [](Card c) -> QVariant { return text(c.topic.note); }},
    {Role::Worth,
     [](Card c) -> QVariant { return c.topic.worth ? json::rawText(*c.topic.worth) : QString(); }},
    {Role::WorthLabel,
     [](Card c) -> QVariant { return c.topic.worth ? worthLabel(*c.topic.worth) : QString(); }},
    {Role::PostponedText, [](Card c) -> QVariant { return postponedText(c.topic); }},
    {Role::Moved, [](Card c) -> QVariant { return c.moved; }},
    {Role::Waits, [](Card c) -> QVariant { return c.waits; }},
    {Role::HasBrief, [](Card c) -> QVariant { return c.topic.brief.has_value(); }},
    {Role::BriefState,
     [](Card c) -> QVariant {
         return c.briefState.isEmpty() && c.topic.brief ? QStringLiteral("written") : c.briefState;
     }},
    {Role::PendingCapture, [](Card c) -> QVariant { return isBeingRead(c.topic); }},
    {Role::CaptureProblem,
     [](Card c) -> QVariant { return isBeingRead(c.topic) ? c.captureProblem : QString(); }},
    {Role::CaptureText, [](Card c) -> QVariant { return captureText(c); }},
    {Role::Refusal, [](Card c) -> QVariant { return refusalOf(c); }},
};

constexpr bool standInOrder() {
    int next = Role::TopicId;
    for (const RoleValue &entry : roleValues) {
        if (entry.role != next++) {
            return false;
        }
    }
    return next == Role::Refusal + 1;
}
static_assert(standInOrder(), "a role is its place in the table");

} // namespace

QVariant TopicCard::value(int role) const {
    return role >= Role::TopicId && role <= Role::Refusal
               ? roleValues[role - Role::TopicId].value(*this)
               : QVariant();
}

std::optional<int> TopicCard::score() const {
    return isBeingRead(topic) ? std::nullopt : shownScore(topic);
}

} // namespace vorle
