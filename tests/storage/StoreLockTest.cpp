#include "storage/StoreLock.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <system_error>

namespace vorle {
namespace {

TEST(StoreLock, one_holder_at_a_time_has_the_lock) {
    const QTemporaryDir dir;
    StoreLock first(dir.filePath(QStringLiteral("topics.json")));
    ASSERT_TRUE(first.tryLock());
    ASSERT_TRUE(QFile::link(QStringLiteral("topics.json"), dir.filePath(QStringLiteral("alias"))));
    StoreLock second(dir.filePath(QStringLiteral("alias")));
    EXPECT_FALSE(second.tryLock());
    first.release();
    EXPECT_TRUE(second.tryLock());
    EXPECT_FALSE(first.tryLock());
    StoreLock lost(dir.filePath(QStringLiteral("no/such/folder/topics.json")));
    EXPECT_THROW(lost.tryLock(), std::system_error);
}

} // namespace
} // namespace vorle
