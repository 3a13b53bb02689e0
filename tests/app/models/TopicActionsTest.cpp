#include "app/models/TopicActions.h"
#include "tests/app/models/SectionsShelf.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;
using Map = KeyboardMap;

/// The window's actions over the four lists, without a window.
class TopicActionsTest : public testing::Test, public test::SectionsShelf {
protected:
    TopicActionsTest() {
        const auto hear = [this](const QString &kind) {
            return [this, kind](const QString &words) { heard += kind + words; };
        };
        QObject::connect(&actions, &TopicActions::said, hear(QString()));
        QObject::connect(&actions, &TopicActions::decidedUnderPage, hear(QStringLiteral("under ")));
        QObject::connect(&actions, &TopicActions::decidedAloud,
                         [this](const QString &words) { aloud = words; });
        QObject::connect(&actions, &TopicActions::firstStepAsked, hear(QStringLiteral("step ")));
        QObject::connect(&actions, &TopicActions::readingAsked, hear(QStringLiteral("read ")));
        QObject::connect(&actions, &TopicActions::ghostLeft, [this] { ++ghosts; });
    }
    QString add(const char *title, int score, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = test::sampleTopic(QString::fromUtf8(title), status);
        topic.score = score;
        return shelf.add(topic);
    }
    TopicSelection &inbox() { return *actions.of(Section::Inbox); }
    /// What was said since, and how many lines were left.
    QString words() { return std::exchange(heard, {}).join(u'|'); }
    int lines() { return std::exchange(ghosts, 0); }

    Decisions decisions{shelf.store};
    Map keyboard{AgentKind::Claude, KeySpelling::Glyphs};
    TopicActions actions{sections, decisions, keyboard};
    QStringList heard;
    QString aloud;
    int ghosts = 0;
};

TEST_F(TopicActionsTest, each_decision_falls_on_the_chosen_topic_and_leaves_its_line) {
    struct Case {
        Section section;
        Map::Action action;
        TopicStatus status;
        const char *went;
    };
    const Case cases[] = {
        {Section::Inbox, Map::Keep, TopicStatus::Program, "Gardé · Programme"},
        {Section::Inbox, Map::Later, TopicStatus::Reserve, "Plus tard · Réserve"},
        {Section::Inbox, Map::Dismiss, TopicStatus::Dismissed, "Écarté · Pas pour moi"},
        {Section::Program, Map::Done, TopicStatus::Done, "Fait · Bibliothèque"},
        {Section::Program, Map::Postpone, TopicStatus::Reserve, "Reporté · Réserve"},
        {Section::Program, Map::Remove, TopicStatus::Inbox, "Retiré · À trier"},
        {Section::Reserve, Map::BackToTriage, TopicStatus::Inbox, "Remis · À trier"},
        {Section::Reserve, Map::WorthMeh, TopicStatus::Done, "Bof · Bibliothèque"},
        {Section::Reserve, Map::WorthUseful, TopicStatus::Done, "Utile · Bibliothèque"},
        {Section::Reserve, Map::WorthGem, TopicStatus::Done, "Pépite · Bibliothèque"},
    };
    constexpr TopicStatus homes[] = {TopicStatus::Inbox, TopicStatus::Program,
                                     TopicStatus::Reserve};
    for (const Case &each : cases) {
        const QString id = add(each.went, 9, homes[static_cast<int>(each.section)]);
        sections.setCurrent(each.section);
        actions.selection()->show(id);
        EXPECT_TRUE(actions.needsSight(each.action)) << each.went;
        EXPECT_TRUE(actions.perform(each.action)) << each.went;
        EXPECT_EQ(shelf.topic(id)->status, each.status) << each.went;
        EXPECT_EQ(actions.selection()->ghost().went, text(each.went));
        EXPECT_EQ(actions.selection()->ghost().topicId, id);
        EXPECT_EQ(lines(), 1);
        EXPECT_EQ(words(), QString());
    }
    // One line in the window: the last one's.
    EXPECT_FALSE(inbox().ghost().isShown());
    // A verdict on what is done already leaves it where it is, and no line.
    sections.setCurrent(Section::Library);
    const QString id = actions.selection()->currentId();
    actions.perform(Map::WorthUseful);
    EXPECT_EQ(shelf.topic(id)->worth, Worth::Useful);
    EXPECT_EQ(lines(), 0);
    EXPECT_EQ(aloud, text("Utile\u00A0: ") + shelf.topic(id)->title);
    for (const Section section : {Section::Inbox, Section::Reserve, Section::Library}) {
        EXPECT_FALSE(actions.of(section)->ghost().isShown());
    }
    EXPECT_FALSE(actions.needsSight(Map::Next));
    EXPECT_FALSE(actions.perform(Map::Search)) << "the window's own";
}

