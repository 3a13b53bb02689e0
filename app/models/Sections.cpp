#include "app/models/Sections.h"

#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/CardButton.h"
#include "base/FrenchSpacing.h"
#include "core/DurationText.h"
#include "core/NumberText.h"

#include <algorithm>

namespace vorle {

namespace {

QVariant button(const QString &text, KeyboardMap::Action action, bool primary = false) {
    return QVariant::fromValue(
        CardButton{.text = text, .keys = {}, .action = action, .primary = primary, .worth = {}});
}

/// ", 47 min de lecture"; nothing for no time at all.
QString readingTime(int minutes) {
    return minutes <= 0 ? QString() : Sections::tr(", %1 de lecture").arg(durationText(minutes));
}

} // namespace

Sections::Sections(Parts parts, QObject *parent)
    : QAbstractListModel(parent), m_parts(std::move(parts)) {
    for (TopicListModel *list :
         {&m_parts.inbox, &m_parts.program, &m_parts.reserve, &m_parts.library}) {
        follow(*list);
    }
    connect(&m_parts.budget, &ProgramBudget::changed, this, &Sections::scheduleTextsChanged);
    connect(&m_parts.run, &RunModel::scheduleChanged, this, &Sections::scheduleTextsChanged);
    connect(&m_parts.run, &RunModel::runningChanged, this, &Sections::scheduleTextsChanged);
    connect(&m_parts.preferences, &Preferences::changed, this, &Sections::scheduleTextsChanged);
}

void Sections::follow(TopicListModel &list) {
    connect(&list, &TopicListModel::countChanged, this, [this, &list] {
        m_recounted.set(static_cast<std::size_t>(list.section()));
        scheduleTextsChanged();
    });
    connect(&list, &TopicListModel::minutesChanged, this, &Sections::scheduleTextsChanged);
    connect(&list, &TopicListModel::movedCountChanged, this, &Sections::scheduleTextsChanged);
}

int Sections::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : sectionCount;
}

QVariant Sections::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto section = static_cast<Section>(index.row());
    switch (role) {
    case TitleRole:
        return title(section);
    case CountRole:
        return countOf(section);
    default:
        return {};
    }
}

QHash<int, QByteArray> Sections::roleNames() const {
    return {{TitleRole, "title"}, {CountRole, "count"}};
}

QString Sections::title(Section section) {
    switch (section) {
    case Section::Inbox:
        return statusLabel(TopicStatus::Inbox);
    case Section::Program:
        return statusLabel(TopicStatus::Program);
    case Section::Reserve:
        return statusLabel(TopicStatus::Reserve);
    case Section::Library:
        return statusLabel(TopicStatus::Done);
    case Section::Territory:
        return tr("Ton territoire");
    case Section::Report:
        return tr("Bilan");
    }
    return {};
}

TopicListModel *Sections::listOf(Section section) const {
    switch (section) {
    case Section::Inbox:
        return &m_parts.inbox;
    case Section::Program:
        return &m_parts.program;
    case Section::Reserve:
        return &m_parts.reserve;
    case Section::Library:
        return &m_parts.library;
    case Section::Territory:
    case Section::Report:
        break;
    }
    return nullptr;
}

int Sections::countOf(Section section) const {
    const TopicListModel *list = listOf(section);
    return list == nullptr ? 0 : list->count();
}

void Sections::setCurrent(Section section) {
    if (section != m_current && section >= Section::Inbox && section <= Section::Report) {
        Q_EMIT leaving();
        m_current = section;
        Q_EMIT currentChanged();
        Q_EMIT textsChanged();
    }
}

QString Sections::subtitle() const {
    const int count = countOf(m_current);
    const QString minutes = count == 0 ? QString() : readingTime(listOf(m_current)->minutes());
    switch (m_current) {
    case Section::Inbox:
        return count == 0 ? QString() : inboxSubtitle() + minutes;
    case Section::Program: {
        const ProgramText said = programText();
        return count == 0 ? QString() : (said.title + QStringLiteral(". ") + said.text).trimmed();
    }
    case Section::Reserve: {
        const int moved = m_parts.reserve.movedCount();
        const QString news = moved == 0   ? QString()
                             : moved == 1 ? tr(", 1 a bougé")
                                          : tr(", %1 ont bougé").arg(numberText(moved));
        return count == 0
                   ? QString()
                   : counted(count, tr("sujet mis de côté"), tr("sujets mis de côté")) + news;
    }
    case Section::Library:
        return count == 0 ? QString() : counted(count, tr("sujet terminé"), tr("sujets terminés"));
    case Section::Territory:
        return tr("Ce que je fouille pour toi");
    case Section::Report:
        return m_parts.run.lastRunText().isEmpty()
                   ? QString()
                   : tr("Dernière fouille %1").arg(m_parts.run.lastRunText());
    }
    return {};
}

