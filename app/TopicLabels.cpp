#include "app/TopicLabels.h"

#include "core/KindLabel.h"

#include <QCoreApplication>
#include <QLocale>

namespace vorle {

namespace {

QString tr(const char *text) { return QCoreApplication::translate("TopicLabels", text); }

} // namespace

QString kindLabel(const std::optional<QString> &kind) {
    const auto known = json::fromRaw<ItemKind>(kind.value_or(QString()));
    return known ? kindLabel(*known) : QString();
}

QString readLevelLabel(std::optional<ReadLevel> level) {
    switch (level.value_or(ReadLevel::None)) {
    case ReadLevel::Full:
        return tr("lu en entier");
    case ReadLevel::Seen:
        return tr("lu en partie");
    case ReadLevel::Meta:
        return tr("titre et description seuls");
    case ReadLevel::None:
        return tr("pas lu");
    }
    return {};
}

QString statusLabel(TopicStatus status) {
    switch (status) {
    case TopicStatus::Pending:
        return tr("En attente");
    case TopicStatus::Inbox:
        return tr("À trier");
    case TopicStatus::Program:
        return tr("Programme");
    case TopicStatus::Reserve:
        return tr("Réserve");
    case TopicStatus::Done:
        return tr("Bibliothèque");
    case TopicStatus::Dismissed:
        return tr("Pas pour moi");
    }
    return {};
}

QString durationLabel(int minutes) {
    if (minutes < 60) {
        return tr("%1 min").arg(minutes);
    }
    return minutes % 60 == 0
               ? tr("%1 h").arg(minutes / 60)
               : tr("%1 h %2").arg(minutes / 60).arg(minutes % 60, 2, 10, QChar(u'0'));
}

QString urgencyLabel(const std::optional<Judgment::Urgency> &urgency, const QDate &today) {
    if (!urgency || urgency->level == Judgment::Urgency::Level::None) {
        return {};
    }
    const QDate date = QDate::fromString(urgency->date.value_or(QString()), Qt::ISODate);
    if (!date.isValid()) {
        return urgency->level == Judgment::Urgency::Level::Now ? tr("maintenant") : QString();
    }
    const QString format =
        date.year() == today.year() ? QStringLiteral("MMMM") : QStringLiteral("MMMM yyyy");
    const QLocale french(QLocale::French, QLocale::France);
    const QString day = date.day() == 1 ? tr("1er") : QString::number(date.day());
    const QString deadline = tr("avant le %1 %2").arg(day, french.toString(date, format));
    return urgency->level == Judgment::Urgency::Level::Now ? tr("maintenant, %1").arg(deadline)
                                                           : deadline;
}

} // namespace vorle
