#include "app/window/desktop/RunNotices.h"

#include "app/models/TopicListModel.h"
#include "core/ScoreScale.h"
#include "core/TopicOrder.h"
#include "desktop/Notifier.h"
#include "search/run/SearchEngine.h"

#include <algorithm>

namespace vorle {

RunNotices::RunNotices(Parts parts, QObject *parent) : QObject(parent), m_parts(parts) {
    connect(&parts.engine, &SearchEngine::finished, this, &RunNotices::runEnded);
    connect(&parts.engine, &SearchEngine::failed, this, [this](const RunFailure &failure) {
        m_parts.notifier.runFailed(failureNotice(failure).text);
    });
    const auto remind = [this] {
        m_parts.notifier.scheduleWeeklyReminder(m_parts.program.count());
    };
    connect(&parts.program, &TopicListModel::countChanged, this, remind);
    remind();
}

void RunNotices::stop() { disconnect(&m_parts.engine, nullptr, this, nullptr); }

void RunNotices::runEnded(const RunReport &report) {
    QList<TopicPtr> brought;
    for (const QUuid &id : report.topicIds) {
        const TopicPtr topic = m_parts.store.topic(id);
        if (topic && topic->status == TopicStatus::Inbox) {
            brought += topic;
        }
    }
    if (brought.isEmpty()) {
        return;
    }
    const TopicPtr best = *std::ranges::min_element(brought, [](const auto &a, const auto &b) {
        return inboxOrder(*a, tierOf(*a), *b, tierOf(*b));
    });
    m_parts.notifier.topicsReady(
        {.count = static_cast<int>(brought.size()),
         .others = m_parts.store.topics(TopicStatus::Inbox).size() > brought.size(),
         .urgent = std::ranges::any_of(brought, [](const auto &each) { return each->isUrgent(); }),
         .title = best->title,
         .score = shownScore(*best)});
}

} // namespace vorle
