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

TEST(RunLabels, tell_the_facts_and_leave_out_an_unknown_cost) {
    RunReport report;
    report.scopes = {ScopeReport(), ScopeReport()};
    report.scopes[0].found = 1;
    report.read.seen = 1;
    report.read.meta = 1;
    report.read.none = 5; // those nobody could read
    report.seconds = 59.4;
    EXPECT_EQ(runFactsText(report), QStringLiteral("1 lien trouvé · 2 pages lues · 59 s"));
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
