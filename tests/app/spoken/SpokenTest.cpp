// What a screen reader is told by the program itself, over the accessibility bus of a system. What
// is read is held against rules, not against a copy of it.

#include "tests/app/spoken/ScreenReader.h"
#include "tests/support/Text.h"

#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::ScreenReader;
using test::Spoken;
using test::text;

bool holdsOthers(const Spoken &part) {
    static const QSet roles{text("panel"), text("list"), text("dialog"), text("page tab list")};
    return roles.contains(part.role);
}

/// What is wrong with a part by itself and beside the others of what it is in; "" for nothing.
QString faultOf(const Spoken::Way &way) {
    static const QRegularExpression loose(text("^[ ,.:·]|[ :·]$|[^+],$"));
    static const QSet silent{text("unknown"), text("filler"), text("invalid"), QString()};
    const Spoken &part = *way.last();
    if (silent.contains(part.role)) {
        return text("nobody can say what it is");
    }
    if (part.name.trimmed().isEmpty() && !holdsOthers(part)) {
        return text("has no name");
    }
    if (part.name.contains(loose)) {
        return text("is told with what only looks like something");
    }
    if (part.description == part.name && way.size() > 1 && !part.name.isEmpty()) {
        return text("is told twice");
    }
    if (way.size() == 1) {
        return {};
    }
    const Spoken &around = *way[way.size() - 2];
    if (holdsOthers(part) && holdsOthers(around) && !part.name.isEmpty() &&
        part.name == around.name) {
        return text("is told once more by what it is in");
    }
    const auto alike = std::ranges::count_if(around.parts, [&](const Spoken &other) {
        return other.isControl() && part.isControl() && other.told() == part.told() &&
               other.description == part.description;
    });
    return alike > 1 ? text("cannot be told from the one beside it") : QString();
}

/// Each on a line; "" for none.
std::string faultsOf(const Spoken &window) {
    QString faults;
    window.walk([&](const Spoken::Way &way) {
        if (const QString fault = faultOf(way); !fault.isEmpty()) {
            faults += way.last()->told() + u' ' + fault + u'\n';
        }
        return true;
    });
    return faults.toStdString();
}

/// The part of the window that holds the section, null while something lies over it.
const Spoken *contentOf(const Spoken &window, const QString &title) {
    for (const Spoken &part : window.parts) {
        if (part.role == u"panel" && part.name == title && !part.parts.isEmpty()) {
            return &part;
        }
    }
    return nullptr;
}

const Spoken *dialogOf(const Spoken &window) {
    const auto dialogs = window.all("dialog");
    return dialogs.size() == 1 ? dialogs.first() : nullptr;
}

const Spoken *named(const Spoken &window, const char *role, const QString &beginning) {
    const auto found = window.all([&](const Spoken &part) {
        return part.role == QLatin1String(role) && part.name.startsWith(beginning);
    });
    return found.isEmpty() ? nullptr : found.first();
}

/// The cards of a list, with the one that is chosen and has the focus.
struct Cards {
    explicit Cards(const Spoken &window)
        : all(window.all([](const Spoken &part) {
            return part.role == u"list item" && part.name.startsWith(text("Note "));
        })) {
        for (const Spoken *card : all) {
            if (card->is(Spoken::Selected) && card->is(Spoken::Focused)) {
                chosen += card;
            }
        }
    }
    QList<const Spoken *> all;
    QList<const Spoken *> chosen;
    QString title() const { return chosen.isEmpty() ? QString() : chosen.first()->name; }
};

