// The steps of a run that follow the search, on the demonstration: the trusted site, the dead
// page, the release already in use, and what a page is told to be about.

#include "app/demo/DemoBlog.h"
#include "core/Preferences.h"
#include "judging/JudgeContext.h"
#include "search/discovery/Discovery.h"
#include "search/discovery/LockFile.h"
#include "search/discovery/Version.h"
#include "search/feeds/Feeds.h"
#include "search/run/FeedItemLine.h"
#include "search/run/JudgedProjects.h"
#include "search/web/PageReader.h"
#include "tests/app/demo/DemoAgent.h"
#include "tests/support/Wait.h"

#include <QSet>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::CandidatesAnswer;
using test::JudgmentsAnswer;
using testing::HasSubstr;

struct DugUp {
    QString id;
    bool found = false;
    QString url;
    QString title;
    QString what;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("id", &DugUp::id), json::field("found", &DugUp::found),
                          json::field("url", &DugUp::url), json::field("title", &DugUp::title),
                          json::field("what", &DugUp::what));
    }
};

struct DugAnswer {
    QList<DugUp> results;
    static constexpr auto jsonFields() {
        return std::tuple(json::field("results", &DugAnswer::results));
    }
};

class DemoWatchTest : public test::DemoAgent {
protected:
    DemoWatchTest() { demonstration->populate(preferences); }

    QString prompt(const char *name, const QList<std::pair<const char *, QString>> &values) const {
        QString text = resource(name, "md");
        for (const auto &[placeholder, value] : values) {
            text.replace(QString::fromLatin1(placeholder), value);
        }
        return text;
    }

    QList<Candidate> screened(const QStringList &lines, const QString &known) {
        return ask<CandidatesAnswer>(
                   prompt("sites-prompt",
                          {{"@TODAY", QStringLiteral("November 21, 2026")},
                           {"@PROJECTS", QStringLiteral("Tiravue: des tirages [Expo]; Potager")},
                           {"@INTERESTS", preferences.settings().interests.join(u", ")},
                           {"@TOOLS", QStringLiteral("none declared")},
                           {"@COUNT", QStringLiteral("6")},
                           {"@KNOWN", known},
                           {"@ITEMS", lines.join(u'\n')}}),
                   "candidates-schema")
            .candidates;
    }

    Preferences preferences{
        std::make_unique<SettingsFile>(demonstration->home() + QStringLiteral("/settings.json"))};
    HttpClient http{true};
};

TEST_F(DemoWatchTest, keeps_what_fits_of_the_trusted_sites_feed) {
    const SystemClock clock;
    const FeedsForRun run =
        test::waitFor(Feeds(http, clock).itemsForRun(preferences.settings().prioritySites, {}));
    ASSERT_EQ(run.items.size(), 8) << "all that the blog announced, but the item past a month";
    QSet<QString> links;
    QStringList lines;
    for (const FeedItem &item : run.items) {
        links += item.link;
        lines += feedItemLine(item);
        EXPECT_TRUE(item.date && item.date < clock.now());
        EXPECT_FALSE(item.title.isEmpty() || item.summary.contains(u'<'));
        EXPECT_EQ(test::waitFor(PageReader(http).read(item.link)).level, ReadLevel::Full);
    }
    const auto kept = screened(lines, QStringLiteral("none"));
    ASSERT_EQ(kept.size(), 3);
    QSet<QString> territory(preferences.settings().interests.begin(),
                            preferences.settings().interests.end());
    territory += QStringLiteral("Tiravue");
    for (const Candidate &candidate : kept) {
        EXPECT_TRUE(links.contains(candidate.url)) << candidate.url.toStdString();
        EXPECT_TRUE(territory.remove(candidate.about)) << candidate.about.toStdString();
        EXPECT_TRUE(json::fromRaw<ItemKind>(candidate.kind));
        EXPECT_LE(candidate.title.size(), 90);
    }
    for (const Candidate &other :
         screened(lines, QStringList{kept[0].url, kept[1].url}.join(u" ; "))) {
        EXPECT_TRUE(other.url != kept[0].url && other.url != kept[1].url);
    }
    EXPECT_EQ(screened({QStringLiteral("[a] Un fromager — sa cave (2026-11-20) https://a.org/b")},
                       QStringLiteral("none"))
                  .size(),
              0);
}

