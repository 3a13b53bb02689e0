#pragma once

#include "desktop/ShareInbox.h"
#include "platform/DropSignal.h"
#include "tests/support/Files.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <system_error>
#include <utility>

namespace vorle::test {

inline QByteArray dropOf(const QByteArray &name) {
    return R"({"url":"https://example.org/)" + name + R"(","title":"Un titre"})";
}

class FakeDropSignal final : public DropSignal {
public:
    void follow(std::function<void()> dropped) override { told = std::move(dropped); }
    std::function<void()> told;
};

/// The drops of one folder, as an app takes them in.
class ShareInboxTest : public testing::Test {
protected:
    ShareInboxTest() { QDir().mkpath(path("Inbox")); }
    ~ShareInboxTest() override { close(); }

    QString path(const QByteArray &name) const {
        return folder.path() + u'/' + QFile::decodeName(name);
    }
    QString drop(const QByteArray &name) const { return path("Inbox/" + name); }
    QStringList entries(const QByteArray &name) const {
        return QDir(path(name)).entryList(QDir::Files | QDir::System);
    }

    void open(std::chrono::milliseconds settled = std::chrono::milliseconds(50)) {
        inbox = std::make_unique<ShareInbox>(
            ShareInbox::Parts{.folder = path("Inbox"),
                              .keeper = {.mayTake = [this] { return !held; },
                                         .take = [this](const auto &items) { return take(items); },
                                         .saved = [this] { return saved(); }},
                              .signal = &signal,
                              .topicsFile = path("topics.json")},
            ShareInbox::Pace{settled, std::chrono::milliseconds(50)});
        QObject::connect(inbox.get(), &ShareInbox::wasSetAside, inbox.get(),
                         [this](qsizetype noLinks, qsizetype tooLarge) {
                             aside += noLinks;
                             heavy += tooLarge;
                         });
        QObject::connect(inbox.get(), &ShareInbox::cannotRead, inbox.get(),
                         [this](const QString &name) { unread += name; });
        QObject::connect(inbox.get(), &ShareInbox::folderRefused, inbox.get(),
                         [this](const std::error_code &why) { refused = why; });
        QObject::connect(inbox.get(), &ShareInbox::heldBack, inbox.get(), [this] { ++heldBack; });
    }
    void close() {
        if (inbox) {
            waitFor(inbox->stopped());
            inbox.reset();
        }
    }
    QList<ShareInbox::Taken> take(const QList<ShareInbox::Item> &items) {
        largest = std::max(largest, items.size());
        QList<ShareInbox::Taken> result;
        for (const ShareInbox::Item &item : std::as_const(items)) {
            result +=
                item.url.startsWith(u"http") ? ShareInbox::Taken::Kept : ShareInbox::Taken::NoLink;
            seen += item;
        }
        return result;
    }
    Task<bool> saved() {
        co_await sleepFor(std::chrono::milliseconds(0));
        if (meanwhile) {
            std::exchange(meanwhile, {})();
        }
        co_return refusals == 0 || refusals-- == 0;
    }
    QStringList addresses() const {
        QStringList all;
        for (const ShareInbox::Item &item : seen) {
            all += item.url.section(u'/', -1);
        }
        all.sort();
        return all;
    }

    QTemporaryDir folder;
    FakeDropSignal signal;
    std::unique_ptr<ShareInbox> inbox;
    QList<ShareInbox::Item> seen;
    std::function<void()> meanwhile; ///< while the first items are saved
    bool held = false;
    int refusals = 0; ///< so many saves fail
    qsizetype largest = 0;
    qsizetype aside = 0;
    qsizetype heavy = 0;
    QStringList unread;
    std::error_code refused;
    int heldBack = 0;
};

} // namespace vorle::test
