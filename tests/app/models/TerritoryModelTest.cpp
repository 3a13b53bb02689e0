#include "app/models/territory/TerritoryModel.h"
#include "platform/fakes/FakeFilePicker.h"
#include "tests/core/Samples.h"
#include "tests/search/run/RunParts.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QSemaphore>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::text;

class TerritoryModelTest : public testing::Test {
protected:
    TerritoryModelTest() {
        for (RowsModel *rows : {model.projects()->rows(), model.interests(), model.sites()->rows(),
                                model.apps()->rows(), model.apps()->choices()}) {
            new QAbstractItemModelTester(
                rows, QAbstractItemModelTester::FailureReportingMode::Fatal, rows);
            QObject::connect(rows, &RowsModel::modelReset, rows, [this] { ++resets; });
        }
    }
    ~TerritoryModelTest() override {
        test::settle();
        EXPECT_EQ(resets, 0) << "a list that is reset loses the keyboard";
    }

    template <class Row>
    static QList<Row> rowsOf(RowsModel *model) {
        return static_cast<KeyedRows<Row> *>(model)->rows();
    }
    QList<ProjectRow> projects() { return rowsOf<ProjectRow>(model.projects()->rows()); }
    QList<SiteRow> sites() { return rowsOf<SiteRow>(model.sites()->rows()); }
    QString made(const char *name) {
        QDir(parts.folder.path()).mkpath(text(name));
        return QDir(parts.folder.filePath(text(name))).canonicalPath();
    }
    QString written(const char *name, const QByteArray &bytes) {
        test::writeFile(parts.folder.filePath(text(name)), bytes);
        return parts.folder.filePath(text(name));
    }

    test::FixedClock clock; // Monday 2 November 2026, 9:30
    test::RunParts parts{clock, QTimeZone::utc()};
    Preferences &preferences = parts.preferences;
    test::FakeFilePicker files;
    QList<discovery::App> installed;
    TerritoryModel model{{.preferences = parts.preferences,
                          .store = parts.store,
                          .asker = parts.asker,
                          .feeds = parts.feeds,
                          .files = files,
                          .clock = clock,
                          .apps = [this] { return installed; },
                          .zone = QTimeZone::utc()}};
    int resets = 0;
};

TEST_F(TerritoryModelTest, shows_what_a_command_writes_as_it_changes) {
    EXPECT_EQ(model.summary(), text("Ton territoire est vide."));
    test::writeFile(made("tiravue") + text("/package.json"),
                    R"({"dependencies":{"react":"^19.0.0"}})");
    preferences.change(&Settings::interests, {text("Rust"), text("Vélo"), text("Rust")});
    preferences.change(&Settings::interestWeights, {{text("Vélo"), 5}});
    // What is named by hand or by a file keeps to its line, and hides nothing.
    const QString sly = text("Tira\u202Evue\n\x1b[2J ; fin");
    preferences.change(&Settings::projects, {{sly, made("tiravue")}, {text("b"), text("/no/b")}});
    preferences.change(&Settings::projectDescriptions, {{sly, sly}});
    EXPECT_EQ(model.summary(), text("2 projets, 3 domaines"));
    test::spinUntil([&] { return !projects()[0].detail.isEmpty() && projects()[1].wrong; });
    EXPECT_EQ(projects()[0].shown, text("Tiravue [2J\u202F; fin"));
    EXPECT_EQ(projects()[0].detail, text("package.json · 1 dépendance"));
    EXPECT_EQ(projects()[0].labels, QStringList{text("React")});
    EXPECT_EQ(projects()[1].detail, text("Le dossier n’est plus là."));
    EXPECT_TRUE(projects()[1].astray);
    EXPECT_EQ(model.jobProposal(), text("Développeur web"));

    const auto interests = rowsOf<InterestRow>(model.interests());
    ASSERT_EQ(interests.size(), 2) << "one that a file names twice is one row";
    EXPECT_EQ(interests[0].weight, Preferences::defaultWeight);
    EXPECT_EQ(interests[1].weightText, text("importance 5 sur 5"));
    preferences.change(&Settings::radiusLevel, 6);
    EXPECT_EQ(model.radius(), 2);
    model.setRadius(2);
    EXPECT_EQ(preferences.settings().radiusLevel, 6) << "not written anew";
    model.setRadius(0);
    EXPECT_EQ(preferences.settings().radiusLevel, 0);
}