TEST_F(DemoWatchTest, finds_a_copy_of_the_dead_page_and_of_nothing_else) {
    const QString site = demonstration->site().address();
    const QString dead = QStringLiteral("/releases/expo-image-4-1");
    const QStringList links{site + QStringLiteral("/outils/plume-4b"), site + dead,
                            site + QStringLiteral(".example.org") + dead, QStringLiteral("?")};
    QString items;
    for (qsizetype i = 0; i < links.size(); ++i) {
        items += QStringLiteral("### id: n%1\nTitle: T\nLink: %2\nAbout: Expo\n\n")
                     .arg(QString::number(i), links[i]);
    }
    const auto dug = ask<DugAnswer>(prompt("dig-prompt", {{"@TODAY", QStringLiteral("2026-11-21")},
                                                          {"@ITEMS", items.trimmed()}}),
                                    "dig-schema")
                         .results;
    ASSERT_EQ(dug.size(), links.size());
    for (qsizetype i = 0; i < dug.size(); ++i) {
        EXPECT_EQ(dug[i].id, QStringLiteral("n%1").arg(i));
        EXPECT_EQ(dug[i].found, i == 1);
        EXPECT_EQ(dug[i].url.isEmpty() && dug[i].title.isEmpty() && dug[i].what.isEmpty(), i != 1);
    }
    const ReadPage copy = test::waitFor(PageReader(http).read(dug[1].url));
    EXPECT_EQ(copy.level, ReadLevel::Full);
    EXPECT_THAT(dug[1].what.toStdString(), HasSubstr("4.1.0 was released"));
    EXPECT_GE(dug[1].what.count(QStringLiteral(". ")), 2);
    for (const QString &sentence : dug[1].what.split(QStringLiteral(". "))) {
        EXPECT_TRUE(copy.text.contains(sentence.toUtf8())) << sentence.toStdString();
    }
}

TEST_F(DemoWatchTest, brings_one_release_that_the_project_already_has) {
    const QString folder = preferences.settings().projects.value(QStringLiteral("Tiravue"));
    const auto inUse = versionsInUse(folder, {tiravue().manifestName, tiravue().manifestText});
    const DemoCatalogue catalogue(QDate::currentDate());
    QStringList old;
    for (const Candidate &candidate : candidates(tiravue())) {
        const auto page = catalogue.pageOf(candidate.url, demonstration->site().address());
        ASSERT_TRUE(page);
        for (const QString &title : {candidate.title, page->title}) {
            if (versionNews(candidate.about, inUse.value(candidate.about), title, page->text)
                    .notNewer) {
                old += candidate.about;
            }
        }
    }
    EXPECT_EQ(old, (QStringList{QStringLiteral("i18next"), QStringLiteral("i18next")}));
}

TEST_F(DemoWatchTest, says_of_each_page_what_it_is_really_about) {
    const struct {
        const char *path;
        const char *why;
    } cases[] = {
        {"/carnet/semis-d-automne-balcon-et-petit-potager", "ton projet Potager"},
        {"/forum/t/limaces-sans-granules/88", "ton projet Potager"},
        {"/annonces/bourse-aux-graines", "ton projet Potager"},
        {"/carnet/trois-fois-moins-lourd", "Tiravue s’appuie sur"},
        {"/annonces/fin-des-fonctions-node-22", "Tiravue s’appuie sur"},
        {"/video/galeries-accessibles", "« accessibilité des applications mobiles »"},
        {"/carnet/modeles-locaux-douze-portables", "« modèles d’IA en local »"},
        {"/carnet-du-web/stenope-et-pellicule-perimee", "« photographie argentique »"},
        {"/carnet-du-web/six-mois-sans-reseaux", "Rien dans ton territoire"},
        {"/sujets/v%C3%A9lo_en_ville/retour", "« vélo en ville »"},
        {"/sujets/une_application_mobile_en_ville/retour", "Rien dans ton territoire"},
    };
    const DemoCatalogue catalogue(QDate::currentDate());
    QList<JudgeCandidate> blocks;
    for (const auto &[path, why] : cases) {
        const auto page = catalogue.at(QString::fromLatin1(path));
        ASSERT_TRUE(page) << path;
        blocks += JudgeCandidate{QString::number(blocks.size()),
                                 page->headline,
                                 page->path,
                                 ItemKind::Article,
                                 ReadLevel::Full,
                                 {},
                                 {},
                                 page->text.toUtf8()};
    }
    const QList<ProjectSnapshot> projects =
        test::waitFor(askProjects(preferences.settings().projects));
    const JudgeProfile profile =
        judgeContextSource(preferences, judgedProjects(projects, preferences.settings()), {})
            .profile;
    const QString prompt =
        judgePrompt(resource("judge-prompt", "md"), QDate::currentDate(), profile, {}, {}, blocks);
    EXPECT_THROW(ask<JudgmentsAnswer>(prompt, "judge-schema"), AgentError) << "fails once";
    const auto judgments = ask<JudgmentsAnswer>(prompt, "judge-schema").judgments;
    ASSERT_EQ(judgments.size(), static_cast<qsizetype>(std::size(cases)));
    for (qsizetype i = 0; i < judgments.size(); ++i) {
        EXPECT_THAT(judgments[i].why.toStdString(), HasSubstr(cases[i].why)) << cases[i].path;
    }
}

} // namespace
} // namespace vorle
