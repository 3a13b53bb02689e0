#pragma once

#include "app/models/TopicListModel.h"
#include "tests/core/Samples.h"

#include <QAbstractItemModelTester>
#include <QStringList>

namespace vorle::test {

/// What a view makes of a list's signals alone; the platform's own checks run beside it.
class Watched {
public:
    explicit Watched(TopicListModel &model)
        : m_model(model), m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal) {
        for (int row = 0; row < model.count(); ++row) {
            seen += model.topicIdAt(row);
        }
        QObject::connect(&model, &TopicListModel::rowsInserted, &m_tester,
                         [this](const QModelIndex &, int first, int last) {
                             for (int row = first; row <= last; ++row) {
                                 seen.insert(row, m_model.topicIdAt(row));
                             }
                         });
        QObject::connect(&model, &TopicListModel::rowsRemoved, &m_tester,
                         [this](const QModelIndex &, int first, int last) {
                             seen.remove(first, last - first + 1);
                         });
        QObject::connect(&model, &TopicListModel::rowsMoved, &m_tester,
                         [this](const QModelIndex &, int from, int, const QModelIndex &, int to) {
                             seen.move(from, to > from ? to - 1 : to);
                             ++moves;
                         });
        QObject::connect(&model, &TopicListModel::modelReset, &m_tester, [this] { ++resets; });
        QObject::connect(&model, &TopicListModel::dataChanged, &m_tester, [this] { ++changes; });
    }

    QStringList seen;
    int moves = 0;
    int resets = 0;
    int changes = 0;

private:
    TopicListModel &m_model;
    QAbstractItemModelTester m_tester;
};

/// A store in memory with the four lists over it.
struct Shelf {
    Shelf() {
        for (Section section :
             {Section::Inbox, Section::Program, Section::Reserve, Section::Library}) {
            lists.push_back(std::make_unique<TopicListModel>(store, section, clock));
        }
    }

    QString add(Topic topic) {
        return store.add({std::move(topic)}).first().toString(QUuid::WithoutBraces).toUpper();
    }
    TopicPtr topic(const QString &id) const { return store.topic(QUuid::fromString(id)); }
    TopicListModel &list(Section section) const {
        return *lists[static_cast<std::size_t>(section)];
    }
    QStringList titles(Section section) const {
        QStringList all;
        for (const TopicPtr &topic : list(section).topics()) {
            all += topic->title;
        }
        return all;
    }

    FixedClock clock;
    TopicStore store{QString(), Resources(), clock};
    std::vector<std::unique_ptr<TopicListModel>> lists;
};

} // namespace vorle::test
