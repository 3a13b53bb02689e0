#include "app/models/Decisions.h"
#include "core/Corrections.h"
#include "tests/app/models/Watched.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::Shelf;

class DecisionsTest : public testing::Test {
protected:
    DecisionsTest() {
        QObject::connect(&decisions, &Decisions::decided,
                         [this](const QString &, const QString &ghost) { ghosts += ghost; });
    }
    TopicStatus status() const { return shelf.topic(id)->status; }

    Shelf shelf;
    Decisions decisions{shelf.store};
    QString id = shelf.add(sampleTopic(QStringLiteral("Vite 8")));
    QStringList ghosts;
};

TEST_F(DecisionsTest, give_each_key_its_status_and_its_ghost) {
    using Take = std::function<Decisions::Taken(Decisions &, const QString &)>;
    struct Case {
        Take take;
        TopicStatus status;
        const char *ghost;
    };
    const Case cases[] = {
        {&Decisions::keep, TopicStatus::Program, "Gardé · Programme"},
        {&Decisions::later, TopicStatus::Reserve, "Plus tard · Réserve"},
        {&Decisions::dismiss, TopicStatus::Dismissed, "Écarté · Pas pour moi"},
        {&Decisions::backToTriage, TopicStatus::Inbox, "Remis · À trier"},
        {&Decisions::postpone, TopicStatus::Reserve, "Reporté · Réserve"},
        {&Decisions::removeFromProgram, TopicStatus::Inbox, "Retiré · À trier"},
        {[](Decisions &d, const QString &t) { return d.done(t); }, TopicStatus::Done,
         "Fait · Bibliothèque"},
        {[](Decisions &d, const QString &t) { return d.verdict(t, Worth::Meh); }, TopicStatus::Done,
         "Bof · Bibliothèque"},
    };
    for (const Case &each : cases) {
        EXPECT_EQ(each.take(decisions, id), QString::fromUtf8(each.ghost));
        EXPECT_EQ(status(), each.status) << each.ghost;
        EXPECT_EQ(ghosts.last(), QString::fromUtf8(each.ghost));
    }
    EXPECT_EQ(shelf.topic(id)->worth, Worth::Meh);
    for (qsizetype i = std::size(cases) - 1; i > 0; --i) {
        EXPECT_FALSE(decisions.undo().isEmpty());
        EXPECT_EQ(status(), cases[i - 1].status) << cases[i].ghost;
    }
    decisions.undo();
    EXPECT_EQ(status(), TopicStatus::Inbox);
    EXPECT_FALSE(shelf.topic(id)->triagedAt);
    EXPECT_EQ(shelf.topic(id)->postponedCount, 0);
    EXPECT_FALSE(decisions.canUndo());
    EXPECT_TRUE(decisions.undo().isEmpty());
}

TEST_F(DecisionsTest, refuse_what_they_do_not_know) {
    EXPECT_FALSE(decisions.keep(QStringLiteral("nothing")));
    EXPECT_FALSE(decisions.verdict(QString(), Worth::Gem));
    EXPECT_TRUE(ghosts.isEmpty());
    EXPECT_FALSE(decisions.canUndo());
}

TEST_F(DecisionsTest, say_what_was_undone_and_redone) {
    decisions.dismiss(id);
    EXPECT_EQ(decisions.undo(), QStringLiteral("«\u202FVite 8\u202F» revient dans À trier"));
    EXPECT_EQ(decisions.redo(), QStringLiteral("«\u202FVite 8\u202F» est de nouveau écarté"));
    decisions.undo();
    decisions.done(id);
    EXPECT_FALSE(decisions.canRedo()); // a new decision ends what could be redone
    decisions.verdict(id, Worth::Gem);
    EXPECT_EQ(decisions.undo(), QStringLiteral("«\u202FVite 8\u202F» n’a plus d’avis"));
    EXPECT_EQ(decisions.redo(), QStringLiteral("«\u202FVite 8\u202F» a de nouveau l’avis Pépite"));
}

TEST_F(DecisionsTest, undo_leaves_alone_what_was_written_or_moved_meanwhile) {
    decisions.keep(id);
    shelf.store.setNote(QUuid::fromString(id), QStringLiteral("à lire le soir"));
    decisions.undo();
    EXPECT_EQ(status(), TopicStatus::Inbox);
    EXPECT_EQ(shelf.topic(id)->note, QStringLiteral("à lire le soir"));

    decisions.keep(id);
    shelf.clock.moment = shelf.clock.moment.addSecs(5);
    shelf.store.markDone(QUuid::fromString(id), Worth::Gem); // not by these hands
    EXPECT_TRUE(decisions.undo().contains(QStringLiteral("entre-temps")));
    EXPECT_EQ(status(), TopicStatus::Done);
    EXPECT_FALSE(decisions.canUndo());
    EXPECT_FALSE(decisions.canRedo());
}

TEST_F(DecisionsTest, scores_and_notes_are_taken_back_in_the_order_they_came) {
    const auto own = [this] { return shelf.topic(id)->correction; };
    const auto note = [this] { return shelf.topic(id)->note; };
    const auto scored = [this](int score) {
        return correctionOf(score, {}, QStringLiteral("Vieux"), shelf.clock.now());
    };
    decisions.keep(id);
    EXPECT_TRUE(decisions.setCorrection(id, scored(4)));
    EXPECT_TRUE(decisions.setNote(id, QStringLiteral("le soir")));
    EXPECT_TRUE(decisions.setNote(id, QStringLiteral("le soir"))); // changes nothing: no step
    EXPECT_TRUE(decisions.setCorrection(id, scored(9)));
    EXPECT_TRUE(decisions.setCorrection(id, std::nullopt));
    EXPECT_TRUE(decisions.setNote(id, QString()));

    const auto name = [](const char *rest) {
        return QString::fromUtf8("«\u202FVite 8\u202F» ") + QString::fromUtf8(rest);
    };
    EXPECT_EQ(decisions.undo(), name("retrouve ce que tu y avais écrit"));
    EXPECT_EQ(note(), QStringLiteral("le soir"));
    EXPECT_EQ(decisions.undo(), name("a de nouveau ta note, 9"));
    EXPECT_EQ(own(), scored(9));
    EXPECT_EQ(decisions.undo(), name("a de nouveau ta note, 4"));
    EXPECT_EQ(decisions.undo(), name("n’a plus ce que tu y avais écrit"));
    EXPECT_FALSE(note());
    EXPECT_EQ(decisions.undo(),
              name("retrouve ma note, %1").arg(judgedScore(*shelf.topic(id)).value()));
    EXPECT_FALSE(own());
    EXPECT_EQ(status(), TopicStatus::Program);
    EXPECT_EQ(decisions.redo(), name("a de nouveau ta note, 4"));
    EXPECT_EQ(own(), scored(4));

    shelf.store.setCorrection(QUuid::fromString(id), scored(2)); // not by these hands
    EXPECT_EQ(decisions.undo(), name("a changé entre-temps, il reste comme il est"));
    EXPECT_EQ(own(), scored(2));
    decisions.undo();
    EXPECT_EQ(status(), TopicStatus::Inbox);
    EXPECT_FALSE(decisions.canUndo());
    EXPECT_FALSE(decisions.setNote(QStringLiteral("nothing"), QStringLiteral("x")));
}

} // namespace
} // namespace vorle
