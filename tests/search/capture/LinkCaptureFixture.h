#pragma once

#include "search/capture/LinkCapture.h"
#include "tests/search/run/RunFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace vorle::test {

/// Links that are captured, with an agent that answers by a table and pages that tests serve.
class LinkCaptureFixture : public RunFixture {
protected:
    /// The topic made of it; ends the test when the link was refused.
    QUuid taken(const QString &url, const QString &note = {}) {
        const auto result = capture.take({.url = url, .title = {}, .note = note, .project = {}});
        const auto *id = std::get_if<QUuid>(&result);
        EXPECT_NE(id, nullptr) << url.toStdString();
        return id != nullptr ? *id : QUuid();
    }
    LinkCapture::Refusal refused(const QString &url) {
        const auto result = capture.take({.url = url, .title = {}, .note = {}, .project = {}});
        const auto *refusal = std::get_if<LinkCapture::Refusal>(&result);
        EXPECT_NE(refusal, nullptr) << url.toStdString();
        return refusal != nullptr ? *refusal : LinkCapture::Refusal{};
    }
    ~LinkCaptureFixture() override {
        capture.stop();
        settle();
    }
    void settle() {
        test::settle([&] { return !capture.running(); });
    }

    /// A link that another program dropped.
    static CapturedLink dropped(const QString &url) {
        return {.url = url, .sharedAt = QDateTime::currentDateTimeUtc()};
    }
    /// So many, each to a page of its own.
    QList<CapturedLink> droppedPages(int count) {
        QList<CapturedLink> links;
        for (int i = 0; i < count; ++i) {
            const QByteArray path = "/page" + QByteArray::number(i);
            server.serve(path, test::TestReply::page(page("p")));
            links += dropped(at(path.constData()));
        }
        return links;
    }
    qsizetype inState(LinkCapture::State state) const {
        return std::ranges::count_if(store.topics(), [&](const TopicPtr &topic) {
            return capture.state(topic->id) == state;
        });
    }
    LinkCapture::Parts parts() {
        return {preferences, store, provenance, asker, reader, images, turned};
    }

    /// A clock that tests turn.
    struct TurnedClock final : Clock {
        QDateTime at = QDateTime(QDate(2026, 11, 22), QTime(12, 0), QTimeZone::utc());
        QDateTime now() const override { return at; }
    } turned;
    LinkCapture capture{parts()};
};

} // namespace vorle::test
