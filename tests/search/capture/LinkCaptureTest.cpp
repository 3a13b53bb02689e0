#include "tests/search/capture/LinkCaptureFixture.h"

namespace vorle {
namespace {

class LinkCaptureTest : public test::LinkCaptureFixture {};

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

TEST_F(LinkCaptureTest, one_set_aside_and_taken_back_while_its_batch_runs_is_read_next) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    const auto results = capture.takeDropped(droppedPages(2));
    const QUuid first = results.first().topic;
    const auto waiting = store.triageState(first);
    store.dismiss(first);
    // The batch has passed it over, and is not at its end yet.
    QObject::connect(&capture, &LinkCapture::completed, &capture, [&](const QUuid &id) {
        if (id == results.last().topic) {
            store.restore(first, *waiting);
            capture.ask(first);
        }
    });
    settle();
    EXPECT_EQ(store.topic(first)->status, TopicStatus::Inbox);
    EXPECT_FALSE(store.topic(first)->summary.isEmpty());
    EXPECT_EQ(inbox().size(), 2);
}

TEST_F(LinkCaptureTest, fifty_dropped_links_a_day_are_judged_in_batches_and_more_when_asked) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    using State = LinkCapture::State;
    const auto links = droppedPages(63);
    capture.takeDropped(links);
    EXPECT_EQ(inState(State::Postponed), 13);
    EXPECT_EQ(capture.postponed(), 13);
    settle();
    EXPECT_EQ(inbox().size(), 50);
    EXPECT_LE(claude.calls().size(), 8) << "several a call";
    const QUuid waiting = store.topics().last()->id;
    EXPECT_EQ(capture.state(waiting), State::Postponed);
    EXPECT_EQ(capture.failureText(waiting),
              QStringLiteral("J’en lis 50 par jour\u00A0: celui-ci attend son tour."));
    capture.resume();
    capture.look();
    settle();
    EXPECT_EQ(inbox().size(), 50) << "the day is the same";
    // What the user gives is no part of it, nor what they ask for.
    taken(at("/long"));
    capture.retry(waiting);
    settle();
    EXPECT_EQ(inbox().size(), 52);

    // A new start brings no new day; the next morning does.
    {
        LinkCapture restarted{parts()};
        restarted.resume();
        test::settle([&] { return !restarted.running(); });
        EXPECT_EQ(restarted.postponed(), 12);
    }
    EXPECT_EQ(inbox().size(), 52);
    // One that is set aside waits no more.
    for (const TopicPtr &topic : store.topics()) {
        if (capture.state(topic->id) == State::Postponed) {
            store.dismiss(topic->id);
            break;
        }
    }
    capture.look();
    EXPECT_EQ(capture.postponed(), 11);
    turned.at = turned.at.addDays(1);
    capture.look();
    settle();
    EXPECT_EQ(inbox().size(), 63);
    EXPECT_EQ(capture.postponed(), 0);

    capture.takeDropped(droppedPages(64).last(1));
    settle();
    EXPECT_EQ(inbox().size(), 64) << "39 are left of that day";
}

TEST_F(LinkCaptureTest, one_link_of_several_fails_alone) {
    otherTraits = QStringLiteral(R"("overlooked":"/page0",)");
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    capture.takeDropped(droppedPages(3));
    settle();
    EXPECT_EQ(inbox().size(), 3) << "one that the call left out is judged alone";

    otherTraits = QStringLiteral(R"("poison":"/page5",)");
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    capture.takeDropped(droppedPages(9));
    settle();
    EXPECT_EQ(inbox().size(), 8);
    EXPECT_EQ(inState(LinkCapture::State::Failed), 1);
}

TEST_F(LinkCaptureTest, what_failed_is_tried_again_by_itself) {
    scenario(QStringLiteral("[]"), QStringLiteral("[]"));
    QStringList told;
    QObject::connect(&capture, &LinkCapture::failed, &capture,
                     [&](const QUuid &, const QString &text) { told += text; });
    // Offline: no page answers.
    const QUuid offline = taken(QStringLiteral("http://127.0.0.1:9/x"));
    settle();
    EXPECT_EQ(capture.state(offline), LinkCapture::State::Failed);
    EXPECT_TRUE(capture.failureText(offline).contains(u"hors ligne"));
    EXPECT_TRUE(claude.calls().isEmpty());
    capture.look();
    EXPECT_FALSE(capture.running()) << "not at once";
    turned.at = turned.at.addSecs(11 * 60);
    capture.look();
    settle();
    EXPECT_EQ(capture.state(offline), LinkCapture::State::Failed);
    EXPECT_EQ(told.size(), 1) << "the same once more is no news";
    // A page that never answers is judged by what is known of it.
    turned.at = turned.at.addDays(1);
    capture.look();
    settle();
    EXPECT_EQ(store.topic(offline)->status, TopicStatus::Inbox);

    claude.signOut();
    const QUuid signedOut = taken(at("/long"));
    settle();
    EXPECT_EQ(capture.state(signedOut), LinkCapture::State::Failed);
    capture.takeDropped(droppedPages(40));
    capture.takeDropped(droppedPages(60).last(20));
    settle();
    EXPECT_EQ(inState(LinkCapture::State::Postponed), 10) << "those that failed keep their place";
    capture.look();
    EXPECT_FALSE(capture.running());
    claude.signIn();
    capture.look();
    settle();
    EXPECT_EQ(store.topic(signedOut)->status, TopicStatus::Inbox);
    EXPECT_EQ(inbox().size(), 52);
    EXPECT_EQ(inState(LinkCapture::State::Postponed), 10);
}

} // namespace
} // namespace vorle
