#include "app/models/palette/CommandPalette.h"
#include "tests/app/models/SectionsShelf.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::spinUntil;
using test::text;
using Map = KeyboardMap;

class CommandPaletteTest : public testing::Test, public test::SectionsShelf {
protected:
    ~CommandPaletteTest() override { test::waitFor(search.stopped()); }

    QString add(const char *title, TopicStatus status = TopicStatus::Inbox) {
        Topic topic = test::sampleTopic(QString::fromUtf8(title), status);
        topic.foundAt = topic.foundAt.addSecs(++m_added);
        return shelf.add(topic);
    }
    void type(const char *words) {
        palette.setQuery(text(words));
        spinUntil([this] { return !palette.busy(); });
    }
    /// All rows, a heading with "#" before it, the chosen one with ">".
    QString rows() const {
        QStringList all;
        for (int row = 0; row < palette.rowCount(); ++row) {
            const PaletteEntry entry = palette.at(row);
            all += (entry.heading ? QStringLiteral("#") : QString()) +
                   (row == palette.current() ? QStringLiteral(">") : QString()) + entry.plain;
        }
        return all.join(u'|');
    }
    QString chosen() const { return palette.at(palette.current()).plain; }

    Decisions decisions{shelf.store};
    Map keyboard{AgentKind::Claude, KeySpelling::Glyphs};
    TopicActions actions{sections, decisions, keyboard};
    Commands commands{{keyboard, sections, actions, decisions, run, preferences}};
    TopicSearch search{shelf.store};
    CommandPalette palette{shelf.store, commands, search};
    QAbstractItemModelTester tester{&palette,
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};

private:
    int m_added = 0;
};

TEST_F(CommandPaletteTest, has_commands_and_what_was_last_touched_before_a_letter_is_typed) {
    const QString first = add("Premier");
    for (const char *title : {"B", "C", "D", "E", "F"}) {
        add(title, TopicStatus::Reserve);
    }
    add("Écarté", TopicStatus::Dismissed);
    EXPECT_EQ(palette.rowCount(), 0) << "nobody looks";
    palette.open();
    EXPECT_TRUE(rows().startsWith(text("#Commandes|>Fouiller maintenant|Ajouter un sujet")));
    EXPECT_TRUE(rows().endsWith(text("#Récents|F|E|D|C|B"))) << rows().toStdString();
    EXPECT_EQ(palette.countText(), text("6 sujets"));
    decisions.keep(first);
    spinUntil([this] { return rows().contains(text("Annuler le dernier tri")); });
    EXPECT_TRUE(rows().endsWith(text("#Récents|F|E|D|C|B"))) << "a list under the eye stays";
    EXPECT_EQ(chosen(), text("Fouiller maintenant")) << "it stays what it is";
    palette.step(-3);
    EXPECT_EQ(chosen(), text("Fouiller maintenant"));
    palette.close();
    palette.open();
    EXPECT_TRUE(rows().endsWith(text("#Récents|Premier|F|E|D|C"))) << rows().toStdString();
    palette.step(99);
    EXPECT_EQ(chosen(), text("C"));
    EXPECT_EQ(palette.headings() + palette.lines() + palette.recents(), palette.rowCount());
    palette.choose(0);
    EXPECT_EQ(chosen(), text("C")) << "a heading is no choice";
    palette.choose(-1);
    palette.choose(99);
    EXPECT_EQ(chosen(), text("C"));
}

TEST_F(CommandPaletteTest, finds_commands_and_topics_and_keeps_the_chosen_one_while_a_run_lands) {
    add("Garder la photo");
    add("Photo argentique", TopicStatus::Done);
    palette.open();
    type("photo");
    EXPECT_EQ(rows(), text("#Sujets|>Photo argentique|Garder la photo"));
    EXPECT_EQ(palette.at(1).title, text("<b>Photo</b> argentique"));
    EXPECT_EQ(palette.at(1).place, text("Bibliothèque"));
    EXPECT_EQ(palette.at(1).section, static_cast<int>(Section::Library));
    EXPECT_EQ(palette.at(1).badge.digits, text("7"));
    EXPECT_EQ(palette.hits(), 2);
    EXPECT_EQ(palette.countText(), text("2 sujets"));
    palette.step(1);
    add("Photo d’une fouille");
    spinUntil([this] { return palette.rowCount() == 4; });
    EXPECT_EQ(rows(), text("#Sujets|Photo d’une fouille|Photo argentique|>Garder la photo"));
    type("garder");
    EXPECT_EQ(rows(), text("#Commandes|>Garder au programme|#Sujets|Garder la photo"));
    EXPECT_EQ(palette.at(1).title, text("<b>Garder</b> au programme"));
    EXPECT_EQ(palette.at(1).keys, text("G"));
    EXPECT_EQ(palette.at(1).place, text("Garder la photo"));
    type("gardre"); // a command that only looks alike stands behind the topics
    EXPECT_EQ(rows(), text("#Sujets|>Garder la photo|#Commandes|Garder au programme"));
    type("bib photo");
    EXPECT_EQ(rows(), text("#Bibliothèque|>Photo argentique"));
    type("introuvable");
    EXPECT_EQ(rows(), QString());
    EXPECT_EQ(palette.current(), -1);
    palette.step(1);
    EXPECT_EQ(palette.current(), -1);
    EXPECT_EQ(palette.countText(), text("Rien trouvé pour «\u202Fintrouvable\u202F»."));
}

