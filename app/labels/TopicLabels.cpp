#include "app/labels/TopicLabels.h"

#include "base/French.h"
#include "base/FrenchLocale.h"
#include "base/Text.h"
#include "core/KindLabel.h"
#include "core/NumberText.h"

#include <QLocale>

namespace vorle {

QString kindLabel(const std::optional<QString> &kind) {
    const auto known = json::fromRaw<ItemKind>(kind.value_or(QString()));
    if (known) {
        return kindLabel(*known);
    }
    // Files from elsewhere may name a kind of their own: it is shown, held to a word or two.
    constexpr qsizetype most = 24;
    QString word =
        firstCharacters(withoutHidden(kind.value_or(QString())).simplified(), most).toString();
    if (!word.isEmpty()) {
        word[0] = word[0].toUpper();
    }
    return word;
}

QString readLevelLabel(std::optional<ReadLevel> level) {
    if (!level) {
        return {};
    }
    switch (*level) {
    case ReadLevel::Full:
        return French::tr("lu en entier");
    case ReadLevel::Seen:
        return French::tr("lu en partie");
    case ReadLevel::Meta:
        return French::tr("titre et description seuls");
    case ReadLevel::None:
        return French::tr("pas lu");
    }
    return {};
}

QString statusLabel(TopicStatus status) {
    switch (status) {
    case TopicStatus::Pending:
        return French::tr("En attente");
    case TopicStatus::Inbox:
        return French::tr("À trier");
    case TopicStatus::Program:
        return French::tr("Programme");
    case TopicStatus::Reserve:
        return French::tr("Réserve");
    case TopicStatus::Done:
        return French::tr("Bibliothèque");
    case TopicStatus::Dismissed:
        return French::tr("Pas pour moi");
    }
    return {};
}

QString dayLabel(const QDate &day, const QDate &today) {
    const QString format =
        day.year() == today.year() ? QStringLiteral("MMMM") : QStringLiteral("MMMM yyyy");
    return frenchDayNumber(day) + u' ' + frenchLocale().toString(day, format);
}

QString agoLabel(const QDate &day, const QDate &today) {
    constexpr qint64 month = 30;
    const qint64 days = day.daysTo(today);
    if (days < 0 || days > month) {
        return dayLabel(day, today);
    }
    return days == 0   ? French::tr("aujourd’hui")
           : days == 1 ? French::tr("hier")
                       : French::tr("il y a %1 jours").arg(days);
}

QString urgencyLabel(const std::optional<Judgment::Urgency> &urgency, const QDate &today) {
    if (!urgency || urgency->level == Judgment::Urgency::Level::None) {
        return {};
    }
    const QDate date = QDate::fromString(urgency->date.value_or(QString()), Qt::ISODate);
    if (!date.isValid()) {
        return urgency->level == Judgment::Urgency::Level::Now ? French::tr("à faire maintenant")
                                                               : QString();
    }
    const QString deadline = French::tr("avant le %1").arg(dayLabel(date, today));
    return urgency->level == Judgment::Urgency::Level::Now
               ? French::tr("à faire maintenant, %1").arg(deadline)
               : deadline;
}

QString urgencySentence(const std::optional<Judgment::Urgency> &urgency, const QDate &today) {
    QString said = urgencyLabel(urgency, today);
    if (said.isEmpty()) {
        return {};
    }
    said[0] = said[0].toUpper();
    QString reason = urgency->reason.value_or(QString()).trimmed();
    if (!reason.isEmpty()) {
        reason[0] = reason[0].toUpper();
        said += QStringLiteral(". ") + reason;
    }
    return said;
}

QString identityText(const QUuid &id) { return id.toString(QUuid::WithoutBraces).toUpper(); }

QString releasedText(qsizetype count) {
    return count == 1
               ? French::tr("1 sujet d’une fouille interrompue rejoint «\u202FÀ trier\u202F».")
               : French::tr("%1 sujets d’une fouille interrompue rejoignent «\u202FÀ trier\u202F».")
                     .arg(numberText(count));
}

QString repairedText(qsizetype kept, qsizetype entries) {
    const QString pattern =
        kept == 1 ? French::tr("%1 sujet repris sur %2.") : French::tr("%1 sujets repris sur %2.");
    return pattern.arg(numberText(kept), numberText(entries));
}

} // namespace vorle
