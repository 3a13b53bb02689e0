#include "app/labels/RunLabels.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

TEST(RunLabels, say_what_a_run_came_to_in_one_two_and_many) {
    const struct {
        int added;
        bool cancelled;
        const char *said;
    } cases[] = {
        {0, false, "Rien de nouveau cette fois."},
        {1, false, "1 nouveau sujet dans «\u202FÀ trier\u202F»."},
        {1234, false, "1\u202F234 nouveaux sujets dans «\u202FÀ trier\u202F»."},
        {0, true, "Fouille arrêtée\u00A0: rien n’était encore jugé."},
        {1, true, "Fouille arrêtée\u00A0: 1 nouveau sujet dans «\u202FÀ trier\u202F»."},
        {2, true, "Fouille arrêtée\u00A0: 2 nouveaux sujets dans «\u202FÀ trier\u202F»."},
    };
    for (const auto &one : cases) {
        RunReport report;
        report.added = one.added;
        report.cancelled = one.cancelled;
        EXPECT_EQ(runResultText(report), QString::fromUtf8(one.said));
    }
}

TEST(RunLabels, say_when_a_limited_run_goes_on_and_what_is_left_of_it) {
    const QTimeZone paris("Europe/Paris");
    const QDateTime sunday(QDate(2026, 11, 22), QTime(10, 0), Qt::UTC);
    const struct {
        std::optional<QDateTime> until;
        int scopes;
        int links;
        QDateTime now;
        const char *said;
        const char *briefly;
    } cases[] = {
        {sunday.addSecs(7200), 3, 12, sunday,
         "Je garde tout et je continue aujourd’hui à 13:00\u00A0: il reste 3 recherches et 12 "
         "liens "
         "à juger.",
         "La suite aujourd’hui à 13:00"},
        {sunday.addDays(2), 1, 0, sunday,
         "Je garde tout et je continue mardi à 11:00\u00A0: il reste 1 recherche.",
         "La suite mardi à 11:00"},
        {{},
         0,
         1,
         sunday,
         "Il ne dit pas jusqu’à quand. Je garde tout\u00A0: il reste 1 lien à juger.",
         "La suite quand tu veux"},
        {sunday.addSecs(7200), 0, 2, sunday.addDays(1),
         "La suite de la fouille d’hier devait reprendre dimanche 22 novembre à 13:00\u00A0: il "
         "reste 2 liens à juger.",
         "La suite quand tu veux"},
    };
    RunReport report;
    for (const auto &one : cases) {
        RunWaits waits{sunday,
                       one.until,
                       QStringLiteral("Codex"),
                       QStringLiteral("You've hit your usage limit."),
                       one.scopes,
                       one.links,
                       sunday};
        EXPECT_EQ(waitsText(waits, one.now, paris), QString::fromUtf8(one.said));
        EXPECT_EQ(comingRestText(waits, one.now, paris), QString::fromUtf8(one.briefly));
        report.waits = waits;
    }
    EXPECT_EQ(waitsTitle(*report.waits), u"Codex a atteint sa limite.");
    EXPECT_EQ(keptRestText(*report.waits), u"Je garde tout\u00A0: il reste 2 liens à juger.");
    const QString later = QString::fromUtf8("Je garde tout, et je continue quand tu veux\u00A0: il "
                                            "reste 2 liens à juger.");
    EXPECT_EQ(putOffText(*report.waits, PutOff::Asked, sunday.addDays(1), paris), later);
    EXPECT_EQ(
        putOffText(*report.waits, PutOff::Asked, sunday, paris),
        u"Je continue quand tu veux (limite levée aujourd’hui à 13:00)\u00A0: il reste 2 liens "
        u"à juger.");
    EXPECT_EQ(putOffText(*report.waits, PutOff::Unanswered, sunday.addDays(1), paris),
              QString::fromUtf8("Plusieurs reprises sont restées sans réponse. ") + later);
    EXPECT_EQ(problemText(report), u"attend sa suite");
    EXPECT_EQ(runResultText(report), u"Rien de nouveau pour l’instant.");
    EXPECT_EQ(runNotices(report),
              QStringList{QString::fromUtf8("Codex a atteint sa limite. Ce qu’il dit\u00A0: "
                                            "You've hit your usage limit.")});
}

