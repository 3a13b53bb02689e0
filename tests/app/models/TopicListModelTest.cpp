#include "app/labels/TopicLabels.h"
#include "app/models/Decisions.h"
#include "app/models/ListParts.h"
#include "app/models/ProgramBudget.h"
#include "tests/app/models/Watched.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;
using test::Shelf;
using test::Watched;

Topic scored(const char *title, int score, TopicStatus status = TopicStatus::Inbox) {
    Topic topic = sampleTopic(QString::fromUtf8(title), status);
    topic.score = score;
    return topic;
}

TEST(TopicListModel, orders_each_section_and_follows_the_store) {
    Shelf shelf;
    Topic urgent = scored("urgent", 2);
    urgent.urgency = Judgment::Urgency{Judgment::Urgency::Level::Now, {}, {}};
    Topic newer = scored("newer", 7);
    newer.foundAt = newer.foundAt.addDays(1);
    Topic unread = scored("unread", 0);
    unread.readLevel = ReadLevel::None;
    Topic reading = scored("reading", 0, TopicStatus::Pending);
    reading.capturedURL = QStringLiteral("https://example.org/reading");
    shelf.store.add({scored("seven", 7), newer, scored("nine", 9), urgent, unread, reading,
                     scored("hidden", 9, TopicStatus::Pending)});
    EXPECT_EQ(shelf.titles(Section::Inbox).join(u' '),
              QStringLiteral("reading urgent nine newer seven unread"));
    EXPECT_EQ(shelf.list(Section::Inbox).heading(0), QStringLiteral("En cours de lecture"));
    EXPECT_EQ(shelf.list(Section::Inbox).heading(2), QStringLiteral("Très pertinents"));

    const auto idOf = [&](int row) { return shelf.list(Section::Inbox).topicIdAt(row); };
    const QString seven = idOf(4);
    const QString nine = idOf(2);
    const QString urgentId = idOf(1);
    Decisions decisions(shelf.store);
    for (const QString &id : {seven, urgentId, nine}) {
        decisions.keep(id);
        shelf.clock.moment = shelf.clock.moment.addSecs(60);
    }
    EXPECT_EQ(shelf.titles(Section::Program).join(u' '), QStringLiteral("urgent nine seven"));
    // The user's own score is what counts.
    shelf.store.setCorrection(QUuid::fromString(seven), Correction{10, {}, {}, {}});
    EXPECT_EQ(shelf.titles(Section::Program).join(u' '), QStringLiteral("urgent seven nine"));
    decisions.done(seven, Worth::Gem);
    shelf.clock.moment = shelf.clock.moment.addSecs(60);
    decisions.done(nine);
    EXPECT_EQ(shelf.titles(Section::Library).join(u' '), QStringLiteral("nine seven"));
    EXPECT_EQ(shelf.list(Section::Library).card(1).worth(), QStringLiteral("gem"));
    EXPECT_EQ(shelf.list(Section::Library).heading(1), QStringLiteral("Novembre 2026"));
    EXPECT_EQ(shelf.list(Section::Library).card(1).formerScore(), 7);
    EXPECT_EQ(shelf.list(Section::Inbox).minutes(), 60);
}

TEST(TopicListModel, brings_up_a_reserved_topic_that_news_came_of) {
    Shelf shelf;
    Decisions decisions(shelf.store);
    Topic undici = scored("undici", 5);
    undici.dependency = QStringLiteral("undici");
    const QString first = shelf.add(undici);
    const QString second = shelf.add(scored("other", 5));
    decisions.later(first);
    shelf.clock.moment = shelf.clock.moment.addSecs(60);
    decisions.later(second);
    TopicListModel &reserve = shelf.list(Section::Reserve);
    Watched watched(reserve);
    EXPECT_EQ(watched.seen, (QStringList{second, first}));

    Topic older = scored("older", 5);
    older.dependency = undici.dependency;
    shelf.add(older);
    EXPECT_EQ(reserve.movedCount(), 0);
    Topic news = scored("news", 5);
    news.dependency = undici.dependency;
    news.foundAt = shelf.clock.moment.addDays(7);
    const QString newsId = shelf.add(news);
    EXPECT_EQ(watched.seen, (QStringList{first, second}));
    EXPECT_TRUE(reserve.card(0).moved());
    EXPECT_EQ(reserve.heading(0), QStringLiteral("Ils ont bougé"));
    // News the user does not want is no news; and a link is as good as a dependency.
    decisions.dismiss(newsId);
    EXPECT_EQ(watched.seen, (QStringList{second, first}));
    Topic sameLink = scored("same link", 5);
    sameLink.sources += shelf.topic(second)->sources.first();
    sameLink.foundAt = news.foundAt;
    shelf.add(sameLink);
    EXPECT_EQ(reserve.topicIdAt(0), second);
    EXPECT_EQ(reserve.movedCount(), 1);
    // Set aside once more, it waits for the next news.
    shelf.clock.moment = news.foundAt.addDays(1);
    decisions.postpone(second);
    EXPECT_EQ(reserve.movedCount(), 0);
    // A run that comes upon its link again brings it forward at once.
    RediscoveryLog finds(shelf.store, shelf.clock);
    reserve.observe(finds);
    shelf.clock.moment = shelf.clock.moment.addDays(1);
    test::waitFor(finds.record(QUuid::fromString(first)));
    EXPECT_EQ(watched.seen, (QStringList{first, second}));
    EXPECT_EQ(reserve.movedCount(), 1);
    EXPECT_EQ(watched.resets, 0);
}

