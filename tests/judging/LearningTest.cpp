#include "judging/Learning.h"
#include "base/Text.h"
#include "judging/JudgeContext.h"
#include "judging/JudgePrompt.h"
#include "tests/judging/DecidedTopics.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using enum TopicStatus;
using test::october;
using test::quiet;
using Store = test::DecidedTopics;

QStringList idsOf(const Learned &learned) {
    QStringList ids;
    for (const Reflex &reflex : learned.reflexes) {
        ids += reflex.id;
    }
    return ids;
}

QStringList ids(const Store &store, const Settings &settings = {}) {
    return idsOf(learn(store.topics, settings));
}

const Reflex *reflex(const Learned &learned, const char *id) {
    for (const Reflex &one : learned.reflexes) {
        if (one.id == QString::fromUtf8(id)) {
            return &one;
        }
    }
    return nullptr;
}

TEST(Learning, needs_ten_decisions_and_says_where_it_is) {
    Store store;
    store.add(9, Dismissed, "video").add(30, Inbox, "video").add(30, Pending, "video");
    const Learned nine = learn(store.topics, {});
    EXPECT_EQ(nine.decisions, 9);
    EXPECT_TRUE(nine.reflexes.isEmpty());
    EXPECT_TRUE(nothingLearnedText(nine).startsWith(
        u"Rien d’appris pour l’instant : il me faut 10 décisions de tri, tu en es à 9. Je "));

    const Learned ten = learn(store.add(1, Reserve).topics, {});
    EXPECT_EQ(idsOf(ten), QStringList{QStringLiteral("kind-video")});
    EXPECT_TRUE(nothingLearnedText(ten).isEmpty());
    EXPECT_TRUE(nothingLearnedText(learn(quiet().topics, {})).startsWith(u"Rien de net encore : "));
}

TEST(Learning, finds_a_kind_set_aside_from_five_decisions_and_three_fifths) {
    const struct {
        int dismissed;
        int others;
        bool made;
    } cases[] = {{4, 0, false}, {3, 2, true}, {5, 4, false}, {6, 4, true}};
    for (const auto &one : cases) {
        Store store = quiet();
        store.add(one.dismissed, Dismissed, "video").add(one.others, Program, "video");
        EXPECT_EQ(ids(store).contains(QStringLiteral("kind-video")), one.made) << one.dismissed;
    }
    const Learned learned = learn(quiet().add(5, Dismissed, "security").topics, {});
    ASSERT_EQ(learned.reflexes.size(), 1);
    EXPECT_EQ(learned.reflexes.first(),
              (Reflex{QStringLiteral("kind-security"), Reflex::Group::Down,
                      QStringLiteral("plus exigeant"),
                      QStringLiteral("Les sujets de type « Sécurité » sont souvent écartés."),
                      QStringLiteral("5 « Pas pour moi » sur 5"),
                      QStringLiteral("They often set aside items of kind « security »: score those "
                                     "high only when they are really solid.")}));
    EXPECT_TRUE(ids(quiet().add(9, Dismissed, "billet")).isEmpty()) << "no such kind";
}

TEST(Learning, puts_the_stack_first_from_a_quarter_of_difference) {
    const auto dependency = [](Topic &topic) { topic.dependency = QStringLiteral("vite"); };
    const struct {
        int stackKept;
        int stackLeft;
        int restKept;
        int restLeft;
        const char *evidence; ///< empty: no reflex
    } cases[] = {
        {3, 1, 3, 3, "tu en gardes 75 %, contre 50 % pour le reste"},
        {74, 26, 5, 5, ""},
        {3, 0, 0, 9, ""},  // too few of the stack
        {12, 0, 0, 0, ""}, // nothing else to compare with
        {4, 0, 2, 4, "tu en gardes 100 %, contre 33 % pour le reste"},
        {2, 2, 8, 8, ""},
    };
    for (const auto &one : cases) {
        Store store;
        store.add(one.stackKept, Program, dependency).add(one.stackLeft, Reserve, dependency);
        store.add(one.restKept, Done, "billet").add(one.restLeft, Dismissed, "billet");
        const Learned learned = learn(store.topics, {});
        const Reflex *made = reflex(learned, "stack-first");
        EXPECT_EQ(made != nullptr ? made->evidence : QString(), QString::fromUtf8(one.evidence));
    }
}

