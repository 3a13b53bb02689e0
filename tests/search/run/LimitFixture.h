#pragma once

#include "tests/search/run/RunFixture.h"

namespace vorle::test {

/// Runs whose agent reaches its limit.
class LimitTest : public RunFixture {
protected:
    /// From the next run on, `limit` ("\"step\":\"judge\",") holds; "" lifts it.
    void limit(const QString &which, const char *words = "You've hit your limit · resets 1pm") {
        otherTraits = which.isEmpty() ? QString()
                                      : QStringLiteral(R"("limit":{%1"words":"%2"},)")
                                            .arg(which, QString::fromUtf8(words));
    }
    RunReport resume() { return waitFor(engine.resume(stop.token()), std::chrono::seconds(60)); }
    QString restFile() const { return folder.filePath(QStringLiteral("run-left.json")); }

    /// `count` pages, each its own card.
    QStringList pages(int count) {
        QStringList links;
        for (int i = 0; i < count; ++i) {
            const QByteArray path = "/p" + QByteArray::number(i);
            server.serve(path, TestReply::page(page(path.constData())));
            links += candidate(server.link(path), "Rust");
        }
        return links;
    }
    QStringList inboxLinks() const {
        QStringList links;
        for (const TopicPtr &topic : inbox()) {
            links += topic->mainSource()->url;
        }
        return links;
    }
};

} // namespace vorle::test
