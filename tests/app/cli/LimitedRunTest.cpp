// `vorle fouille` whose agent reaches its limit, and the rest of it, as a person runs them, and as
// they are killed.

#include "core/RunReport.h"
#include "tests/support/Program.h"
#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"

#include <QElapsedTimer>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;
using testing::Not;

class LimitedRunTest : public testing::Test {
protected:
    LimitedRunTest() {
        vorle.environment.insert(QStringLiteral("VORLE_ALLOW_LOOPBACK"), QStringLiteral("1"));
        QStringList links;
        for (int i = 0; i < candidates; ++i) {
            const QByteArray path = "/p" + QByteArray::number(i);
            server.serve(path,
                         test::TestReply::page("<title>T</title><article>" +
                                               QByteArray("mot ").repeated(300) + "</article>"));
            links += QStringLiteral(R"({"title":"t%1","url":"%2","kind":"article","about":"Rust"})")
                         .arg(i)
                         .arg(server.link(path));
        }
        m_links = links.join(u',');
        EXPECT_EQ(vorle.run("reglages interests [\"Rust\"]").status, 0);
    }

    /// An agent that judges `batches` batches before it reaches its limit; all of them with -1.
    void answer(int batches) {
        QFile::remove(vorle.path("home/answered-0"));
        const QString limit =
            QStringLiteral(",\"limit\":{\"step\":\"judge\",\"after\":%1,\"words\":"
                           "\"You've hit your limit · resets 1pm (UTC)\"}")
                .arg(batches);
        vorle.agent.answerBy(
            QStringLiteral(R"({"candidates":{"Topics":[%1]},"judge":"ok","seconds":0.05%2})")
                .arg(m_links, batches < 0 ? QString() : limit)
                .toUtf8());
    }
    QList<RunReport> runs() const {
        const QByteArray bytes = vorle.read("data/vorle/runs.json");
        return bytes.isEmpty() ? QList<RunReport>() : json::decode<QList<RunReport>>(bytes);
    }
    bool isLeft() const { return QFile::exists(vorle.path("data/vorle/run-left.json")); }

    static constexpr int candidates = 24;
    Program vorle;
    test::TestServer server;
    QString m_links;
};

TEST_F(LimitedRunTest, tells_what_waits_and_goes_on_or_leaves_it_when_asked) {
    EXPECT_EQ(vorle.run("fouille --suite --laisser").status, 2);
    EXPECT_THAT(vorle.run("fouille --suite").err, HasSubstr("Rien n’attend."));
    answer(1);
    const Program::Outcome first = vorle.run("fouille --json");
    EXPECT_EQ(first.status, 0) << "a limit is no failure";
    EXPECT_THAT(first.err, HasSubstr("Claude Code a atteint sa limite. Ce qu’il dit"));
    EXPECT_THAT(first.err, HasSubstr("Je garde tout\u00A0: il reste 16 liens à juger."));
    EXPECT_THAT(first.err, HasSubstr(", si vorle est ouvert, ou avec\u00A0: vorle fouille --suite"))
        << "a command does not go on by itself";
    EXPECT_EQ(first.object()[u"topics"].toArray().size(), 8);
    EXPECT_EQ(first.object()[u"waits"].toObject()[u"links"].toInt(), 16);
    EXPECT_TRUE(isLeft());

    // Three parts without an answer: nothing says that it goes on at its hour.
    answer(0);
    std::string said;
    for (int part = 1; part <= 3; ++part) {
        EXPECT_THAT(said, Not(HasSubstr("Plusieurs reprises")));
        said = vorle.run("fouille --suite").err;
    }
    EXPECT_THAT(said, HasSubstr("sont restées sans réponse"));
    EXPECT_THAT(said, HasSubstr("Pour continuer\u00A0: vorle fouille --suite"));
    EXPECT_THAT(said, Not(HasSubstr("si vorle est ouvert")));

    answer(-1);
    const Program::Outcome rest = vorle.run("fouille --suite --json");
    EXPECT_EQ(rest.status, 0) << rest.err;
    EXPECT_EQ(rest.object()[u"topics"].toArray().size(), 16) << "those of this part";
    EXPECT_EQ(vorle.topics().size(), candidates);
    EXPECT_FALSE(isLeft());
    ASSERT_EQ(runs().size(), 1);
    EXPECT_EQ(runs().first().added, candidates);
    EXPECT_EQ(runs().first().date.toString(Qt::ISODate), first.object()[u"date"].toString());

    vorle.save({});
    answer(0);
    EXPECT_EQ(vorle.run("fouille").status, 0);
    EXPECT_THAT(vorle.run("fouille --laisser").err, HasSubstr("reprendra la même période."));
    EXPECT_FALSE(isLeft());
    EXPECT_FALSE(runs().last().waits);
}

// Killed at any moment, once and again: nothing that was judged is judged twice or lost, what was
// not is taken up, and nothing goes on waiting. VORLE_KILLS sets how many are tried.
TEST_F(LimitedRunTest, a_kill_at_any_moment_leaves_what_the_next_start_takes_up) {
    const int kills =
        qEnvironmentVariableIsSet("VORLE_KILLS") ? qEnvironmentVariableIntValue("VORLE_KILLS") : 6;
    answer(1);
    QElapsedTimer clock;
    clock.start();
    vorle.run("fouille");
    const auto usual = std::chrono::milliseconds(clock.elapsed());
    for (int i = 0; i < kills; ++i) {
        QFile::remove(vorle.path("data/vorle/run-left.json"));
        QFile::remove(vorle.path("data/vorle/runs.json"));
        vorle.save({});
        answer(1);
        // The first within the part that meets the limit, mostly at its end, the second later.
        for (const char *words : {"fouille", "fouille --suite"}) {
            QProcess &process = vorle.start(words);
            const auto moment = usual * (2 * kills + i) / (3 * kills);
            clock.restart();
            test::spinUntil([&] {
                return clock.elapsed() >= moment.count() || process.state() == QProcess::NotRunning;
            });
            process.kill();
            Program::end(process);
            answer(-1);
        }
        const qsizetype before = vorle.topics().size();
        if (isLeft()) {
            const Program::Outcome rest = vorle.run("fouille --suite");
            EXPECT_EQ(rest.status, 0) << rest.err;
        }
        EXPECT_GE(vorle.topics().size(), before);
        EXPECT_EQ(vorle.run("fouille").status, 0);
        EXPECT_FALSE(isLeft()) << i;
        QSet<QString> links;
        for (const Topic &topic : vorle.topics()) {
            EXPECT_EQ(topic.status, TopicStatus::Inbox);
            links.insert(topic.mainSource()->url);
        }
        EXPECT_EQ(links.size(), candidates) << i;
        EXPECT_EQ(vorle.topics().size(), candidates) << i;
        for (const RunReport &report : runs()) {
            EXPECT_FALSE(report.waits) << i;
        }
    }
}

} // namespace
} // namespace vorle