TEST(Learning, knows_the_stack_by_its_dependencies_versions_and_tools) {
    Settings settings;
    settings.addedTools = {QStringLiteral("Ghostty")};
    const auto inProject = [](Topic &topic) { topic.project = QStringLiteral("Tiravue"); };
    const auto withVersion = [&](Topic &topic) {
        inProject(topic);
        topic.newVersion = QStringLiteral("8.0");
    };
    const auto versionAlone = [](Topic &topic) { topic.newVersion = QStringLiteral("8.0"); };
    const auto named = [](Topic &topic) {
        topic.title = QStringLiteral("Quoi de neuf, ghostty ?");
    };
    const auto learned = [&](auto stack) {
        return ids(Store().add(6, Program, stack).add(6, Reserve), settings);
    };
    const QStringList found{QStringLiteral("stack-first")};
    EXPECT_EQ(learned(withVersion), found);
    EXPECT_EQ(learned(named), found);
    EXPECT_TRUE(learned(inProject).isEmpty());
    EXPECT_TRUE(learned(versionAlone).isEmpty());
}

TEST(Learning, finds_long_items_put_off) {
    const auto item = [](int minutes, int postponed) {
        return [=](Topic &topic) {
            topic.minutes = minutes;
            topic.postponedCount = postponed;
        };
    };
    const auto found = [&](int putOff, int others, int minutes) {
        return ids(quiet().add(putOff, Program, item(minutes, 2)).add(others, Done, item(90, 0)))
            .contains(QStringLiteral("long-later"));
    };
    EXPECT_TRUE(found(2, 2, 60));
    EXPECT_FALSE(found(2, 0, 60)) << "too few";
    EXPECT_FALSE(found(2, 3, 60));
    EXPECT_FALSE(found(3, 0, 59)) << "not long";
    const Learned learned = learn(quiet().add(3, Program, item(60, 1)).topics, {});
    EXPECT_EQ(reflex(learned, "long-later")->evidence,
              u"3 sujets d’une heure ou plus remis à plus tard sur 3");
}

TEST(Learning, asks_one_decision_more_of_a_project_and_passes_over_those_not_followed) {
    const auto of = [](const char *name) {
        return [=](Topic &topic) {
            topic.project = QString::fromUtf8(name);
            topic.kind.reset();
        };
    };
    Settings settings;
    settings.projects = {{QStringLiteral("Vapeur %1"), {}}, {QStringLiteral("Cinq"), {}}};
    Store store = quiet();
    store.add(4, Dismissed, of("Vapeur %1")).add(2, Program, of("Vapeur %1"));
    store.add(5, Dismissed, of("Cinq")).add(9, Dismissed, of("Disparu"));
    const Learned learned = learn(store.topics, settings);
    ASSERT_EQ(idsOf(learned), QStringList{QStringLiteral("project-Vapeur %1")});
    EXPECT_EQ(learned.reflexes.first().title, u"Vapeur %1 t’intéresse peu en ce moment.");
    EXPECT_EQ(learned.reflexes.first().evidence, u"4 sujets écartés sur 6");
}

TEST(Learning, follows_score_corrections_by_kind) {
    const struct {
        QList<double> scores; ///< against the app's 5
        const char *effect;   ///< empty: no reflex
    } cases[] = {
        {{6.9, 6.9, 6.9, 6.9}, ""},
        {{7.4, 7.4, 7.4, 7.4}, "+2"},
        {{7.1, 6.9, 7.1, 6.9}, "+2"}, // 2 exactly, but for the last bit
        {{8, 7, 8, 7}, "+3"},
        {{0.4, 0.4, 0.4, 0.4}, "−3"},
        {{10, 10, 10}, ""},
        {{1e300, -1e300, 1e300, 1e300, 1e300}, "+3"}, // held to the scale: 4 × 5 − 5
        {{9, 9, 1, 1}, ""},
    };
    for (const auto &one : cases) {
        Store store = quiet();
        for (const double score : one.scores) {
            store.add(1, Inbox, [&](Topic &topic) {
                topic.kind = QStringLiteral("video");
                topic.correction = Correction{score, {}, {}, october};
            });
        }
        const Learned learned = learn(store.topics, {});
        const Reflex *made = reflex(learned, "corr-video");
        EXPECT_EQ(made != nullptr ? made->effect : QString(), QString::fromUtf8(one.effect));
    }

    const auto lower = [](Topic &topic) {
        topic.kind = QStringLiteral("announcement");
        topic.correction = Correction{3, {}, {}, october};
    };
    const auto unread = [&](Topic &topic) {
        lower(topic);
        topic.score = 0;
        topic.readLevel = ReadLevel::None;
    };
    const Learned learned = learn(quiet().add(5, Inbox, lower).add(9, Inbox, unread).topics, {});
    ASSERT_EQ(learned.reflexes.size(), 1);
    EXPECT_EQ(
        learned.reflexes.first(),
        (Reflex{QStringLiteral("corr-announcement"), Reflex::Group::Down, QStringLiteral("−2"),
                QStringLiteral("Les sujets Annonce valent moins pour toi que je ne le "
                               "pensais."),
                QStringLiteral("5 corrections, −2 en moyenne"),
                QStringLiteral("The person corrected the score of 5 annonce items by −2 "
                               "points on average: score such items lower.")}));
}