TEST_F(CommandPaletteTest, only_its_name_puts_what_acts_before_the_topics_that_have_the_word) {
    add("Claude, un agent pour ton terminal", TopicStatus::Program);
    add("Fouiller des archives, un run de recherche en C++");
    add("Ce qui est utile, garder, écarter, annuler, ouvrir, lancer");
    add("Le programme et les réglages");
    sections.setCurrent(Section::Program);
    palette.open();
    const struct {
        const char *words;
        const char *first;
    } cases[] = {
        // Named by words that topics have too, or found by words beside its name.
        {"claude", "Claude, un agent pour ton terminal"},
        {"claude code", "Lancer dans Claude Code ou approfondir avec Claude"}, // no topic has both
        {"agent", "Claude, un agent pour ton terminal"},
        {"terminal", "Claude, un agent pour ton terminal"},
        {"recherche", "Fouiller des archives, un run de recherche en C++"},
        {"run", "Fouiller des archives, un run de recherche en C++"},
        {"fouil", "Fouiller des archives, un run de recherche en C++"},
        {"++", "Fouiller des archives, un run de recherche en C++"},
        {"c++", "Fouiller des archives, un run de recherche en C++"},
        {"écarter", "Ce qui est utile, garder, écarter, annuler, ouvrir, lancer"},
        // Its name, from the beginning on.
        {"fouiller", "Fouiller maintenant"},
        {"fouiller maint", "Fouiller maintenant"},
        {"lancer", "Lancer dans Claude Code ou approfondir avec Claude"},
        {"ouvrir la", "Ouvrir la source"},
        {"retirer", "Retirer"},
        // What only shows something may be called by any of its words.
        {"réglages", "Réglages"},
        {"bibliothèque", "Aller à la Bibliothèque"},
        {"reg", "Réglages"},
    };
    for (const auto &each : cases) {
        type(each.words);
        EXPECT_EQ(chosen(), text(each.first)) << each.words << ": " << rows().toStdString();
    }
    // Behind the topics it is still there.
    type("terminal");
    EXPECT_TRUE(rows().startsWith(text("#Sujets|>Claude, un agent pour ton terminal|#Commandes|"
                                       "Lancer dans Claude Code ou approfondir avec Claude")))
        << rows().toStdString();
    sections.setCurrent(Section::Inbox);
    type("programme");
    EXPECT_TRUE(rows().startsWith(text("#Commandes|>Aller au Programme|#Sujets|Le programme")))
        << rows().toStdString();
    EXPECT_TRUE(rows().endsWith(text("#Commandes|Garder au programme")));
    type("ecran titre interface"); // nothing at all
    EXPECT_EQ(palette.current(), -1);
    type("raccourcis");
    EXPECT_EQ(palette.countText(), text("1 commande, aucun sujet"));
}

TEST_F(CommandPaletteTest, what_takes_the_place_of_the_chosen_row_is_not_chosen) {
    add("A");
    const QString second = add("B");
    for (const char *title : {"C", "D", "E", "F"}) {
        add(title);
    }
    palette.open();
    ASSERT_EQ(chosen(), text("Fouiller maintenant"));
    run.start(); // by its schedule: the row is another's now
    spinUntil([this] { return !rows().contains(text("Fouiller maintenant")) || !run.running(); });
    EXPECT_NE(chosen(), text("Arrêter la fouille"));
    spinUntil([this] { return !run.running(); });
    palette.close();

    palette.open();
    palette.step(99);
    ASSERT_EQ(chosen(), text("B"));
    add("Tombé d’une fouille");
    QCoreApplication::processEvents();
    EXPECT_EQ(chosen(), text("B"));
    shelf.store.dismiss(QUuid::fromString(second)); // by another hand
    spinUntil([this] { return !rows().endsWith(text("B")); });
    EXPECT_EQ(palette.current(), -1) << rows().toStdString();
    palette.step(1); // from where it stood
    EXPECT_EQ(chosen(), palette.at(palette.rowCount() - 1).plain);
}

} // namespace
} // namespace vorle