TEST(RunLabels, say_what_calls_took_as_far_as_the_agent_tells) {
    EXPECT_EQ(spentText(6, 130, 0.31), QStringLiteral("6 appels · 2 min 10 s · 0,31\u00A0$"));
    EXPECT_EQ(spentText(1, 42, 0, 41'200), QStringLiteral("1 appel · 42 s · 41\u202F200 jetons"));
    EXPECT_EQ(spentText(0, 0, 0), QStringLiteral("0 appel · 0 s"));
}

TEST(RunLabels, tell_the_facts_and_leave_out_an_unknown_cost) {
    RunReport report;
    report.scopes = {ScopeReport(), ScopeReport()};
    report.scopes[0].found = 1;
    report.read.seen = 1;
    report.read.meta = 1;
    report.read.none = 5; // those nobody could read
    report.seconds = 59.4;
    EXPECT_EQ(runFactsText(report), QStringLiteral("1 lien trouvé · 2 pages lues · 59 s"));
    report.steps = {StepReport{RunStep::Judge, 1, 0, 9, 0, 1'200}};
    EXPECT_TRUE(runFactsText(report).endsWith(QStringLiteral(" · 1\u202F200 jetons")));
    report.scopes[1].found = 11;
    report.seconds = 72;
    report.costUSD = 0.5;
    EXPECT_EQ(runFactsText(report),
              QStringLiteral("12 liens trouvés · 2 pages lues · 1 min 12 s · 0,50\u00A0$"));
    EXPECT_EQ(secondsText(59.5), QStringLiteral("1 min"));
    EXPECT_EQ(secondsText(-3), QStringLiteral("0 s"));
}

TEST(RunLabels, name_each_scope_and_why_it_failed) {
    ScopeReport scope;
    scope.name = QStringLiteral("Tes sujets");
    scope.found = 1;
    EXPECT_EQ(scopeName(scope), QStringLiteral("Tes sujets"));
    EXPECT_EQ(scopeText(scope), QStringLiteral("1 lien"));
    scope.origin = Origin::Suggestion;
    EXPECT_EQ(scopeName(scope), QStringLiteral("Tes sujets, seconde recherche"));
    scope.error = QStringLiteral("le serveur est occupé");
    EXPECT_EQ(scopeText(scope), QStringLiteral("le serveur est occupé"));
}

TEST(RunLabels, notices_are_a_line_each_and_a_stopped_run_missed_nothing) {
    RunReport report;
    EXPECT_TRUE(runNotices(report).isEmpty());
    report.failed = QStringLiteral("panne");
    report.warnings = {QStringLiteral("attention")};
    report.feeds = {{.site = QStringLiteral("lwn.net"), .problem = QStringLiteral("muet")}};
    report.notNewer = {{.title = {}, .url = {}, .reason = QStringLiteral("Qt 6.4, déjà là")}};
    report.unjudged = {{.title = {}, .url = {}, .reason = QStringLiteral("occupé")}, DroppedLink()};
    report.surplus = {{.title = {}, .url = {}, .reason = QStringLiteral("trop")}};
    report.uncovered = {QStringLiteral("Rust"), QStringLiteral("Vélo")};
    const QStringList wanted{QStringLiteral("panne"),
                             QStringLiteral("attention"),
                             QStringLiteral("lwn.net\u00A0: muet"),
                             QStringLiteral("Mis à part\u00A0: Qt 6.4, déjà là"),
                             QStringLiteral("Liens non jugés\u00A0: 2. occupé"),
                             QStringLiteral("Liens de trop\u00A0: 1. trop"),
                             QStringLiteral("Rien trouvé pour\u00A0: Rust, Vélo")};
    EXPECT_EQ(runNotices(report), wanted);
    report.cancelled = true;
    EXPECT_EQ(runNotices(report), wanted.first(6));
}

TEST(RunLabels, name_the_next_run_and_none_without_a_schedule) {
    Settings settings;
    const QDateTime monday(QDate(2026, 11, 2), QTime(9, 30), Qt::UTC);
    settings.schedule = {{3}, 8, 0}; // Tuesday
    EXPECT_EQ(nextRunText(settings, monday, QTimeZone::utc()), QStringLiteral("demain à 8:00"));
    settings.schedule.weekdays.clear();
    EXPECT_EQ(nextRunText(settings, monday, QTimeZone::utc()), QString());
}

} // namespace
} // namespace vorle
