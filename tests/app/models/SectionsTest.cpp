#include "app/models/CardButton.h"
#include "tests/app/models/SectionsShelf.h"
#include "tests/support/Text.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;

using test::text;

class SectionsTest : public testing::Test, public test::SectionsShelf {
protected:
    QString page() const { return sections.emptyTitle() + u'|' + sections.emptyText(); }
    KeyboardMap::Action actionAt(int button) const {
        return sections.emptyActions().value(button).value<CardButton>().action;
    }

    QAbstractItemModelTester tester{&sections,
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SectionsTest, name_and_count_the_six) {
    shelf.store.add({sampleTopic(text("a")), sampleTopic(text("b"), TopicStatus::Reserve)});
    QStringList rows;
    for (int row = 0; row < sections.rowCount(); ++row) {
        const QModelIndex index = sections.index(row);
        rows += index.data(Sections::TitleRole).toString() + u' ' +
                index.data(Sections::CountRole).toString();
    }
    EXPECT_EQ(rows.join(u','),
              text("À trier 1,Programme 0,Réserve 1,Bibliothèque 0,Ton territoire 0,Bilan 0"));
    EXPECT_EQ(sections.topics(), &shelf.list(Section::Inbox));
    sections.setCurrent(Section::Report);
    EXPECT_EQ(sections.topics(), nullptr);
}

TEST_F(SectionsTest, say_where_the_topics_to_triage_come_from) {
    EXPECT_EQ(page(), text("Rien à trier pour l’instant|Ta première fouille remplira cette page."));
    EXPECT_EQ(actionAt(0), KeyboardMap::RunNow);

    const QDateTime moment = shelf.clock.moment; // Monday 2 November, 9:30
    Topic one = sampleTopic(text("a"));
    one.foundAt = moment.addSecs(-60);
    Topic two = one;
    two.id = QUuid();
    two.minutes = 27;
    preferences.change(&Settings::lastReport, LastReport{moment, 2, 0, 300, {}});
    preferences.change(&Settings::lastSearch, moment);
    shelf.store.add({one, two});
    const std::pair<int, const char *> cases[] = {
        {0, "2 sujets de la fouille d’aujourd’hui, 47\u00A0min de lecture"},
        {1, "2 sujets de la fouille d’hier, 47\u00A0min de lecture"},
        {3, "2 sujets de la fouille de lundi, 47\u00A0min de lecture"},
        {9, "2 sujets de la fouille du 2 novembre, 47\u00A0min de lecture"},
    };
    for (const auto &[days, subtitle] : cases) {
        shelf.clock.moment = moment.addDays(days);
        EXPECT_EQ(sections.subtitle(), text(subtitle));
    }
    shelf.store.add({sampleTopic(text("from the run before"))});
    EXPECT_EQ(sections.subtitle(),
              text("3 sujets, dont 2 de la fouille du 2 novembre, 1\u00A0h\u00A007 de lecture"));
    // A link added by hand is no find of the run's, whenever it came.
    Topic captured = one;
    captured.id = QUuid();
    captured.capturedURL = text("https://example.org/");
    shelf.store.add({captured});
    EXPECT_TRUE(sections.subtitle().startsWith(text("4 sujets, dont 2 ")));
    shelf.store.dismiss(shelf.store.topics().first()->id);
    EXPECT_TRUE(sections.subtitle().startsWith(text("3 sujets, dont 1 ")));
    EXPECT_EQ(page(), text("|"));

    for (const TopicPtr &topic : shelf.store.topics()) {
        shelf.store.dismiss(topic->id);
    }
    shelf.clock.moment = moment.addDays(1);
    EXPECT_EQ(page(), text("Tous les sujets de la fouille sont triés|Tout est trié. Prochaine "
                           "fouille lundi à 8:00"));
    EXPECT_EQ(actionAt(0), KeyboardMap::GoProgram);
    EXPECT_EQ(actionAt(1), KeyboardMap::GoReserve);
}

TEST_F(SectionsTest, have_a_page_where_there_is_nothing) {
    sections.setCurrent(Section::Program);
    EXPECT_EQ(page(), text("Ton programme est vide.|Ce que tu gardes au tri arrive ici, rangé par "
                           "urgence et par note."));
    sections.setCurrent(Section::Reserve);
    EXPECT_EQ(page(), text("Rien en réserve.|Les sujets mis de côté avec «\u202FPlus tard\u202F» "
                           "t’attendent ici. Je te les ressors quand ils bougent."));
    sections.setCurrent(Section::Library);
    EXPECT_EQ(page(), text("Ta bibliothèque est vide.|Les sujets que tu termines dans ton "
                           "programme viennent s’y ranger."));

    sections.setCurrent(Section::Program);
    const QString id = shelf.add(sampleTopic(text("a"), TopicStatus::Program));
    EXPECT_TRUE(sections.emptyTitle().isEmpty());
    EXPECT_FALSE(sections.subtitle().isEmpty());
    shelf.store.markDone(QUuid::fromString(id));
    EXPECT_TRUE(sections.emptyTitle().startsWith(text("Programme fini, il te reste ")));
    EXPECT_TRUE(sections.emptyText().endsWith(text("sans attendre lundi prochain à 8:00.")));
    EXPECT_EQ(actionAt(0), KeyboardMap::RunNow);
}

TEST_F(SectionsTest, an_empty_section_has_the_one_button_that_fills_it) {
    const auto help = [this](Section section) {
        sections.setCurrent(section);
        const auto button = sections.emptyActions().value(0).value<CardButton>();
        EXPECT_EQ(sections.emptyActions().size(), 1);
        EXPECT_TRUE(button.primary);
        return button.text + u' ' + QString::number(button.action);
    };
    const auto said = [](const char *words, KeyboardMap::Action action) {
        return text(words) + u' ' + QString::number(action);
    };
    const QString run = said("Fouiller maintenant", KeyboardMap::RunNow);
    for (const Section section : {Section::Program, Section::Reserve, Section::Library}) {
        EXPECT_EQ(help(section), run);
    }
    const QString one = shelf.add(sampleTopic(text("a")));
    for (const Section section : {Section::Program, Section::Reserve, Section::Library}) {
        EXPECT_EQ(help(section), said("Trier 1 sujet", KeyboardMap::GoInbox));
    }
    shelf.add(sampleTopic(text("b")));
    EXPECT_EQ(help(Section::Reserve), said("Trier 2 sujets", KeyboardMap::GoInbox));
    shelf.store.keep(QUuid::fromString(one));
    EXPECT_EQ(help(Section::Library), said("Voir le programme", KeyboardMap::GoProgram));
    // Done, with time left: its text speaks of a run. With none left, of nothing.
    shelf.store.markDone(QUuid::fromString(one));
    EXPECT_EQ(help(Section::Program), run);
    preferences.change(&Settings::weeklyMinutes, 1);
    EXPECT_EQ(help(Section::Program), said("Trier 1 sujet", KeyboardMap::GoInbox));
    shelf.store.dismiss(shelf.list(Section::Inbox).topics().first()->id);
    EXPECT_EQ(help(Section::Program), said("Voir la bibliothèque", KeyboardMap::GoLibrary));
}

} // namespace
} // namespace vorle