TEST_F(TerritoryModelTest, folders_are_taken_once_each_and_what_is_none_is_told) {
    const QString site = made("a/site");
    const QList<QUrl> dropped{QUrl::fromLocalFile(site), QUrl::fromLocalFile(made("b/site")),
                              QUrl::fromLocalFile(site + text("/../site/")),
                              QUrl(text("https://a.example/")), QUrl(text("file://autre/a"))};
    model.projects()->addFolders(dropped);
    test::settle();
    EXPECT_EQ(preferences.settings().projects,
              (QMap<QString, QString>{{text("site"), site}, {text("site 2"), made("b/site")}}));
    EXPECT_EQ(model.projects()->problem(),
              text("Ce dossier est déjà suivi, sous le nom «\u202Fsite\u202F»."));
    const std::pair<QUrl, const char *> refused[] = {
        {QUrl::fromLocalFile(written("liste.txt", "x")), "est un fichier"},
        {QUrl::fromLocalFile(text("/nulle/part")), "est introuvable"},
        {QUrl(text("https://a.example/")), "pas un dossier de ce disque"},
    };
    for (const auto &[url, why] : refused) {
        model.projects()->addFolders({url});
        test::settle();
        EXPECT_TRUE(model.projects()->problem().contains(text(why)))
            << model.projects()->problem().toStdString();
    }
    EXPECT_EQ(preferences.settings().projects.size(), 2);
    // One that went is found again elsewhere.
    files.answer = made("c");
    model.projects()->chooseFolderFor(text("site"));
    test::settle();
    EXPECT_EQ(preferences.settings().projects[text("site")], made("c"));
    files.answer.reset();
    model.projects()->chooseFolder();
    test::settle();
    EXPECT_EQ(preferences.settings().projects.size(), 2) << "the person gave up";
}

TEST_F(TerritoryModelTest, what_is_removed_comes_back_in_turn) {
    preferences.change(&Settings::interests, {text("a"), text("b")});
    preferences.change(&Settings::projects, {{text("P"), made("p")}});
    preferences.change(&Settings::prioritySites, {{text("c.example"), {}, {}}});
    preferences.change(&Settings::keptApps, {text("Xcode")});
    const Settings before = preferences.settings();
    model.removeInterest(text("a"));
    model.projects()->remove(text("P"));
    model.sites()->remove(text("c.example"));
    model.apps()->remove(text("Xcode"));
    EXPECT_EQ(model.undoCount(), 4);
    EXPECT_EQ(model.undoText(), text("«\u202FXcode\u202F» est retiré"));
    while (model.undo()) {
    }
    EXPECT_EQ(preferences.settings(), before);
    EXPECT_EQ(model.undoText(), QString());
}

TEST_F(TerritoryModelTest, apps_are_found_tools_first_and_chosen_by_the_mode_that_is_set) {
    for (const char *name : {"Blender", "Écran", "Steam", "Xcode"}) {
        installed += {text(name), text("/a"), {}};
    }
    model.setActive(true);
    test::settle();
    const auto names = [&] {
        QStringList all;
        for (const AppRow &row : rowsOf<AppRow>(model.apps()->choices())) {
            all += row.shown + (row.chosen ? text("*") : QString());
        }
        return all.join(u' ');
    };
    EXPECT_EQ(names(), text("Blender Xcode Écran Steam"));
    model.apps()->choose(text("Écran"), true);
    EXPECT_EQ(names(), text("Blender Xcode Écran* Steam"));
    EXPECT_TRUE(preferences.appInScope(text("Écran")));
    model.apps()->setFilter(text("ecr"));
    EXPECT_EQ(names(), text("Écran*"));
    model.apps()->setOnly(false);
    model.apps()->setFilter({});
    EXPECT_EQ(names(), text("Blender Xcode Écran Steam")) << "another list";
    model.apps()->choose(text("Steam"), true);
    EXPECT_FALSE(preferences.appInScope(text("Steam")));
    EXPECT_EQ(model.apps()->proposedTools(), (QStringList{text("Xcode"), text("Blender")}));
    model.addTool(text("Xcode"));
    EXPECT_EQ(model.apps()->proposedTools(), QStringList{text("Blender")});
}

