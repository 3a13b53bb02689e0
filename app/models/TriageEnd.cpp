#include "app/models/TriageEnd.h"

#include "app/labels/Wording.h"
#include "app/models/BadgeLook.h"
#include "app/models/ListParts.h"
#include "core/DurationText.h"
#include "core/ScoreScale.h"

#include <algorithm>
#include <functional>

namespace vorle {

namespace {

QVariantList badgesOf(const QList<QUuid> &ids, const TopicStore &store) {
    QList<std::optional<int>> scores;
    for (const QUuid &id : ids) {
        if (const TopicPtr topic = store.topic(id)) {
            scores += shownScore(*topic);
        }
    }
    std::ranges::sort(scores, std::greater());
    QList<BadgeLook> badges;
    for (const std::optional<int> score : scores) {
        badges += BadgeLook::of(score);
    }
    return variants(badges);
}

} // namespace

TriageEnd::TriageEnd(TopicStore &store, TopicListModel &inbox, Decisions &decisions,
                     QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_inbox(inbox)
    , m_sitting(decisions.history())
    , m_empty(inbox.count() == 0) {
    connect(&inbox, &TopicListModel::countChanged, this, &TriageEnd::follow);
    // Told after the list has changed.
    connect(&decisions.history(), &DecisionHistory::stepsChanged, this, &TriageEnd::count);
}

void TriageEnd::follow() {
    const bool empty = m_inbox.count() == 0;
    if (empty == m_empty) {
        return;
    }
    m_empty = empty;
    if (!empty) {
        QList<QUuid> ids;
        for (const TopicPtr &topic : m_inbox.topics()) {
            ids += topic->id;
        }
        m_sitting.filled(ids);
    }
    count();
}

void TriageEnd::count() {
    QString text;
    QList<SortedGroup> groups;
    if (m_empty) {
        const TriageSitting::Tally tally = m_sitting.tally();
        QStringList parts;
        const auto add = [&](const QList<QUuid> &ids, const QString &one, const QString &many) {
            if (!ids.isEmpty()) {
                parts += counted(ids.size(), one, many);
                groups.append({ids.size() == 1 ? one : many, parts.last(), badgesOf(ids, m_store)});
            }
        };
        add(tally.kept, tr("gardé"), tr("gardés"));
        add(tally.later, tr("plus tard"), tr("plus tard"));
        add(tally.dismissed, tr("écarté"), tr("écartés"));
        const auto minutes = static_cast<int>(tally.seconds / 60);
        const QString topics = countedTopics(tally.count());
        const QString span =
            minutes > 0 ? tr("%1 en %2").arg(topics, durationText(minutes)) : topics;
        text = parts.isEmpty() ? QString()
                               : tr("%1\u00A0: %2").arg(span, parts.join(QStringLiteral(", ")));
    }
    const QVariantList shown = variants(groups);
    if (text != m_text || shown != m_groups) {
        m_text = text;
        m_groups = shown;
        Q_EMIT changed();
    }
}

} // namespace vorle
