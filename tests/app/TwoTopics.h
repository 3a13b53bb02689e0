#pragma once

#include "tests/core/Samples.h"
#include "tests/support/Program.h"

#include <gtest/gtest.h>

namespace vorle::test {

/// The program on two topics to sort, whose identifiers begin with AB11 and AB22.
class TwoTopics : public testing::Test {
protected:
    TwoTopics() {
        QList<Topic> list;
        for (const char *id : {first, second}) {
            Topic topic = sampleTopic(QString::fromLatin1(id).left(4));
            topic.id = QUuid(QString::fromLatin1(id));
            topic.readLevel = ReadLevel::Full;
            list += topic;
        }
        vorle.save(list);
    }

    static constexpr auto first = "AB110000-0000-4000-8000-000000000001";
    static constexpr auto second = "AB220000-0000-4000-8000-000000000002";
    Program vorle;
};

} // namespace vorle::test
