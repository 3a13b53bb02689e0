#pragma once

#include "core/TopicStore.h"
#include "tests/core/Samples.h"

#include <QDir>

#include <gtest/gtest.h>

namespace vorle::test {

/// A topics file in a folder of its own, opened as often as a test likes.
class StoreFixture : public testing::Test {
protected:
    std::unique_ptr<TopicStore> open() {
        return std::make_unique<TopicStore>(file, Resources(dir.path()), clock);
    }
    QList<Topic> onDisk() const { return json::decode<QList<Topic>>(readFile(file)); }
    /// The files of the folder, hidden ones too.
    QStringList names() const {
        return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }

    QTemporaryDir dir;
    QString file = dir.filePath(QStringLiteral("topics.json"));
    FixedClock clock;
};

} // namespace vorle::test
