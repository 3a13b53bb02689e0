#include "base/FileDownload.h"

#include "tests/support/Files.h"
#include "tests/support/HeldPool.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <system_error>

namespace vorle {
namespace {

using test::TestReply;

/// Bytes of which no two parts are the same.
QByteArray numbered(qsizetype size) {
    QByteArray bytes;
    for (int number = 0; bytes.size() < size; ++number) {
        bytes += QByteArray::number(number) + ' ';
    }
    return bytes.first(size);
}

class FileDownloadTest : public testing::Test {
protected:
    HttpRequest request() const {
        HttpRequest request;
        request.url = server.url("/file");
        request.maxBytes = 10'000'000;
        return request;
    }
    /// The errno that a download comes to; 0 where it goes through.
    int refusal(const QString &target, qint64 maxWaiting = maxUnwritten) {
        try {
            test::waitFor(downloadTo(http, request(), target, {}, maxWaiting));
            return 0;
        } catch (const std::system_error &error) {
            return error.code().value();
        }
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("file"));
    test::TestServer server;
    HttpClient http{true};
};

TEST_F(FileDownloadTest, the_disk_holds_up_neither_the_network_nor_the_thread_that_listens_to_it) {
    const QByteArray body = numbered(2'000'000);
    server.serve("/file", TestReply::page(body));
    std::optional<test::HeldPool> disk;
    qint64 received = 0;
    HttpRequest one = request();
    one.sink = [&](QByteArrayView piece) {
        received += piece.size();
        if (!disk) {
            disk.emplace(); // from the first piece on
        }
        if (received == body.size()) {
            EXPECT_LT(QFileInfo(path).size(), body.size());
            disk.reset();
        }
        return true;
    };
    const HttpResponse response = test::waitFor(downloadTo(http, std::move(one), path, {}));
    EXPECT_TRUE(response.ok());
    EXPECT_EQ(received, body.size());
    EXPECT_EQ(test::readFile(path), body);
    EXPECT_FALSE(QFileInfo(path).permissions() & (QFile::ReadGroup | QFile::ReadOther));
}

TEST_F(FileDownloadTest, what_the_disk_refuses_is_told_and_ends_the_download) {
    const QByteArray body = numbered(500'000);
    server.serve("/file", TestReply::page(body));
    EXPECT_EQ(refusal(folder.filePath(QStringLiteral("none/file"))), ENOENT);
    test::writeFile(path, "of somebody else");
    EXPECT_EQ(refusal(path), EEXIST);
    EXPECT_EQ(test::readFile(path), "of somebody else");
    EXPECT_TRUE(server.requests().isEmpty()) << "there was no place for an answer";

    QFile::remove(path);
    test::withFileSizeLimit(100'000, [this] { EXPECT_EQ(refusal(path), EFBIG); });
    QFile::remove(path);
    EXPECT_EQ(refusal(path, 10), ETIMEDOUT) << "the disk is too far behind";

    QFile::remove(path);
    CancelSource cancel;
    HttpRequest one = request();
    one.sink = [&](QByteArrayView) {
        QMetaObject::invokeMethod(&http, [&] { cancel.cancel(); }, Qt::QueuedConnection);
        return true;
    };
    server.serve("/file", TestReply::shaped(TestReply::Shape::Endless, body));
    EXPECT_THROW((void)test::waitFor(downloadTo(http, std::move(one), path, cancel.token())),
                 Cancelled);
    const qint64 size = QFileInfo(path).size();
    test::waitFor(sleepFor(std::chrono::milliseconds(20)));
    EXPECT_EQ(QFileInfo(path).size(), size) << "nothing is written any more";
}

} // namespace
} // namespace vorle
