// What stands on the reading page, and on the open card: its picture, its first step, the note.

#include "tests/app/window/OpenWindow.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;
using testing::Contains;

class PagePartsTest : public test::OpenWindow {
protected:
    /// The texts of the first step that stand, one over the other, in the strip that is seen.
    QList<QQuickItem *> stepTexts() {
        QList<QQuickItem *> found = shown([](const QQuickItem &item) {
            return item.inherits("QQuickTextEdit") &&
                   item.property("text").toString().contains(QStringLiteral("npx expo"));
        });
        return found;
    }
    void turn() { QTest::qWait(60); }
};

TEST_F(PagePartsTest, a_command_is_copied_as_it_is_typed) {
    Topic topic = test::sampleTopic(text("Une commande"));
    topic.firstStep = text("Lance « npx expo install --check », puis regarde.");
    store().add({topic});
    open();
    press(Qt::Key_Space);
    click(text("Copier"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text("npx expo install --check"));
    EXPECT_THAT(shownTexts(), Contains(text("Copié")));
}

TEST_F(PagePartsTest, a_command_reads_the_same_on_card_and_page_and_its_words_can_be_marked) {
    Topic topic = test::sampleTopic(text("Une commande"));
    topic.firstStep =
        text("Relis la page de la version, puis lance « npx expo install --check » sur "
             "une branche de travail, et regarde ce que tes tests en disent ensuite.");
    store().add({topic});
    open();
    window().resize(1180, 780);
    turn();
    auto texts = stepTexts();
    ASSERT_EQ(texts.size(), 1);
    const QString onCard = texts.first()->property("text").toString();
    EXPECT_TRUE(onCard.contains(text("lance npx expo install --check sur")))
        << onCard.toStdString();
    press(Qt::Key_Space);
    turn();
    texts = stepTexts();
    ASSERT_EQ(texts.size(), 2) << "the card’s behind the page, and its own";
    QQuickItem &words = *texts.last();
    EXPECT_EQ(words.property("text").toString(), onCard);
    ASSERT_GT(words.property("lineCount").toInt(), 1);
    // By the mouse, from its first letter to its last line.
    const QPoint from = words.mapToScene({1, 8}).toPoint();
    const QPoint to = words.mapToScene({120, words.height() - 8}).toPoint();
    QTest::mousePress(&window(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&window(), (from + to) / 2);
    QTest::mouseMove(&window(), to);
    QTest::mouseRelease(&window(), Qt::LeftButton, {}, to);
    EXPECT_TRUE(words.property("selectedText").toString().startsWith(text("Relis la page")))
        << words.property("selectedText").toString().toStdString();
    press(Qt::Key_Escape);
    // Where the strip does not show all of it there is nothing to copy it by.
    EXPECT_GE(buttonAt(text("Copier")).y(), 0);
    window().resize(700, 500); // one line of it
    turn();
    EXPECT_EQ(buttonAt(text("Copier")).y(), -1);
}

TEST_F(PagePartsTest, a_picture_heads_the_page_and_moves_nothing_when_it_arrives) {
    const QTemporaryDir pictures;
    m_app.variables.set("VORLE_PICTURES", pictures.path());
    const auto draw = [&](const QString &name, QSize size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::darkRed);
        image.save(pictures.filePath(name), "PNG");
    };
    draw(text("wide.img"), {1200, 630});
    draw(text("icon.img"), {64, 64});
    // One that is cut short, one of a form that nothing here decodes, and one whose pixels do not
    // come out of what is there: known before the page is laid out, but for the last.
    QFile whole(pictures.filePath(text("wide.img")));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    const auto put = [&](const char *name, const QByteArray &content) {
        test::writeFile(pictures.filePath(text(name)), content);
    };
    put("short.img", bytes.chopped(40));
    put("odd.img", QByteArray("RIFF\x28\0\0\0WEBPVP8X\x0A\0\0\0\0\0\0\0\xAF\x04\0\x75\x02\0", 30) +
                       QByteArray(18, 0));
    QByteArray torn = bytes;
    torn.replace(torn.indexOf("IDAT") + 4, 40, QByteArray(40, 'x'));
    put("torn.img", torn);
    QList<Topic> topics;
    for (const char *name : {"wide.img", "icon.img", "absent.img", "short.img", "odd.img", ""}) {
        Topic topic = test::sampleTopic(text("Sujet ") + text(name));
        topic.score = 9 - static_cast<int>(topics.size());
        if (*name != 0) {
            topic.gallery = {{topic.mainSource()->url, text(name)}};
        }
        topics += topic;
    }
    store().add(topics);
    open();
    press(Qt::Key_Space);
    const auto pictureOver = [&](int least) {
        const auto found = shown([&](const QQuickItem &item) {
            return QByteArrayView(item.metaObject()->className()).startsWith("SourcePicture_") &&
                   item.width() >= least;
        });
        return found.isEmpty() ? nullptr : found.first();
    };
    const auto titleTop = [&] {
        const auto titles = shown([&](const QQuickItem &item) {
            return item.inherits("QQuickTextEdit") &&
                   item.property("text").toString().startsWith(text("Sujet "));
        });
        return titles.isEmpty() ? -1 : titles.first()->mapToScene({0, 0}).y();
    };
    ASSERT_EQ(chosen(), text("Sujet wide.img"));
    ASSERT_EQ(shell().page()->banner(), text("wide.img"));
    QQuickItem *banner = pictureOver(400);
    ASSERT_NE(banner, nullptr);
    const double before = titleTop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return banner->property("ready").toBool(); }, 5000));
    EXPECT_EQ(titleTop(), before);
    EXPECT_NEAR(banner->width(), banner->height() * 3, 2);

    for (int i = 0; i < 5; ++i) {
        press(Qt::Key_J);
        EXPECT_EQ(pictureOver(400), nullptr) << chosen().toStdString();
    }
    turn(); // until the last page is laid out
    // One that a run finds now is shown the next time.
    const double top = titleTop();
    const QUuid id = QUuid::fromString(window().property("chosenId").toString());
    store().setGallery(id, {{text("https://example.org/a"), text("wide.img")}});
    QTest::qWait(50);
    EXPECT_EQ(titleTop(), top);
    press(Qt::Key_K);
    press(Qt::Key_J);
    EXPECT_NE(pictureOver(400), nullptr);
    // What was found broken while it was shown is not given a place again.
    store().setGallery(id, {{text("https://example.org/a"), text("torn.img")}});
    press(Qt::Key_K);
    press(Qt::Key_J);
    QQuickItem *place = pictureOver(400);
    ASSERT_NE(place, nullptr);
    const double stood = titleTop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return place->property("lacking").toBool(); }, 5000));
    EXPECT_EQ(titleTop(), stood) << "nothing moves under the eye";
    press(Qt::Key_K);
    press(Qt::Key_J);
    EXPECT_EQ(pictureOver(400), nullptr);
}

TEST_F(PagePartsTest, letters_meant_for_a_note_decide_nothing_when_its_topic_goes) {
    fill();
    open();
    press(Qt::Key_Space);
    for (int i = 0; i < 60 && !window().activeFocusItem()->inherits("QQuickTextArea"); ++i) {
        press(Qt::Key_Tab);
    }
    type(text("pa"));
    const QUuid id = QUuid::fromString(window().property("chosenId").toString());
    store().keep(id); // by a command, meanwhile
    turn();
    EXPECT_EQ(chosen(), u"Sujet 8");
    type(text("s grave xl"));
    EXPECT_EQ(shell().inbox()->count(), 2);
    EXPECT_EQ(store().topic(id)->note, u"pa");
    EXPECT_FALSE(store().topic(QUuid::fromString(window().property("chosenId").toString()))->note);
    QTest::qWait(1200); // nobody types any more
    press(Qt::Key_L);
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Reserve);
}

} // namespace
} // namespace vorle