/// One decision changes many things: they are told once, when it is over.
void Sections::scheduleTextsChanged() {
    if (!std::exchange(m_textsDue, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_textsDue = false;
                const auto recounted = std::exchange(m_recounted, {});
                for (int section = 0; section < sectionCount; ++section) {
                    if (recounted[static_cast<std::size_t>(section)]) {
                        Q_EMIT dataChanged(index(section), index(section), {CountRole});
                    }
                }
                Q_EMIT textsChanged();
            },
            Qt::QueuedConnection);
    }
}

/// Names the last run, and how many of the topics came with it.
QString Sections::inboxSubtitle() const {
    const auto &report = m_parts.preferences.settings().lastReport;
    const QString topics = countedTopics(m_parts.inbox.count());
    if (!report) {
        return topics;
    }
    constexpr qint64 leeway = 2; // moments are kept in whole seconds
    const QDateTime begun = report->date.addSecs(-static_cast<qint64>(report->seconds) - leeway);
    const int ofRun = m_parts.inbox.countFoundBetween(begun, report->date);
    if (ofRun == 0) {
        return topics;
    }
    const QString day = ofDayText(report->date, m_parts.clock.now(), m_parts.zone);
    return ofRun == m_parts.inbox.count()
               ? tr("%1 de la fouille %2").arg(topics, day)
               : tr("%1, dont %2 de la fouille %3").arg(topics, numberText(ofRun), day);
}

ProgramText Sections::programText() const { return m_parts.budget.text(m_parts.run.nextRunText()); }

QString Sections::emptyTitle() const {
    if (countOf(m_current) > 0) {
        return {};
    }
    switch (m_current) {
    case Section::Inbox:
        return m_parts.preferences.settings().lastSearch
                   ? tr("Tous les sujets de la fouille sont triés")
                   : tr("Rien à trier pour l’instant");
    case Section::Program:
        return programText().title;
    case Section::Reserve:
        return tr("Rien en réserve.");
    case Section::Library:
        return tr("Ta bibliothèque est vide.");
    default:
        return {};
    }
}

QString Sections::emptyText() const {
    if (countOf(m_current) > 0) {
        return {};
    }
    switch (m_current) {
    case Section::Inbox:
        return inboxEmptyText();
    case Section::Program:
        return programText().text;
    case Section::Reserve:
        return frenchSpacing(
            tr("Les sujets mis de côté avec « Plus tard » t’attendent ici. Je te les "
               "ressors quand ils bougent."));
    case Section::Library:
        return tr("Les sujets que tu termines dans ton programme viennent s’y ranger.");
    default:
        return {};
    }
}

QString Sections::inboxEmptyText() const {
    const QString next = m_parts.run.nextRunText();
    if (!m_parts.preferences.settings().lastSearch) {
        return tr("Ta première fouille remplira cette page.");
    }
    return next.isEmpty() ? tr("Tout est trié.")
                          : tr("Tout est trié. Prochaine fouille %1").arg(next);
}

/// The one thing that fills an empty section.
QVariant Sections::helpOf(Section section) const {
    const int inbox = countOf(Section::Inbox);
    const bool startsNow = m_parts.budget.finished() && m_parts.budget.left() > 0;
    if (section == Section::Library && countOf(Section::Program) > 0) {
        return button(tr("Voir le programme"), KeyboardMap::GoProgram, true);
    }
    if (inbox > 0 && !(section == Section::Program && startsNow)) {
        return button(tr("Trier %1").arg(countedTopics(inbox)), KeyboardMap::GoInbox, true);
    }
    if (section == Section::Program && m_parts.budget.finished() && !startsNow) {
        return button(tr("Voir la bibliothèque"), KeyboardMap::GoLibrary, true); // a full week
    }
    return button(m_parts.run.startLabel(), KeyboardMap::RunNow, true);
}

QVariantList Sections::emptyActions() const {
    if (listOf(m_current) == nullptr || countOf(m_current) > 0) {
        return {};
    }
    if (m_current == Section::Inbox && m_parts.preferences.settings().lastSearch) {
        return {button(tr("Voir le programme"), KeyboardMap::GoProgram, true),
                button(tr("Voir la réserve"), KeyboardMap::GoReserve)};
    }
    const QVariant help = helpOf(m_current);
    const bool searching =
        help.value<CardButton>().action == KeyboardMap::RunNow && m_parts.run.running();
    return searching ? QVariantList() : QVariantList{help};
}

} // namespace vorle
