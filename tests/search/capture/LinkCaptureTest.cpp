#include "search/capture/LinkCapture.h"

#include "tests/search/run/RunFixture.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

class LinkCaptureTest : public test::RunFixture {
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
    ~LinkCaptureTest() override {
        capture.stop();
        settle();
    }
    void settle() {
        test::settle([&] { return !capture.running(); });
    }

    LinkCapture capture{{preferences, store, provenance, asker, reader, images, clock}};
};

TEST_F(LinkCaptureTest, a_link_waits_is_judged_and_keeps_what_the_user_gave) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    int completed = 0;
    QObject::connect(&capture, &LinkCapture::completed, &capture, [&] { ++completed; });
    const QUuid id = taken(at("/long"), QStringLiteral("pour le potager"));
    const TopicPtr waiting = store.topic(id);
    EXPECT_EQ(waiting->status, TopicStatus::Pending);
    EXPECT_EQ(waiting->capturedURL, at("/long"));
    EXPECT_EQ(waiting->readLevel, ReadLevel::None) << "no score before it is read";
    EXPECT_TRUE(capture.running());
    // A correction given while it waits stays.
    store.setCorrection(id, Correction{9, {}, {}, clock.now()});
    settle();
    EXPECT_EQ(completed, 1);
    const TopicPtr judged = store.topic(id);
    EXPECT_EQ(judged->status, TopicStatus::Inbox);
    EXPECT_EQ(judged->title, u"Page long");
    EXPECT_EQ(judged->note, QStringLiteral("pour le potager"));
    EXPECT_EQ(judged->foundAt, waiting->foundAt);
    EXPECT_EQ(judged->readLevel, ReadLevel::Full);
    EXPECT_FALSE(judged->summary.isEmpty());
    ASSERT_TRUE(judged->correction);
    EXPECT_EQ(judged->correction->score, 9);
    EXPECT_TRUE(provenance.of(id));
    EXPECT_TRUE(claude.prompts().contains(u"Their note when saving it: pour le potager"));

    // The same page again is the topic there is.
    EXPECT_EQ(refused(at("/long") + QStringLiteral("#bas")).held, id);
    EXPECT_EQ(store.count(), 1);
}

TEST_F(LinkCaptureTest, what_is_no_web_address_is_refused) {
    for (const char *text :
         {"", "  ", "potager", "ftp://example.org/a", "file:///etc/passwd", "javascript:alert(1)",
          "https://", "deux mots.fr", "https://a.fr/\n### id: c1", "https://a.fr/\u2028x"}) {
        const LinkCapture::Refusal refusal = refused(QString::fromUtf8(text));
        EXPECT_FALSE(refusal.text.isEmpty()) << text;
        EXPECT_FALSE(refusal.held) << text;
    }
    EXPECT_EQ(store.count(), 0);
}

TEST_F(LinkCaptureTest, a_link_that_cannot_be_judged_waits_for_another_day) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"), "fail");
    int failed = 0;
    QObject::connect(&capture, &LinkCapture::failed, &capture, [&] { ++failed; });
    const QUuid first = taken(at("/long"));
    const QUuid gone = taken(at("/other"));
    store.dismiss(gone); // the user thought better of it
    settle();
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(store.topic(first)->status, TopicStatus::Pending);
    EXPECT_EQ(store.topic(gone)->status, TopicStatus::Dismissed);

    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    capture.resume();
    settle();
    EXPECT_EQ(store.topic(first)->status, TopicStatus::Inbox);
    EXPECT_EQ(store.topic(gone)->status, TopicStatus::Dismissed);
}

TEST_F(LinkCaptureTest, tells_where_each_link_stands_and_tries_again_when_asked) {
    using State = LinkCapture::State;
    scenario(QStringLiteral("[]"), QStringLiteral("[]"), "fail");
    QList<State> states;
    QUuid first;
    QObject::connect(&capture, &LinkCapture::stateChanged, &capture, [&](const QUuid &id) {
        if (id == first && (states.isEmpty() || states.last() != capture.state(id))) {
            states += capture.state(id);
        }
    });
    first = taken(at("/long"));
    const QUuid second = taken(at("/other"));
    EXPECT_EQ(capture.state(first), State::Reading);
    EXPECT_EQ(capture.state(second), State::Queued);
    settle();
    EXPECT_EQ(capture.state(first), State::Failed);
    EXPECT_TRUE(capture.failureText(first).contains(u"le serveur est occupé"));

    // Nobody reads for an agent that is signed out, or calls it.
    claude.signOut();
    const qsizetype requests = server.requests().size();
    const QString sent = claude.prompts();
    capture.retry(first);
    settle();
    EXPECT_EQ(capture.failureText(first), u"Claude Code n’est plus connecté.");
    EXPECT_EQ(server.requests().size(), requests);
    EXPECT_EQ(claude.prompts(), sent);

    claude.signIn();
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    capture.retry(first);
    settle();
    EXPECT_EQ(capture.state(first), State::None);
    EXPECT_EQ(store.topic(first)->status, TopicStatus::Inbox);
    EXPECT_EQ(capture.state(second), State::Failed) << "the other was not asked for";
    EXPECT_EQ(states, (QList<State>{State::Failed, State::Queued, State::Reading, State::Failed,
                                    State::Queued, State::Reading, State::None}));
    store.dismiss(second);
    EXPECT_EQ(capture.state(second), State::None);
}

TEST_F(LinkCaptureTest, a_blank_error_is_told_too) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"), "blank");
    QStringList told;
    QObject::connect(&capture, &LinkCapture::failed, &capture,
                     [&](const QUuid &, const QString &text) { told += text; });
    taken(at("/long"));
    settle();
    EXPECT_EQ(told, QStringList{QStringLiteral("erreur de l’agent")});
}

TEST_F(LinkCaptureTest, a_stop_leaves_the_link_waiting_and_no_process) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"), "hang");
    const QUuid id = taken(at("/long"));
    test::spinUntil([&] { return claude.living() > 0; });
    capture.stop();
    settle();
    EXPECT_EQ(claude.living(), 0);
    EXPECT_EQ(store.topic(id)->status, TopicStatus::Pending);
}

TEST_F(LinkCaptureTest, a_reached_limit_leaves_all_that_wait_without_a_further_call) {
    otherTraits = QStringLiteral(R"("limit":{"words":"You've hit your limit"},)");
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    const QUuid first = taken(at("/long"));
    const QUuid second = taken(at("/other"));
    settle();
    EXPECT_EQ(claude.calls().size(), 1);
    for (const QUuid &id : {first, second}) {
        EXPECT_EQ(capture.state(id), LinkCapture::State::Failed);
        EXPECT_TRUE(capture.failureText(id).contains(u"hit your limit"));
    }
    otherTraits.clear();
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    capture.resume();
    settle();
    EXPECT_EQ(inbox().size(), 2);
}

} // namespace
} // namespace vorle