TEST(Learning, starts_again_from_a_moment) {
    const auto later = [](Topic &topic) {
        topic.kind = QStringLiteral("video");
        topic.triagedAt = october.addSecs(1);
    };
    const auto undated = [](Topic &topic) { topic.triagedAt.reset(); };
    const auto corrected = [](Topic &topic) { topic.correction = Correction{10, {}, {}, october}; };
    Settings settings;
    settings.reflexesSince = october;
    Store store;
    store.add(40, Dismissed, "tool").add(5, Dismissed, undated).add(9, Dismissed, later);
    store.add(9, Inbox, corrected);
    EXPECT_EQ(learn(store.topics, settings), (Learned{9, {}}));
    EXPECT_EQ(ids(store.add(1, Dismissed, later), settings),
              QStringList{QStringLiteral("kind-video")});
    EXPECT_GT(ids(store).size(), 1);
}

TEST(Learning, keeps_its_rules_in_order_and_gives_the_judge_those_left_on) {
    const auto set = [](const char *project, const char *kind) {
        return [=](Topic &topic) {
            topic.project = QString::fromUtf8(project);
            topic.kind = QString::fromUtf8(kind);
            topic.minutes = 90;
            topic.postponedCount = 1;
            topic.correction = Correction{0, {}, {}, october};
        };
    };
    Settings settings;
    settings.projects = {{QStringLiteral("B"), {}}, {QStringLiteral("A"), {}}};
    Store store;
    store.add(6, Dismissed, set("B", "video")).add(6, Dismissed, set("A", "article"));
    store.add(4, Program, [](Topic &topic) { topic.dependency = QStringLiteral("vite"); });
    const QStringList all{QStringLiteral("stack-first"),  QStringLiteral("kind-article"),
                          QStringLiteral("kind-video"),   QStringLiteral("long-later"),
                          QStringLiteral("project-A"),    QStringLiteral("project-B"),
                          QStringLiteral("corr-article"), QStringLiteral("corr-video")};
    const Learned learned = learn(store.topics, settings);
    EXPECT_EQ(idsOf(learned), all);

    settings.disabledReflexes = {QStringLiteral("long-later"), QStringLiteral("kind-disparu")};
    EXPECT_EQ(idsOf(learn(store.topics, settings)), all) << "switched off, still learned";
    const QStringList lines =
        judgeContext({{}, reflexesLeftOn(learned.reflexes, settings), {}}, {}).reflexLines();
    EXPECT_EQ(lines.size(), all.size() - 1);
    EXPECT_FALSE(lines.join(u'\n').contains(u"long items"));

    // A prompt has a size: what does not fit is told, and what is counted as sent is sent whole.
    EXPECT_EQ(unsentReflexesText(judgeContext({{}, learned.reflexes, {}}, {}).unsent), QString());
    QList<Reflex> many;
    for (int i = 0; i < 100; ++i) {
        many += learned.reflexes.first();
        many.last().id += QString::number(i);
        many.last().title = QStringLiteral("T%1").arg(i);
        many.last().instruction += QStringLiteral(" END%1.").arg(i);
    }
    const JudgeContext context = judgeContext({{}, many, {}}, {});
    const QStringList sent = context.reflexLines();
    ASSERT_LT(sent.size(), many.size());
    const QString prompt = judgePrompt(QStringLiteral("@REFLEXES"), {}, {}, sent, {}, {});
    EXPECT_LE(utf8Size(prompt), reflexBytes);
    EXPECT_TRUE(prompt.endsWith(sent.last() + u'\n'));
    const QString told = unsentReflexesText(context.unsent);
    EXPECT_TRUE(told.startsWith(QStringLiteral("%1 réflexes n’ont pas tenu dans la consigne :")
                                    .arg(many.size() - sent.size())));
    EXPECT_TRUE(told.contains(u"T99"));
    EXPECT_FALSE(told.contains(u"T0\u202F"));
}

TEST(Learning, says_what_starting_again_takes_away) {
    EXPECT_TRUE(startAgainText(3).startsWith(u"Je repars de zéro : les 3 réflexes appris "
                                             u"disparaissent et je réapprends "));
    EXPECT_TRUE(startAgainText(1).contains(u" : le réflexe appris disparaît et je "));
    EXPECT_TRUE(startAgainText(0).contains(u" : je réapprends "));
}

} // namespace
} // namespace vorle
