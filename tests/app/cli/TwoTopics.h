#pragma once

#include "tests/core/Samples.h"
#include "tests/support/Program.h"

#include <gtest/gtest.h>

namespace vorle::test {

/// Two topics to sort, named as their identifiers begin: AB11 and AB22.
inline QList<Topic> twoTopics() {
    QList<Topic> list;
    for (const char *id :
         {"AB110000-0000-4000-8000-000000000001", "AB220000-0000-4000-8000-000000000002"}) {
        Topic topic = sampleTopic(QString::fromLatin1(id).left(4));
        topic.id = QUuid(QString::fromLatin1(id));
        topic.readLevel = ReadLevel::Full;
        list += topic;
    }
    return list;
}

/// The program on these two.
class TwoTopics : public testing::Test {
protected:
    TwoTopics() { vorle.save(twoTopics()); }

    Program vorle;
};

} // namespace vorle::test
