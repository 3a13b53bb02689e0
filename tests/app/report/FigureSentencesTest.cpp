#include "app/report/FigureSentences.h"
#include "app/report/ReportMarkdown.h"
#include "core/Corrections.h"
#include "tests/support/Text.h"

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;
using testing::HasSubstr;

/// As a person reads it: every blank is one.
std::string read(const QString &sentence) { return sentence.simplified().toStdString(); }

WatchFigures month(int found, int kept, int done) {
    WatchFigures figures;
    figures.kind = PeriodKind::Month;
    figures.found = {found, kept, 0, 0};
    figures.done = done;
    figures.parts = QList<WatchFigures::Part>(4);
    figures.partsBegun = 4;
    return figures;
}

TEST(FigureSentences, tell_what_was_found) {
    const auto said = [](const WatchFigures &figures) { return read(foundSentence(figures)); };
    EXPECT_EQ(said(month(128, 41, 23)),
              "32 sujets trouvés par semaine : tu en gardes 10 et tu en fais 6.");
    EXPECT_EQ(said(month(0, 0, 0)), "Rien de trouvé sur cette période.");
    EXPECT_EQ(said(month(0, 0, 1)),
              "Rien de trouvé sur cette période : tu as fait 1 sujet d’avant.");
    EXPECT_EQ(said(month(8, 0, 0)), "2 sujets trouvés par semaine : ils t’attendent encore.");
    WatchFigures week = month(1, 1, 0);
    week.kind = PeriodKind::Week;
    EXPECT_EQ(said(week), "1 sujet trouvé : tu en gardes 1 et tu en fais 0.");
    week.found.kept = 0;
    EXPECT_EQ(said(week), "1 sujet trouvé : il t’attend encore.");
    week.found.dismissed = 1;
    EXPECT_EQ(said(week), "1 sujet trouvé : tu ne l’as pas gardé.");
    EXPECT_EQ(said(month(3, 1, 5)),
              "3 sujets trouvés : tu en gardes 1, et tu en fais 5 avec ceux d’avant.");
}

TEST(FigureSentences, tell_the_time_done) {
    const auto said = [](int minutes, int weekly, int weeks, int held, int left, bool present) {
        WatchFigures figures = month(4, 1, 1);
        figures.minutes = minutes;
        figures.weeklyMinutes = weekly;
        figures.weeks = weeks;
        figures.weeksHeld = held;
        figures.minutesLeft = left;
        figures.present = present;
        return read(timeSentence(figures));
    };
    EXPECT_EQ(said(545, 180, 4, 1, 125, true), "Tu as tenu ton temps de veille une semaine sur "
                                               "quatre ; il t’en reste 2 h 05 cette semaine.");
    EXPECT_EQ(said(545, 180, 4, 3, 125, false),
              "Tu as tenu ton temps de veille trois semaines sur quatre.");
    EXPECT_EQ(said(900, 180, 4, 4, 0, true), "Tu as tenu ton temps de veille chaque semaine.");
    EXPECT_EQ(said(10, 180, 4, 0, 0, true),
              "Tu n’as encore tenu ton temps de veille aucune semaine.");
    EXPECT_EQ(said(65, 180, 1, 0, 115, true),
              "Tu as fait 1 h 05 de veille sur 3 h ; il t’en reste 1 h 55 cette semaine.");
    EXPECT_EQ(said(205, 180, 1, 1, 0, true), "Tu as fait 3 h 25 de veille : ton temps est tenu.");
    EXPECT_EQ(said(65, 0, 1, 0, 0, true), "Tu as fait 1 h 05 de veille.");
    EXPECT_EQ(said(60, 180, 0, 0, 0, false), "Tu as fait 1 h de veille.");
    EXPECT_EQ(said(0, 180, 1, 0, 180, true),
              "Pas encore de veille faite ; il t’en reste 3 h cette semaine.");
    EXPECT_EQ(said(0, 180, 4, 0, 0, false), "Pas de veille faite sur cette période.");
}