TEST(TopicListModel, sets_what_does_not_fit_in_the_week_below_the_line) {
    Shelf shelf;
    QTemporaryDir folder;
    Preferences preferences(
        std::make_unique<SettingsFile>(folder.filePath(QStringLiteral("settings.json"))));
    preferences.change(&Settings::weeklyMinutes, 40);
    TopicListModel &program = shelf.list(Section::Program);
    const ProgramBudget budget(shelf.store, preferences, shelf.clock, program, QTimeZone::utc());
    Watched watched(program);
    Topic lengthy = scored("lengthy", 9);
    lengthy.minutes = 60;
    Decisions decisions(shelf.store);
    const QString first = shelf.add(lengthy);
    const QString second = shelf.add(scored("short", 5));
    const QString third = shelf.add(scored("shorter", 4));
    for (const QString &id : {first, second, third}) {
        decisions.keep(id);
    }
    EXPECT_EQ(watched.seen, (QStringList{second, third, first}));
    EXPECT_TRUE(program.card(2).waits());
    EXPECT_NE(program.heading(2), program.heading(1));
    decisions.done(second);
    EXPECT_EQ(budget.left(), 20);
    EXPECT_EQ(watched.seen, (QStringList{third, first}));
    preferences.change(&Settings::weeklyMinutes, 180);
    EXPECT_EQ(watched.seen, (QStringList{first, third}));
    decisions.done(first);
    decisions.done(third);
    EXPECT_TRUE(budget.finished());
    decisions.undo();
    EXPECT_FALSE(budget.finished());
}

// Whoever hears of it before the lists did asks them for rows that stand no longer where they
// stood.
TEST(TopicListModel, is_what_it_would_be_made_anew_once_the_store_is_loaded_again) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("topics.json"));
    const test::FixedClock clock;
    {
        TopicStore store(path, Resources(), clock);
        store.add({scored("first", 5), scored("second", 9), scored("third", 7)});
        ASSERT_TRUE(store.flush());
    }
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(file.size() - 2)); // its end is missing
    file.close();
    TopicStore store(path, Resources(), clock);
    const auto held = store.add({scored("a", 1, TopicStatus::Pending), scored("b", 8),
                                 scored("c", 6, TopicStatus::Pending), scored("d", 7)});
    ASSERT_TRUE(store.withdrawPending(held[2], QUuid()));
    int asked = 0;
    std::unique_ptr<TopicListModel> list;
    QObject::connect(&store, &TopicStore::topicsReset, &store, [&] {
        for (const TopicPtr &topic : store.topics()) {
            const int row = list->rowOf(topic->id.toString());
            EXPECT_TRUE(row < 0 || QUuid::fromString(list->topicIdAt(row)) == topic->id);
            ++asked;
        }
        store.setCorrection(held[3], Correction{10, {}, {}, {}});
    });
    list = std::make_unique<TopicListModel>(store, Section::Inbox, clock);
    EXPECT_EQ(store.repair(), 3);
    EXPECT_EQ(asked, 6);
    QStringList titles;
    for (const TopicPtr &topic : list->topics()) {
        EXPECT_EQ(list->rowOf(topic->id.toString()), titles.size());
        EXPECT_EQ(store.topic(topic->id), topic);
        titles += topic->title;
    }
    EXPECT_EQ(titles.join(u' '), QStringLiteral("d second b third first"));
}

