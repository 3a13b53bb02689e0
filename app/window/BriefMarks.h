#pragma once

#include <QList>
#include <QObject>
#include <QSet>
#include <QUuid>

namespace vorle {

class BriefWriter;
class TopicListModel;

/// Shows on the cards how far their topics' reading notes are. Main thread; what it is given
/// outlives it.
class BriefMarks final : public QObject {
    Q_OBJECT

public:
    BriefMarks(const BriefWriter &briefs, QList<TopicListModel *> lists);

private:
    void show();

    const BriefWriter &m_briefs;
    QList<TopicListModel *> m_lists;
    QSet<QUuid> m_told; // whose card shows something
};

} // namespace vorle
