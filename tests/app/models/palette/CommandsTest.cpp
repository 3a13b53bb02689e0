#include "app/models/palette/Commands.h"
#include "tests/app/models/SectionsShelf.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;
using Map = KeyboardMap;

class CommandsTest : public testing::Test, public test::SectionsShelf {
protected:
    QString add(const char *title, TopicStatus status = TopicStatus::Inbox) {
        return shelf.add(test::sampleTopic(QString::fromUtf8(title), status));
    }
    /// The labels of what is offered; "~" before one that only looks alike.
    QString offered(const char *words) const {
        QStringList labels;
        for (const Commands::Offer &offer : commands.offers(text(words))) {
            labels += (offer.near ? QStringLiteral("~") : QString()) + keyboard.label(offer.action);
        }
        return labels.join(u'|');
    }

    Decisions decisions{shelf.store};
    Map keyboard{AgentKind::Claude, KeySpelling::Glyphs};
    TopicActions actions{sections, decisions, keyboard};
    Commands commands{{keyboard, sections, actions, decisions, run, preferences}};
};

TEST_F(CommandsTest, only_what_can_act_now_is_offered) {
    const Map::Action ofTopics[] = {Map::Keep,      Map::Done,          Map::WorthGem,
                                    Map::FirstStep, Map::ToggleCard,    Map::CloseCard,
                                    Map::Correct,   Map::PreviousTopic, Map::ReadAgain};
    for (const Map::Action action : ofTopics) {
        EXPECT_FALSE(commands.canAct(action)) << action << ", without a topic";
    }
    EXPECT_FALSE(commands.canAct(Map::Undo));
    EXPECT_FALSE(commands.canAct(Map::StopRun));
    EXPECT_EQ(offered("garder"), QString());

    add("Sujet");
    EXPECT_TRUE(commands.canAct(Map::Keep));
    EXPECT_FALSE(commands.canAct(Map::Done)) << "it has no such key here";
    EXPECT_FALSE(commands.canAct(Map::NextTopic));
    EXPECT_EQ(commands.about(Map::Keep), text("Sujet"));
    EXPECT_EQ(commands.about(Map::RunNow), QString());
    actions.perform(Map::ToggleCard);
    EXPECT_FALSE(commands.canAct(Map::ToggleCard));
    EXPECT_TRUE(commands.canAct(Map::CloseCard));
    actions.perform(Map::Keep);
    EXPECT_TRUE(commands.canAct(Map::Undo));
    EXPECT_FALSE(commands.canAct(Map::Keep));
    sections.setCurrent(Section::Program);
    EXPECT_TRUE(commands.canAct(Map::FirstStep));
    EXPECT_TRUE(commands.canAct(Map::Done));
    EXPECT_TRUE(commands.isChosen(Map::GoProgram));
    sections.setCurrent(Section::Report);
    EXPECT_FALSE(commands.canAct(Map::Done));
}

TEST_F(CommandsTest, a_link_that_is_being_read_can_only_be_sent_away) {
    Topic link = test::sampleTopic(text("lien"), TopicStatus::Pending);
    link.capturedURL = link.sources.first().url;
    shelf.add(link);
    EXPECT_FALSE(commands.canAct(Map::Keep));
    EXPECT_TRUE(commands.canAct(Map::Dismiss));
    EXPECT_FALSE(commands.canAct(Map::Correct));
}

TEST_F(CommandsTest, are_found_by_their_words_and_by_others_the_nearest_first) {
    add("Sujet");
    EXPECT_EQ(offered(""),
              text("Fouiller maintenant|Ajouter un sujet|Aller au Programme|Aller à la Réserve|"
                   "Aller à la Bibliothèque|Aller à ton territoire|Aller au Bilan|Réglages|"
                   "Ces raccourcis"))
        << "and the section that is shown already is none";
    EXPECT_EQ(offered("reglages"), text("Réglages"));
    EXPECT_EQ(offered("préf"), text("Réglages"));
    EXPECT_EQ(offered("maintenant FOUIL"), text("Fouiller maintenant"));
    EXPECT_EQ(offered("reglgaes"), text("~Réglages"));
    EXPECT_EQ(offered("programme"), text("Garder au programme|Aller au Programme"));
    EXPECT_EQ(offered("texte"), text("Agrandir le texte|Réduire le texte"));
    EXPECT_EQ(offered("photo"), QString());
    for (const char *word : {"++", "c++", "c#", "a.b"}) {
        EXPECT_EQ(offered(word), QString()) << word;
    }
}

TEST_F(CommandsTest, the_size_of_type_goes_by_steps_between_its_bounds_and_is_said) {
    QStringList heard;
    QObject::connect(&commands, &Commands::said, [&](const QString &words) { heard += words; });
    const auto scale = [this] { return preferences.settings().textScale; };
    EXPECT_FALSE(commands.canAct(Map::UsualText));
    EXPECT_TRUE(commands.perform(Map::LargerText));
    EXPECT_EQ(scale(), 115);
    EXPECT_EQ(heard.takeLast(), text("Texte à 115\u202F%"));
    preferences.change(&Settings::textScale, 97); // by a command
    commands.perform(Map::LargerText);
    EXPECT_EQ(scale(), 100);
    preferences.change(&Settings::textScale, 97);
    commands.perform(Map::SmallerText);
    EXPECT_EQ(scale(), 90);
    for (int i = 0; i < 9; ++i) {
        commands.perform(Map::LargerText);
    }
    EXPECT_EQ(scale(), 150);
    EXPECT_FALSE(commands.canAct(Map::LargerText));
    EXPECT_EQ(heard.takeLast(), text("Le texte est déjà au plus grand."));
    for (int i = 0; i < 9; ++i) {
        commands.perform(Map::SmallerText);
    }
    EXPECT_EQ(scale(), 80);
    commands.perform(Map::UsualText);
    EXPECT_EQ(scale(), 100);
    EXPECT_FALSE(commands.perform(Map::RunNow));
}

} // namespace
} // namespace vorle