TEST(TopicListModel, words_a_card) {
    Shelf shelf;
    Topic topic = scored("undici 7.18", 9);
    topic.project = QStringLiteral("Tiravue");
    topic.kind = QStringLiteral("security");
    topic.readLevel = ReadLevel::Full;
    topic.changes = {QStringLiteral("Une faille est fermée"), QStringLiteral("Rien d’autre")};
    topic.urgency = Judgment::Urgency{Judgment::Urgency::Level::Before,
                                      QStringLiteral("2026-11-28"), QStringLiteral("Fin")};
    topic.sources = {{QString(), QStringLiteral("https://www.example.org/a")},
                     {QString(), QStringLiteral("https://example.com/b")}};
    topic.gallery = {{QStringLiteral("https://www.example.org/a"), QStringLiteral("../secret")}};
    topic.dependency = QStringLiteral("undici");
    topic.newVersion = QStringLiteral("7.18.1");
    topic.tldr = QStringLiteral("En bref");
    topic.currentVersion = QStringLiteral("7.12.0");
    topic.publishedOn = QStringLiteral("2026-11-01T10:00:00Z");
    topic.postponedCount = 2;
    topic.worth = Worth::Useful;
    shelf.add(topic);
    const TopicListModel &inbox = shelf.list(Section::Inbox);
    const TopicCard card = inbox.card(0);
    const std::pair<QString, const char *> cases[] = {
        {card.title(), "undici 7.18"},
        {card.gist(), "En bref"},
        {card.subject(), "Tiravue"},
        {card.facts(), "Sécurité · 20 min · reporté 2 fois · Utile · hier"},
        {card.closedFacts(), "Sécurité · 20 min · reporté 2 fois · Utile · example.org"},
        {card.dateText(), "hier"},
        {card.badge().digits, "9"},
        {card.badge().accentLight, "accent"},
        {card.badge().name, "Note 9 sur 10"},
        {card.urgencyText(), "avant le 28 novembre"},
        {card.urgencySentence(), "Avant le 28 novembre. Fin"},
        {card.sitesText(), "example.org  +1"},
        {card.versionText(), "undici 7.12.0 → 7.18.1"},
        {card.worth(), "useful"},
        {card.briefState(), ""},
        {card.captureProblem(), ""},
        {card.refusal(), ""},
    };
    for (const auto &[words, expected] : cases) {
        EXPECT_EQ(words.simplified(), QString::fromUtf8(expected).simplified());
    }
    EXPECT_EQ(card.formerScore(), -1);
    EXPECT_TRUE(card.badge().filled);
    EXPECT_FALSE(card.badge().gem || card.pendingCapture());
    const auto changes = card.changes();
    EXPECT_FALSE(changes.at(0).value<NamedText>().name.isEmpty());
    // A picture's name never leads out of the cache.
    const auto source = card.sources().at(0).value<NamedLink>();
    EXPECT_EQ(source.name, QStringLiteral("Source"));
    EXPECT_EQ(source.picture, QString());
    // What hides in words of others, or turns them round, is not shown.
    EXPECT_EQ(kindLabel(QStringLiteral(" pod\u202Ecast ")), QStringLiteral("Podcast"));
    EXPECT_EQ(kindLabel(std::nullopt), QString());
    EXPECT_EQ(releasedText(1430), QStringLiteral("1\u202F430 sujets d’une fouille interrompue "
                                                 "rejoignent «\u202FÀ trier\u202F»."));
    EXPECT_EQ(repairedText(1430, 12000),
              QStringLiteral("1\u202F430 sujets repris sur 12\u202F000."));
    // Outside the list there is a card without a topic: all of it is empty.
    EXPECT_EQ(inbox.card(1), TopicCard());
    EXPECT_EQ(TopicCard().topicId() + TopicCard().facts() + TopicCard().badge().digits, QString());
}

