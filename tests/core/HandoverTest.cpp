// What comes with a link that a topic has already.

#include "core/Handover.h"

#include "tests/core/StoreFixture.h"

#include <gtest/gtest.h>

namespace vorle {
namespace {

using test::sampleTopic;

class HandoverTest : public test::StoreFixture {};

TEST_F(HandoverTest, what_comes_with_a_link_once_more_is_taken_up_and_replaces_nothing) {
    const auto note = [](const char *text) { return QString::fromUtf8(text); };
    const Handover handed{.title = note("Titre"),
                          .note = note("à lire"),
                          .project = note("Potager"),
                          .pageText = "le texte"};
    const struct {
        const char *name;
        TopicStatus status;
        const char *note;
        const char *project;
        QByteArray text;
        const char *joined;
        const char *toProject;
        QByteArray toText;
    } cases[] = {
        {"nothing said yet", TopicStatus::Pending, "", "", "", "à lire", "Potager", "le texte"},
        {"what was said stays", TopicStatus::Pending, "moi", "Serre", "un texte plus long",
         "moi\nà lire", "Serre", "un texte plus long"},
        {"said already", TopicStatus::Inbox, "moi\nà lire\nvite", "", "le", "moi\nà lire\nvite",
         "Potager", "le texte"},
        {"the words alone are another thing", TopicStatus::Inbox, "pas à lire", "", "",
         "pas à lire\nà lire", "Potager", "le texte"},
        {"decided on: the note alone", TopicStatus::Program, "moi", "", "", "moi\nà lire", "", ""},
        {"set aside: likewise", TopicStatus::Dismissed, "", "", "", "à lire", "", ""},
    };
    auto store = open();
    for (const auto &each : cases) {
        Topic topic = sampleTopic(note(each.name), each.status);
        topic.note = *each.note != '\0' ? std::optional(note(each.note)) : std::nullopt;
        topic.project = *each.project != '\0' ? std::optional(note(each.project)) : std::nullopt;
        topic.seenText = each.text;
        const QUuid id = store->add({topic}).first();
        store->takeUpCapture(id, handed);
        const TopicPtr richer = store->topic(id);
        EXPECT_EQ(richer->note.value_or(QString()), note(each.joined)) << each.name;
        EXPECT_EQ(richer->project.value_or(QString()), note(each.toProject)) << each.name;
        EXPECT_EQ(richer->seenText, each.toText) << each.name;
        EXPECT_EQ(richer->title, topic.title) << each.name;
        EXPECT_EQ(richer->status, each.status) << each.name;
        EXPECT_FALSE(store->takeUpCapture(id, handed)) << each.name << ", twice";
        EXPECT_EQ(*store->topic(id), *richer) << each.name;
    }
    EXPECT_FALSE(store->takeUpCapture(QUuid::createUuid(), handed));
}

TEST_F(HandoverTest, what_came_to_a_pending_topic_stays_when_it_is_judged_again) {
    auto store = open();
    Topic unread = sampleTopic(QStringLiteral("b"));
    unread.readLevel = ReadLevel::None;
    unread.project.reset();
    unread.seenText.reset();
    unread.note.reset();
    Topic pending = unread;
    pending.id = QUuid::createUuid();
    pending.status = TopicStatus::Pending;
    const auto ids = store->add({pending, unread});
    const Handover dropped{.title = {},
                           .note = QStringLiteral("pour la serre"),
                           .project = QStringLiteral("Serre"),
                           .pageText = "ce que l’abonné voit"};
    store->takeUpCapture(ids[0], dropped);
    store->takeUpCapture(ids[1], {{}, {}, dropped.project, dropped.pageText});
    for (const QUuid &id : ids) {
        Topic judged = sampleTopic(QStringLiteral("jugé"));
        judged.id = id;
        judged.seenText = "peu";
        judged.project.reset();
        EXPECT_TRUE(id == ids[0] ? store->replacePending(judged) : store->completeUnread(judged));
        EXPECT_EQ(store->topic(id)->title, judged.title);
        EXPECT_EQ(store->topic(id)->project, dropped.project);
        EXPECT_EQ(store->topic(id)->seenText, dropped.pageText);
    }
    EXPECT_EQ(store->topic(ids[0])->note, dropped.note);

    // Its page is another topic's: that one has the note from then on.
    EXPECT_FALSE(store->withdrawPending(ids[0], QUuid())) << "nobody would have the note";
    EXPECT_TRUE(store->withdrawPending(ids[0], ids[1]));
    EXPECT_EQ(store->topic(ids[1])->note, dropped.note);
    EXPECT_EQ(store->count(), 1);
}

} // namespace
} // namespace vorle
