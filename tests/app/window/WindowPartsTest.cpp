#include "app/window/Fonts.h"
#include "app/window/Visits.h"
#include "app/window/WindowState.h"

#include "storage/DurableFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(Typefaces, titles_are_set_in_the_font_that_the_program_holds) {
    const QDir held(QStringLiteral(":/vorle/fonts"));
    const Typefaces faces = Typefaces::load();
    EXPECT_FALSE(faces.text.isEmpty());
    if (held.isEmpty()) { // npm did not answer when this was built
        EXPECT_EQ(faces.display, faces.text) << "titles are set in the face of the rest";
        return;
    }
    EXPECT_EQ(held.entryList(),
              QStringList{QStringLiteral("bricolage-grotesque-latin-700-normal.ttf")})
        << "a Mac takes no WOFF file";
    EXPECT_EQ(faces.display, QStringLiteral("Bricolage Grotesque"));
}

TEST(WindowState, a_window_always_comes_back_where_it_can_be_seen) {
    const QList<QRect> screens{{0, 25, 1440, 875}, {1440, 0, 1920, 1080}};
    const QSize usual(1000, 700);
    struct Case {
        QRect wanted;
        QRect expected;
    };
    const std::initializer_list<Case> cases{
        {{100, 100, 900, 600}, {100, 100, 900, 600}},
        {{1500, 50, 1200, 800}, {1500, 50, 1200, 800}},
        {{}, {220, 113, 1000, 700}},                     // never shown: the middle
        {{9000, 9000, 900, 600}, {220, 113, 1000, 700}}, // on a screen that is gone
        {{1300, 100, 900, 600}, {1440, 100, 900, 600}},  // over an edge: to the larger part
        {{-500, -300, 900, 600}, {0, 25, 900, 600}},     // above the menu bar
        {{0, 25, 5000, 4000}, {1440, 0, 1920, 1080}},    // larger than every screen
    };
    for (const Case &each : cases) {
        const QRect place = onScreen(each.wanted, usual, screens);
        EXPECT_EQ(place, each.expected)
            << each.wanted.x() << " " << each.wanted.y() << " gave " << place.x() << " "
            << place.y() << " " << place.width() << " " << place.height();
    }
}

TEST(WindowState, the_small_panel_hangs_from_its_item_and_stays_whole) {
    const QSize panel(340, 260);
    const QRect screen(0, 25, 1440, 875);
    EXPECT_EQ(besideItem({700, 0, 24, 24}, panel, screen), QPoint(541, 31));    // bar at the top
    EXPECT_EQ(besideItem({1410, 0, 24, 24}, panel, screen), QPoint(1094, 31));  // near the edge
    EXPECT_EQ(besideItem({20, 904, 24, 24}, panel, screen), QPoint(6, 634));    // bar at the bottom
    EXPECT_EQ(besideItem({700, 0, 1, 1}, {2000, 2000}, screen), QPoint(6, 31)); // too large for it
}

TEST(Visits, what_is_new_came_since_the_person_was_last_here) {
    const QDateTime day(QDate(2026, 11, 2), QTime(9, 0), Qt::UTC);
    const auto at = [&](int minutes) { return day.addSecs(minutes * 60); };
    const auto seen = [&](int minutes) {
        return TopicsSeen{.at = at(minutes), .last = {}, .held = {}};
    };
    Visits visits;
    visits.come(at(0));
    EXPECT_FALSE(visits.newSince()) << "a first visit";
    visits.leave(seen(10));
    visits.come(at(39));
    EXPECT_FALSE(visits.newSince()) << "never away";
    visits.leave(seen(60));
    visits.leave(seen(70)); // it was not here
    EXPECT_EQ(visits.left(), seen(60));
    visits.expect(at(200)); // nobody looks
    visits.come(at(300));
    EXPECT_EQ(visits.newSince(), seen(60));
    visits.leave(seen(320));
    Visits later(visits.left(), visits.newSince());
    later.come(at(330));
    EXPECT_EQ(later.newSince(), seen(60)) << "the program was begun anew meanwhile";
    later.leave(seen(340));
    later.come(at(400));
    EXPECT_EQ(later.newSince(), seen(340));
}

TEST(WindowState, lies_beside_the_topics_and_a_broken_one_is_passed_over) {
    QTemporaryDir folder;
    const QString topics = folder.filePath(QStringLiteral("topics.json"));
    WindowState state;
    state.setGeometry({10, 20, 900, 600});
    state.section = 3;
    state.toldOfMenuBar = true;
    state.seen = TopicsSeen{.at = QDateTime(QDate(2026, 11, 2), QTime(9, 0), Qt::UTC),
                            .last = QUuid::createUuid(),
                            .held = {QUuid::createUuid()}};
    state.save(topics);
    EXPECT_EQ(WindowState::load(topics), state);
    EXPECT_EQ(WindowState::load(folder.filePath(QStringLiteral("demo-topics.json"))),
              WindowState());
    QFile file(folder.filePath(QStringLiteral("window.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{\"x\": \"no\"");
    file.close();
    EXPECT_EQ(WindowState::load(topics), WindowState());
    // Kept aside before the next place takes its name.
    state.save(topics);
    EXPECT_EQ(WindowState::load(topics), state);
    const QDir there(folder.path());
    const QStringList aside = there.entryList({QStringLiteral("window.json.illisible-*")});
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(there.entryInfoList({aside.first()}).first().size(), 10);
    // What a later version wrote stays; what the system does not let be read is not replaced.
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(json::encode(state).chopped(1) + R"(,"zoom":1.50})");
    file.close();
    WindowState later = WindowState::load(topics);
    later.section = 2;
    later.save(topics);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\"zoom\": 1.50"));
    file.close();
    ASSERT_TRUE(QFile::resize(file.fileName(), maxFileBytes + 1)); // more than is read
    WindowState unread = WindowState::load(topics);
    unread.save(topics);
    later.save(topics);
    EXPECT_EQ(file.size(), maxFileBytes + 1);
}

} // namespace
} // namespace vorle