TEST(TopicListModel, says_of_a_topic_what_is_unusual_and_what_it_most_likely_is) {
    Shelf shelf;
    Topic topic = scored("t", 9);
    topic.sources = {{{}, QStringLiteral("https://github.com/ffmpeg/ffmpeg")}};
    struct Case {
        std::optional<ReadLevel> level;
        std::optional<QString> published;
        const char *facts;
    };
    const std::initializer_list<Case> cases{
        {ReadLevel::Full, QStringLiteral("2026-11-02"), "Outil · 20 min · aujourd’hui"},
        {ReadLevel::Seen, QStringLiteral("2026-10-31"),
         "Outil · 20 min · lu en partie · il y a 2 jours"},
        {ReadLevel::None, QStringLiteral("2026-10-03"),
         "Outil · 20 min · pas lu · il y a 30 jours"},
        {ReadLevel::Meta, QStringLiteral("2026-10-02"),
         "Outil · 20 min · titre et description seuls · 2 octobre"},
        {std::nullopt, QStringLiteral("2025-10-01"), "Outil · 20 min · 1er octobre 2025"},
        {std::nullopt, QStringLiteral("2026-11-03"), "Outil · 20 min · 3 novembre"},
        {std::nullopt, QStringLiteral("printemps 2026"), "Outil · 20 min · printemps 2026"},
        {std::nullopt, std::nullopt, "Outil · 20 min"},
    };
    for (const Case &each : cases) {
        topic.id = QUuid::createUuid();
        topic.readLevel = each.level;
        topic.publishedOn = each.published;
        const QString id = shelf.add(topic);
        const TopicListModel &inbox = shelf.list(Section::Inbox);
        EXPECT_EQ(inbox.card(inbox.rowOf(id)).facts().simplified(), QString::fromUtf8(each.facts));
    }
}

TEST(TopicListModel, marks_what_came_since_the_last_visit_and_counts_each_heading) {
    Shelf shelf;
    TopicListModel &inbox = shelf.list(Section::Inbox);
    // A run is under way: what it has found already is handed out at its end.
    const QUuid held = shelf.store.add({scored("held", 9, TopicStatus::Pending)}).first();
    shelf.store.add({scored("old", 9)});
    const TopicsSeen left = inbox.seen();
    Topic fresh = scored("fresh", 8);
    fresh.foundAt = left.at.addDays(-9); // by the day on which its run began
    Topic own = scored("own", 7);
    own.capturedURL = QStringLiteral("https://example.org/own");
    shelf.store.add({fresh, own, scored("low", 2)});
    const auto marked = [&] {
        QStringList titles;
        for (int row = 0; row < inbox.count(); ++row) {
            titles +=
                inbox.card(row).isNew() ? QStringList{inbox.card(row).title()} : QStringList();
        }
        return titles.join(u' ');
    };
    EXPECT_EQ(marked(), QString()) << "on a first visit nothing is";
    Watched watched(inbox);
    inbox.setNewSince(left);
    EXPECT_EQ(marked(), u"fresh low");
    EXPECT_EQ(watched.changes, 1);
    shelf.store.releasePending({held});
    EXPECT_EQ(marked(), u"held fresh low");
    // One that the person brings back is none of them; what went from the file is told by its day.
    Decisions decisions(shelf.store);
    const QString old = inbox.topicIdAt(1);
    decisions.keep(old);
    decisions.undo();
    EXPECT_EQ(marked(), u"held fresh low");
    TopicsSeen gone = left;
    gone.last = QUuid::createUuid();
    inbox.setNewSince(gone);
    EXPECT_EQ(marked(), u"held");
    inbox.setNewSince(left);
    // Another day: what is said of yesterday changes, once.
    inbox.followDay();
    const int changes = watched.changes;
    shelf.clock.moment = shelf.clock.moment.addDays(1);
    inbox.followDay();
    inbox.followDay();
    EXPECT_EQ(watched.changes, changes + 1);

    const auto counts = [&] {
        QList<int> all;
        for (const char *name : {"Très pertinents", "Pertinents", "À creuser", "Urgent"}) {
            all += inbox.countUnder(QString::fromUtf8(name));
        }
        return all;
    };
    EXPECT_EQ(counts(), (QList<int>{3, 1, 1, 0}));
    QCoreApplication::processEvents();
    const int before = inbox.turns();
    shelf.store.setCorrection(fresh.id, Correction{7, {}, {}, {}});
    shelf.store.setCorrection(fresh.id, Correction{6, {}, {}, {}});
    QCoreApplication::processEvents();
    EXPECT_EQ(inbox.turns(), before + 1) << "once what goes on is through";
    EXPECT_EQ(counts(), (QList<int>{2, 2, 1, 0}));
}

} // namespace
} // namespace vorle