TEST_F(TopicActionsTest, undo_shows_what_comes_back_and_its_word_takes_the_place_of_the_line) {
    const QString nine = add("neuf", 9);
    const QString seven = add("sept", 7);
    actions.perform(Map::Keep);
    EXPECT_EQ(inbox().currentId(), seven);
    EXPECT_EQ(aloud, text("Gardé. Suivant\u00A0: sept. Note 7 sur 10"));
    actions.perform(Map::Dismiss); // the last card
    EXPECT_EQ(aloud, text("Écarté. ") + sections.emptyTitle());
    EXPECT_EQ(inbox().currentId(), QString());
    actions.perform(Map::Later); // one key too many
    EXPECT_EQ(lines(), 2);
    EXPECT_TRUE(inbox().ghost().isAlone());

    actions.perform(Map::Undo);
    EXPECT_EQ(words(), text("«\u202Fsept\u202F» revient dans À trier"));
    EXPECT_FALSE(inbox().ghost().isShown());
    EXPECT_EQ(inbox().currentId(), seven);
    actions.perform(Map::Undo);
    EXPECT_EQ(inbox().currentId(), nine);
    EXPECT_FALSE(words().isEmpty());
    actions.perform(Map::Undo); // nothing is left to
    EXPECT_EQ(words(), QString());
    actions.perform(Map::Redo);
    EXPECT_EQ(words(), text("«\u202Fneuf\u202F» repart dans ton programme"));
    EXPECT_EQ(inbox().currentId(), seven);
}

TEST_F(TopicActionsTest, what_is_not_judged_yet_is_sent_away_or_tried_again_and_nothing_else) {
    Topic link = test::sampleTopic(text("Un lien"), TopicStatus::Pending);
    link.capturedURL = text("https://example.org/lien");
    const QString id = shelf.add(link);
    const auto offered = [&] {
        QList<Map::Action> list;
        for (const QVariant &button :
             actions.buttons(Section::Inbox, shelf.list(Section::Inbox).card(0))) {
            list += button.value<CardButton>().action;
        }
        return list;
    };
    using Buttons = QList<Map::Action>;
    EXPECT_EQ(offered(), Buttons{Map::Dismiss});
    shelf.list(Section::Inbox).setCaptureProblem(link.id, text("L’IA ne répond pas."));
    EXPECT_EQ(offered(), (Buttons{Map::ReadAgain, Map::Dismiss}));
    shelf.list(Section::Inbox).setCaptureProblem(link.id, {});
    EXPECT_EQ(actions.keysHint(Section::Reserve),
              text("G garder · T remettre à trier · 1 2 3 bof, utile, pépite"));
    for (const Map::Action action : {Map::Keep, Map::Later}) {
        actions.perform(action);
        EXPECT_EQ(words(), text("Je lis encore cette page\u00A0: elle se décide une fois jugée."));
        EXPECT_EQ(shelf.topic(id)->status, TopicStatus::Pending);
        EXPECT_EQ(lines(), 0);
    }
    actions.perform(Map::ReadAgain);
    EXPECT_EQ(words(), text("read ") + id);
    actions.perform(Map::FirstStep);
    EXPECT_EQ(words(), text("step ") + id);
    actions.perform(Map::Dismiss);
    EXPECT_EQ(shelf.topic(id)->status, TopicStatus::Dismissed);
    EXPECT_EQ(lines(), 1);
    add("neuf", 9);
    EXPECT_EQ(offered(), (Buttons{Map::Keep, Map::Later, Map::Dismiss}));
    actions.perform(Map::Keep);
    actions.perform(Map::FirstStep); // there is none any more
    EXPECT_EQ(words(), QString());
}

TEST_F(TopicActionsTest, the_page_says_where_a_topic_went_and_is_put_away_with_its_section) {
    add("neuf", 9);
    const QString seven = add("sept", 7);
    const QString kept = add("gardé", 5, TopicStatus::Program);
    actions.perform(Map::ToggleCard);
    EXPECT_TRUE(inbox().isEnlarged());
    actions.perform(Map::Keep);
    EXPECT_EQ(words(), text("under Gardé · Programme\u00A0: neuf"));
    EXPECT_TRUE(inbox().isEnlarged());
    EXPECT_EQ(inbox().currentId(), seven);
    // The way to a topic that was found leads out of it.
    actions.showTopic(kept);
    EXPECT_FALSE(inbox().isEnlarged());
    EXPECT_EQ(actions.selection(), actions.of(Section::Program));
    EXPECT_EQ(actions.selection()->currentId(), kept);
    decisions.dismiss(seven);
    actions.showTopic(seven);
    EXPECT_EQ(words(), text("Écarté\u00A0: il n’est plus dans tes rubriques."));
    // Nothing falls on a topic where no list is.
    sections.setCurrent(Section::Report);
    EXPECT_EQ(actions.selection(), nullptr);
    for (const Map::Action action : {Map::Keep, Map::ToggleCard, Map::NextTopic, Map::FirstStep}) {
        actions.perform(action);
    }
    decisions.undo();
    EXPECT_EQ(inbox().currentId(), seven);
    EXPECT_EQ(words(), QString());
    // Nor is there a page without a topic.
    sections.setCurrent(Section::Library);
    actions.perform(Map::ToggleCard);
    EXPECT_FALSE(actions.selection()->isEnlarged());
}

} // namespace
} // namespace vorle