TEST_F(TerritoryModelTest, a_site_tells_how_its_feed_is) {
    RunReport older;
    older.date = QDateTime(QDate(2026, 10, 24), QTime(8, 0), Qt::UTC);
    RunReport newer = older;
    newer.date = QDateTime(QDate(2026, 11, 1), QTime(8, 0), Qt::UTC);
    const char *names[] = {"lu.example", "muet.example", "mort.example"};
    for (RunReport *report : {&older, &newer}) {
        report->sites = QList<SiteReport>();
        for (const char *name : names) {
            *report->sites += SiteReport{text(name), 3, 0, {}};
        }
        for (const char *name : {"muet.example", "mort.example"}) {
            report->feeds += FeedTrouble{text(name), text("une raison")};
        }
    }
    // The last run found nothing new there: what an earlier one saw stays its last item.
    older.sites->first().latest = text("Le\u202E billet");
    older.sites->first().latestAt = older.date.addDays(-1);
    newer.sites->first().items = 0;
    parts.store.addRun(older);
    parts.store.addRun(newer);
    preferences.change(&Settings::prioritySites,
                       {{text("lu.example"), text("https://lu.example/f"), clock.now()},
                        {text("muet.example"), {}, clock.now()},
                        {text("mort.example"), text("https://mort.example/f"), clock.now()},
                        {text("neuf.example"), {}, {}},
                        {parts.server.link("/page"), {}, {}}});
    model.setActive(true);
    test::settle();
    EXPECT_EQ(sites()[0].state,
              text("flux lu, rien de nouveau · «\u202FLe billet\u202F», le 23 octobre"));
    EXPECT_EQ(sites()[0].read, text("lu hier"));
    EXPECT_TRUE(sites()[1].state.startsWith(text("Ce site n’annonce aucun flux")));
    EXPECT_FALSE(sites()[1].wrong);
    EXPECT_EQ(sites()[2].state, text("ne répond pas depuis la fouille du 24 octobre"));
    EXPECT_TRUE(sites()[2].wrong);
    EXPECT_EQ(sites()[3].state, text("pas encore lu"));

    parts.server.serve(
        "/page",
        test::TestReply::page(R"(<link rel="alternate" type="application/rss+xml" href="/f">)"));
    parts.server.serve("/f",
                       test::TestReply::page(
                           "<rss><channel><item><title>Le dernier</title><link>https://a.example/1"
                           "</link></item></channel></rss>"));
    const QString address = sites()[4].name;
    model.sites()->look(address);
    EXPECT_TRUE(sites()[4].asking);
    test::spinUntil([&] { return !sites()[4].asking; });
    EXPECT_EQ(sites()[4].state, text("flux lu, 1 billet récent · «\u202FLe dernier\u202F»"));
    EXPECT_EQ(preferences.settings().prioritySites[4].feed, parts.server.link("/f"));
}

// A site that never answers and a disk that is gone: who quits does not wait for them, and nothing
// of theirs is under way once it has ended.
TEST_F(TerritoryModelTest, the_end_stops_what_is_under_way) {
    auto release = std::make_shared<QSemaphore>();
    TerritoryModel own{{.preferences = parts.preferences,
                        .store = parts.store,
                        .asker = parts.asker,
                        .feeds = parts.feeds,
                        .files = files,
                        .clock = clock,
                        .apps =
                            [release] {
                                release->acquire();
                                return QList<discovery::App>();
                            },
                        .zone = QTimeZone::utc()}};
    parts.server.serve("/silent", test::TestReply::shaped(test::TestReply::Shape::Silent));
    const QString address = parts.server.link("/silent");
    preferences.change(&Settings::prioritySites, {PrioritySite{address, {}, {}}});
    own.setActive(true);
    own.sites()->look(address);
    EXPECT_TRUE(isDiskAwaited());
    test::waitFor(own.stopped());
    EXPECT_FALSE(isDiskAwaited());
    release->release();
}

