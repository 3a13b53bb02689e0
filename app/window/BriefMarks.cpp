#include "app/window/BriefMarks.h"

#include "app/models/TopicListModel.h"
#include "briefs/BriefWriter.h"

#include <QHash>

#include <utility>

namespace vorle {

BriefMarks::BriefMarks(const BriefWriter &briefs, QList<TopicListModel *> lists)
    : m_briefs(briefs), m_lists(std::move(lists)) {
    connect(&briefs, &BriefWriter::queueChanged, this, &BriefMarks::show);
    connect(&briefs, &BriefWriter::writingChanged, this, &BriefMarks::show);
    connect(&briefs, &BriefWriter::failedChanged, this, &BriefMarks::show);
}

void BriefMarks::show() {
    QHash<QUuid, QString> states;
    for (const QUuid &id : m_briefs.failed()) {
        states[id] = QStringLiteral("failed");
    }
    for (const QUuid &id : m_briefs.queue()) {
        states[id] = QStringLiteral("queued");
    }
    if (m_briefs.writing()) {
        states[*m_briefs.writing()] = QStringLiteral("writing");
    }
    QSet<QUuid> told = m_told;
    m_told = {states.keyBegin(), states.keyEnd()};
    for (const QUuid &id : told.unite(m_told)) {
        for (TopicListModel *list : std::as_const(m_lists)) {
            list->setBriefState(id, states.value(id));
        }
    }
}

} // namespace vorle