TEST(SpokenTest, every_section_is_told_with_its_parts_its_headings_and_all_that_can_be_done) {
    ScreenReader reader;
    for (const auto &[key, section] :
         {std::pair("ctrl+1", "À trier"), std::pair("ctrl+2", "Programme"),
          std::pair("ctrl+3", "Réserve"), std::pair("ctrl+4", "Bibliothèque"),
          std::pair("ctrl+5", "Ton territoire"), std::pair("ctrl+6", "Bilan")}) {
        reader.type({key});
        const QString title = text(section);
        for (const char *further : {"", "Next", "Next", "Next", "Next", "Next"}) {
            if (*further != '\0') {
                reader.type({further}); // to what lies below
            }
            const Spoken window = reader.windowOnce([&](const Spoken &now) {
                return contentOf(now, title) != nullptr && faultsOf(now).empty();
            });
            ASSERT_EQ(faultsOf(window), "") << window.lines();
            const Spoken *content = contentOf(window, title);
            ASSERT_NE(content, nullptr) << window.lines();
            const auto headings = content->all("heading");
            ASSERT_FALSE(headings.isEmpty()) << window.lines();
            EXPECT_EQ(headings.first()->name, title);
            EXPECT_NE(named(window, "panel", text("Barre latérale")), nullptr) << window.lines();
            const auto tabs = window.all("page tab");
            EXPECT_EQ(tabs.size(), 6);
            for (const Spoken *tab : tabs) {
                EXPECT_EQ(tab->is(Spoken::Selected), tab->name.startsWith(title)) << window.lines();
            }
        }
    }
}

TEST(SpokenTest, lists_are_read_from_top_to_bottom_and_say_how_far_one_is) {
    ScreenReader reader;
    reader.type({"Down", "g", "ctrl+z", "Next", "Home"}); // rows that were made late
    const Spoken window =
        reader.windowOnce([](const Spoken &now) { return Cards(now).chosen.size() == 1; });
    const Spoken *list = named(window, "list", text("12 sujets"));
    ASSERT_NE(list, nullptr) << window.lines();
    ASSERT_GE(list->parts.size(), 4) << window.lines();
    EXPECT_EQ(list->parts.first().told(), text("heading « Urgent »")) << window.lines();
    int place = 0;
    for (const Spoken *card : Cards(*list).all) {
        EXPECT_TRUE(card->description.startsWith(text("%1 sur 12").arg(++place))) << window.lines();
    }
    EXPECT_GE(place, 2);
    const Spoken *open = Cards(*list).chosen.first();
    EXPECT_TRUE(open->description.contains(text("Tiravue, Faille, 15 min"))) << window.lines();

    reader.type({"ctrl+6"});
    const Spoken report = reader.windowOnce(
        [](const Spoken &now) { return named(now, "list", text("En chiffres")) != nullptr; });
    const Spoken *figures = named(report, "list", text("En chiffres"));
    ASSERT_NE(figures, nullptr) << report.lines();
    ASSERT_EQ(figures->parts.size(), 7) << report.lines(); // the days of a week
    for (const Spoken &row : figures->parts) {
        EXPECT_TRUE(row.name.contains(
            QRegularExpression(text("^\\w+\\. \\d+ : \\d+ trouvés?, \\d+ gardés?, \\d+ faits?$"))))
            << row.name.toStdString();
    }
}