TEST_F(TerritoryModelTest, lists_of_feeds_come_in_and_go_out_or_say_why_not) {
    const std::pair<QByteArray, const char *> refused[] = {
        {"{}", "Ce fichier n’est pas un OPML."},
        {"<opml><body/></opml>", "Cette liste ne nomme aucun site."},
    };
    const Settings before = preferences.settings();
    for (const auto &[bytes, why] : refused) {
        files.answer = written("liste.opml", bytes);
        model.sites()->importList();
        test::settle();
        EXPECT_EQ(model.sites()->note(), text(why));
    }
    files.answer = parts.folder.path();
    model.sites()->importList();
    test::settle();
    EXPECT_EQ(model.sites()->note(), text("Ce fichier ne se laisse pas lire."));
    EXPECT_EQ(preferences.settings(), before) << "nothing changed";

    files.answer = written("liste.opml", R"(<opml><body>
        <outline htmlUrl="https://a.example/" xmlUrl="https://a.example/f"/>
        <outline xmlUrl="https://www.a.example"/><outline xmlUrl="mailto:a@b.example"/>
        <outline xmlUrl="https://b.example/f"/></body></opml>)");
    model.sites()->importList();
    test::settle();
    EXPECT_EQ(model.sites()->note(), text("2 sites ajoutés, 1 déjà là, 1 adresse illisible."));
    ASSERT_EQ(sites().size(), 2);
    EXPECT_EQ(preferences.settings().prioritySites[0].feed, text("https://a.example/f"));

    files.answer = parts.folder.filePath(text("sortie.opml"));
    model.sites()->exportList();
    test::settle();
    const QByteArray out = test::readFile(*files.answer);
    EXPECT_TRUE(out.contains("htmlUrl=\"https://a.example/\" xmlUrl=\"https://a.example/f\""))
        << out.constData();
    files.answer = text("/nulle/part/sortie.opml");
    model.sites()->exportList();
    test::settle();
    EXPECT_TRUE(model.sites()->note().startsWith(text("Rien n’a pu être écrit")));
}

TEST_F(TerritoryModelTest, shows_what_a_run_would_send_and_sends_nothing) {
    model.setActive(true);
    test::spinUntil([&] { return !model.preview()->note().isEmpty(); });
    EXPECT_TRUE(model.preview()->note().startsWith(text("Rien à fouiller")));
    model.addInterest(text("photographie argentique"));
    test::spinUntil([&] { return !model.preview()->questions().isEmpty(); });
    const auto first = model.preview()->questions().first().value<SentQuestion>();
    EXPECT_EQ(first.name, text("Tes sujets"));
    EXPECT_TRUE(first.text.contains(text("photographie argentique")));
    EXPECT_TRUE(model.preview()->size().endsWith(text(" ko")));
    EXPECT_TRUE(parts.claude.calls().isEmpty());
}

TEST_F(TerritoryModelTest, reflexes_are_grouped_switched_and_forgotten) {
    ReflexesModel &reflexes = *model.reflexes();
    model.setActive(true);
    const auto rows = [&] { return rowsOf<ReflexRow>(reflexes.rows()); };
    EXPECT_TRUE(reflexes.stateText().contains(text("tu en es à 0.")));
    ASSERT_EQ(rows().size(), 3);
    EXPECT_TRUE(rows()[0].sample);
    EXPECT_EQ(reflexes.startAgainText(), QString()) << "there is nothing to forget";
    QList<Topic> topics;
    for (int i = 0; i < 12; ++i) {
        Topic topic = test::sampleTopic(text("Vidéo %1").arg(i), TopicStatus::Dismissed);
        topic.kind = text("video");
        topic.triagedAt = clock.now().addDays(-i - 1);
        topics += topic;
    }
    parts.store.add(topics);
    test::spinUntil([&] { return rows().size() == 1 && !rows()[0].sample; });
    EXPECT_EQ(rows()[0].heading, text("Ce que je note plus bas"));
    EXPECT_EQ(reflexes.decisions(rows()[0].id).size(), 12);
    EXPECT_EQ(reflexes.decisions(rows()[0].id).first().value<DecidedRow>().title, text("Vidéo 0"));
    EXPECT_EQ(reflexes.footText(), QString());
    reflexes.setOn(rows()[0].id, false);
    EXPECT_FALSE(rows()[0].on);
    EXPECT_FALSE(reflexes.footText().isEmpty());
    reflexes.startAgain();
    test::spinUntil([&] { return reflexes.stateText().contains(text("tu en es à 0.")); });
    EXPECT_EQ(preferences.settings().disabledReflexes.size(), 1) << "off, should it come back";
}

} // namespace
} // namespace vorle
