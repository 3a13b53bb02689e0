#pragma once

#include "core/RunReport.h"
#include "search/run/RunFailure.h"

#include <QObject>

namespace vorle {

class Notifier;
class SearchEngine;
class TopicListModel;
class TopicStore;

/// Tells the notifier what the app's runs came to, and how many kept topics wait. Main thread; what
/// it is given outlives it.
class RunNotices final : public QObject {
    Q_OBJECT
public:
    struct Parts {
        Notifier &notifier;
        SearchEngine &engine;
        const TopicStore &store;
        const TopicListModel &program;
    };
    explicit RunNotices(Parts parts, QObject *parent = nullptr);

    /// Runs that end from now on are not told: the app is leaving.
    void stop();

private:
    void runEnded(const RunReport &report);

    Parts m_parts;
};

} // namespace vorle