TEST(FigureSentences, tell_how_scores_and_sources_went) {
    WatchFigures figures;
    const auto score = [&](int of, int kept, int dismissed) {
        WatchFigures::Score column;
        column.score = of;
        column.kept = kept;
        column.dismissed = dismissed;
        column.found = kept + dismissed;
        figures.scores += column;
    };
    EXPECT_THAT(read(scoresSentence(figures)), HasSubstr("Pas encore assez"));
    score(9, 7, 3);
    EXPECT_EQ(read(scoresSentence(figures)), "À partir de 8, tu gardes 7 fois sur 10.");
    score(3, 1, 19); // seldom is not never
    EXPECT_EQ(read(scoresSentence(figures)),
              "À partir de 8, tu gardes 7 fois sur 10 ; en dessous de 6, 1 fois sur 10.");
    figures.scores.clear();
    score(10, 30, 1); // nor mostly always
    score(5, 0, 4);
    EXPECT_EQ(read(scoresSentence(figures)),
              "À partir de 8, tu gardes 9 fois sur 10 ; en dessous de 6, jamais.");
    figures.scores.clear();
    score(10, 5, 0);
    score(5, 0, 4);
    EXPECT_EQ(read(scoresSentence(figures)),
              "À partir de 8, tu gardes tout ; en dessous de 6, rien.");
    figures.scores.clear();
    score(8, 0, 5);
    EXPECT_EQ(read(scoresSentence(figures)), "À partir de 8, tu n’en gardes aucun.");
    figures.scores.clear();
    score(5, 0, 5);
    EXPECT_EQ(read(scoresSentence(figures)),
              "En dessous de 6, tu n’en gardes aucun ; rien n’a eu 8 ou plus.");
    figures.scores.clear();
    score(6, 2, 4);
    EXPECT_THAT(read(scoresSentence(figures)), HasSubstr("Rien n’a eu 8 ou plus"));

    const auto source = [&](WatchFigures::From from, const char *name, int kept, int found) {
        WatchFigures::Source each;
        each.from = from;
        each.name = text(name);
        each.kept = kept;
        each.found = found;
        figures.sources += each;
    };
    EXPECT_THAT(read(sourcesSentence(figures)), HasSubstr("Pas encore assez"));
    source(WatchFigures::From::Project, "Petit", 4, 4); // too few to be told
    source(WatchFigures::From::Sites, "Tes sites", 9, 14);
    EXPECT_EQ(read(sourcesSentence(figures)), "Tes sites sont les plus sûrs : 9 bons sur 14.");
    source(WatchFigures::From::Captures, "Capturés par toi", 3, 3);
    EXPECT_EQ(read(sourcesSentence(figures)),
              "Après tes captures, tes sites sont les plus sûrs : 9 bons sur 14.");
}

TEST(FigureSentences, tell_what_runs_corrections_and_reflexes_came_to) {
    WatchFigures figures;
    EXPECT_EQ(read(runsSentence(figures)), "Aucune fouille sur cette période.");
    EXPECT_EQ(read(correctionsSentence(figures)), "Tu n’as changé aucune de mes notes.");
    figures.runs = {{{}, 30, 9, 200, 0.31}, {{}, 34, 9, 250, 0.31}};
    figures.found.kept = 41;
    EXPECT_EQ(read(runsSentence(figures)),
              "Deux fouilles ont coûté 0,62 $, soit 1,5 cent par sujet gardé.");
    figures.found.kept = 0;
    EXPECT_EQ(read(runsSentence(figures)), "Deux fouilles ont coûté 0,62 $.");
    figures.runs = {{{}, 30, 9, 252, 0}};
    EXPECT_EQ(read(runsSentence(figures)), "Une fouille : 9 appels · 4 min 12 s.");
    figures.changed = {4, 2, 2.4, correctionReasons().last()};
    EXPECT_THAT(read(correctionsSentence(figures)),
                HasSubstr("Tu as changé six notes, quatre vers le haut et deux vers le bas, de 2 "
                          "points en moyenne ; le plus souvent : pas fiable."));
    figures.changed = {1, 0, 1, std::nullopt};
    EXPECT_EQ(read(correctionsSentence(figures)),
              "Tu as changé une note, vers le haut, de 1 point.");
    figures.withReflexes = {9, 9};
    EXPECT_EQ(reflexesSentence(figures), QString());
    figures.withReflexes = {0, 10};
    EXPECT_EQ(read(reflexesSentence(figures)), "Avec tes réflexes, ma note ne tombe jamais juste.");
    figures.withReflexes = {8, 10};
    figures.withoutReflexes = {14, 20};
    EXPECT_EQ(read(reflexesSentence(figures)), "Avec tes réflexes, ma note tombe juste 8 fois sur "
                                               "10 ; sans eux, 7 fois sur 10.");
}

TEST(ReportMarkdown, holds_strangers_words_in_their_cells) {
    WatchFigures figures = month(4, 1, 1);
    WatchFigures::Source source;
    source.name = text("a | b\n# titre");
    source.found = source.kept = 5;
    source.from = WatchFigures::From::Project;
    figures.sources += source;
    const QDateTime now(QDate(2026, 11, 18), QTime(10, 0), Qt::UTC);
    const QString page = reportMarkdown(
        figures, reportPeriod(PeriodKind::Month, now, 0, QLocale(), QTimeZone::utc()), now,
        QTimeZone::utc());
    EXPECT_THAT(page.toStdString(), HasSubstr("| a \\| b # titre | 5 | 5 |"));
    EXPECT_FALSE(page.contains(QStringLiteral("\n# titre"))) << page.toStdString();
}

} // namespace
} // namespace vorle