TEST(SpokenTest, a_panel_is_a_dialog_and_nothing_behind_it_is_come_upon) {
    ScreenReader reader;
    const auto expectAlone = [&](const QString &name) {
        const Spoken window = reader.windowOnce([&](const Spoken &now) {
            const Spoken *dialog = dialogOf(now);
            return dialog != nullptr && dialog->name == name && faultsOf(now).empty();
        });
        const Spoken *dialog = dialogOf(window);
        ASSERT_NE(dialog, nullptr) << window.lines();
        EXPECT_EQ(dialog->name, name);
        ASSERT_EQ(faultsOf(window), "") << window.lines();
        EXPECT_FALSE(
            dialog->all([](const Spoken &part) { return part.is(Spoken::Focused); }).isEmpty())
            << window.lines();
        for (const Spoken &part : window.parts) {
            if (&part != dialog) {
                EXPECT_TRUE(part.parts.isEmpty()) << part.told().toStdString();
                EXPECT_FALSE(part.isControl()) << part.told().toStdString();
            }
        }
    };
    const auto expectBack = [&] {
        const auto isBack = [](const Spoken &now) {
            return dialogOf(now) == nullptr && Cards(now).chosen.size() == 1;
        };
        EXPECT_TRUE(isBack(reader.windowOnce(isBack)));
    };
    for (const auto &[key, name] :
         {std::pair("ctrl+k", "Rechercher"), std::pair("ctrl+comma", "Réglages"),
          std::pair("ctrl+n", "Ajouter un sujet"), std::pair("question", "Raccourcis clavier")}) {
        reader.type({key});
        expectAlone(text(name));
        reader.type({"Escape"});
        expectBack();
    }
    // What is opened by a button of a screen, pressed as a screen reader presses it.
    const Spoken inbox = reader.window();
    const Spoken *begin = named(inbox, "push button", text("Commencer"));
    ASSERT_NE(begin, nullptr) << inbox.lines();
    reader.press(*begin);
    expectAlone(text("Apprends-moi tes goûts"));
    reader.type({"Escape"});
    expectBack();
    // Each page of the settings.
    reader.type({"ctrl+comma"});
    for (int page = 0; page < 5; ++page) {
        reader.type({"Down"});
        expectAlone(text("Réglages"));
    }
}

TEST(SpokenTest, the_card_that_keys_act_on_is_told_and_so_is_each_decision) {
    ScreenReader reader;
    const auto chosen = [&] {
        return Cards(reader.windowOnce(
                         [](const Spoken &now) { return Cards(now).chosen.size() == 1; }))
            .title();
    };
    const auto isTold = [&](const QString &card) {
        return reader.hears(text("here: ") + card) && reader.hears(text("chosen: ") + card);
    };
    const auto all = [&] { return reader.heard.join(u'\n').toStdString(); };
    const QString first = chosen();
    reader.heard.clear();
    reader.type({"j"});
    const QString second = chosen();
    ASSERT_NE(second, first);
    EXPECT_TRUE(isTold(second)) << all();
    reader.heard.clear();
    reader.type({"k"});
    EXPECT_TRUE(isTold(first)) << all();

    reader.heard.clear();
    reader.type({"g"});
    const QString title = second.section(text(". "), 1);
    EXPECT_TRUE(isTold(second)) << all();
    EXPECT_TRUE(reader.hears(text("said: Gardé. Suivant : ") + title)) << all();
    reader.heard.clear();
    reader.type({"ctrl+z"});
    EXPECT_TRUE(isTold(first)) << all();
    EXPECT_TRUE(reader.hears(text("said: « ") + first.section(text(". "), 1).left(30))) << all();
    EXPECT_TRUE(std::ranges::any_of(reader.heard, [](const QString &each) {
        return each.endsWith(text("revient dans À trier"));
    })) << all();
    // Nothing is said twice.
    EXPECT_EQ(reader.heard.filter(text("said: ")).size(), 1) << all();

    // To the end, by a screen reader's own press.
    for (int left = 12; left > 0; --left) {
        const Spoken window = reader.windowOnce([](const Spoken &now) {
            return named(now, "push button", text("Pas pour moi")) != nullptr;
        });
        const Spoken *dismiss = named(window, "push button", text("Pas pour moi"));
        ASSERT_NE(dismiss, nullptr) << window.lines();
        reader.heard.clear();
        reader.press(*dismiss);
        ASSERT_TRUE(reader.hears(text("said: Écarté. ") + (left > 1 ? text("Suivant") : QString())))
            << left << '\n'
            << all();
    }
    EXPECT_TRUE(reader.hears(text("said: Écarté. Tous les sujets de la fouille sont triés")))
        << all();
    EXPECT_TRUE(reader.hears(text("here: Tous les sujets de la fouille sont triés"))) << all();
    EXPECT_EQ(faultsOf(reader.window()), "") << reader.window().lines();
}

} // namespace
} // namespace vorle
