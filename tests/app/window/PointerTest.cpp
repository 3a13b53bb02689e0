#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;

/// How many objects were made inside of another.
class ChildCounter final : public QObject {
public:
    bool eventFilter(QObject *, QEvent *event) override {
        count += event->type() == QEvent::ChildAdded ? 1 : 0;
        return false;
    }
    int count = 0;
};

/// What the mouse alone can do: a card's menu, links dropped here and pulled out.
class PointerTest : public test::OpenWindow {
protected:
    QQuickItem *menu() {
        return shown([](const QQuickItem &item) {
                   return QByteArrayView(item.metaObject()->className()).startsWith("TopicMenu_");
               })
            .value(0, nullptr);
    }
    /// The middle of the head of that topic's card.
    QPoint cardAt(const QString &title) {
        for (QQuickItem *item : shown([](const QQuickItem &each) {
                 return QByteArrayView(each.metaObject()->className()).startsWith("TopicCard_");
             })) {
            if (item->property("topic").value<TopicCard>().title() == title) {
                return item->mapToScene({item->width() / 2, 24}).toPoint();
            }
        }
        ADD_FAILURE() << "no card " << title.toStdString();
        return {};
    }
    void pressRight(const QPoint &at) {
        QTest::mouseClick(&window(), Qt::RightButton, {}, at);
        QCoreApplication::processEvents();
    }
    QStringList lines() {
        QStringList all;
        for (const QQuickItem *item : shown([](const QQuickItem &each) {
                 return QByteArrayView(each.metaObject()->className()).startsWith("MenuRow_");
             })) {
            all += item->property("text").toString();
        }
        return all;
    }
    QUuid idOf(const QString &title) {
        for (const TopicPtr &topic : store().topics()) {
            if (topic->title == title) {
                return topic->id;
            }
        }
        return {};
    }
    /// Drags that over the window and lets it go there; whether it was taken.
    bool drop(const QMimeData &data, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) {
        const QPoint at(600, 300);
        QDragEnterEvent enter(at, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window(), &enter);
        m_hovering = shownTexts().filter(QRegularExpression(
            text("^(Dépose le lien ici|Je ne lis pas les fichiers|Ce n’est pas un lien)$")));
        if (!enter.isAccepted()) {
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(&window(), &leave);
            return false;
        }
        QDropEvent dropped(at, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window(), &dropped);
        QCoreApplication::processEvents();
        EXPECT_NE(dropped.dropAction(), Qt::MoveAction) << "whoever gives it would lose it";
        return dropped.isAccepted();
    }
    QStringList said() { return std::exchange(m_said, {}); }
    void listen() {
        QObject::connect(m_shell.get(), &Shell::said,
                         [this](const QString &sentence) { m_said += sentence; });
    }

    QStringList m_said;
    QStringList m_hovering;
};

TEST_F(PointerTest, a_menu_acts_on_the_card_under_the_pointer) {
    fill();
    open();
    pressRight(cardAt(text("Sujet 8")));
    ASSERT_TRUE(menu());
    EXPECT_EQ(chosen(), u"Sujet 8");
    EXPECT_THAT(lines(), testing::ElementsAre(text("Lire"), text("Garder"), text("Plus tard"),
                                              text("Pas pour moi"), text("Ouvrir la source"),
                                              text("Copier le lien"), text("Corriger la note")));
    // A press beside it puts it away, and presses nothing there.
    QTest::mouseClick(&window(), Qt::LeftButton, {}, cardAt(text("Sujet 9")));
    EXPECT_FALSE(menu());
    EXPECT_EQ(chosen(), u"Sujet 8");
    EXPECT_EQ(shell().inbox()->count(), 3);

    pressRight(cardAt(text("Sujet 8")));
    click(text("Plus tard"));
    EXPECT_FALSE(menu());
    EXPECT_EQ(statusOf(text("Sujet 8")), TopicStatus::Reserve);

    // By keys alone; what it does not name is kept from the cards.
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    press(Qt::Key_L, Qt::ControlModifier);
    press(Qt::Key_D);
    press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_TRUE(menu());
    press(Qt::Key_Up);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(statusOf(text("Sujet 7")), TopicStatus::Program);
    EXPECT_EQ(chosen(), u"Sujet 9");
    press(Qt::Key_F10, Qt::ShiftModifier);
    press(Qt::Key_Escape);
    EXPECT_FALSE(menu());
    press(Qt::Key_F10, Qt::ShiftModifier);
    press(Qt::Key_X);
    EXPECT_EQ(statusOf(text("Sujet 9")), TopicStatus::Dismissed) << "its own key";
    press(Qt::Key_Menu);
    EXPECT_FALSE(menu()) << "there is no card";
}

TEST_F(PointerTest, a_mouse_that_lies_where_a_menu_opens_by_a_key_chooses_no_line_before_it_moves) {
    fill();
    open();
    press(Qt::Key_Menu);
    ASSERT_TRUE(menu());
    const auto on = [this] { return window().activeFocusItem()->property("text").toString(); };
    const QPoint garder = buttonAt(text("Garder")); // the menu lies over the card’s
    press(Qt::Key_Escape);
    QTest::mouseMove(&window(), garder);
    press(Qt::Key_Menu);
    QTest::mouseMove(&window(), garder); // as the window tells it anew
    QTest::qWait(50);
    EXPECT_EQ(on(), text("Lire"));
    QTest::mouseMove(&window(), garder + QPoint(2, 1));
    EXPECT_TRUE(QTest::qWaitFor([&] { return on() == text("Garder"); }));
}

TEST_F(PointerTest, a_menu_goes_with_its_topic_and_never_acts_on_another) {
    fill();
    open();
    const std::pair<const char *, std::function<void()>> causes[] = {
        {"its topic went", [this] { store().dismiss(idOf(text("Sujet 8"))); }},
        {"the list moved it",
         [this] {
             Topic topic = test::sampleTopic(text("Plus urgent"));
             topic.score = 10;
             store().add({topic});
         }},
        {"another section", [this] { shell().sections()->setCurrent(Section::Program); }},
        {"a panel", [this] { m_main->perform(KeyboardMap::OpenSettings); }},
        {"the wheel",
         [this] {
             QWheelEvent wheel({300, 300}, {300, 300}, {}, {0, -120}, Qt::NoButton, {},
                               Qt::NoScrollPhase, false);
             QCoreApplication::sendEvent(&window(), &wheel);
         }},
        {"another size", [this] { window().resize(900, 700); }},
    };
    for (const auto &[why, cause] : causes) {
        shell().sections()->setCurrent(Section::Inbox);
        press(Qt::Key_Escape);
        if (store().topic(idOf(text("Sujet 8")))->status != TopicStatus::Inbox) {
            store().backToInbox(idOf(text("Sujet 8")));
        }
        QTest::qWait(20);
        shell().actions()->showTopic(idOf(text("Sujet 8")).toString());
        QTest::qWait(20);
        pressRight(cardAt(text("Sujet 8")));
        ASSERT_TRUE(menu()) << why;
        const QPoint later = buttonAt(text("Plus tard"));
        cause();
        QTest::qWait(20);
        EXPECT_FALSE(menu()) << why;
        const TopicStatus before = statusOf(text("Sujet 8"));
        if (std::string_view(why) == "its topic went") {
            QTest::mouseClick(&window(), Qt::LeftButton, {},
                              later); // the press that comes too late
            EXPECT_EQ(shell().reserve()->count(), 1);
        }
        EXPECT_EQ(statusOf(text("Sujet 8")), before) << why;
    }
}

TEST_F(PointerTest, links_that_are_dropped_are_strangers_and_wait_to_be_sorted) {
    fill();
    open();
    listen();
    QMimeData links;
    links.setUrls({QUrl(text("https://example.org/a")), QUrl(text("http://127.0.0.1:9/private")),
                   QUrl(text("https://example.org/a#top")), QUrl(text("ftp://example.org/"))});
    EXPECT_TRUE(drop(links));
    EXPECT_THAT(m_hovering, testing::ElementsAre(text("Dépose le lien ici")));
    EXPECT_EQ(shell().inbox()->count(), 5);
    for (const TopicPtr &topic : store().topics()) {
        EXPECT_EQ(topic->sharedAt.has_value(), topic->capturedURL.has_value());
    }
    ASSERT_THAT(said(), testing::ElementsAre(testing::ResultOf(
                            [](const QString &each) { return each.toStdString(); },
                            testing::StartsWith("2 liens ajoutés"))));
    EXPECT_TRUE(drop(links));
    EXPECT_EQ(shell().inbox()->count(), 5);
    EXPECT_EQ(said().value(0), text("Tu as déjà ces liens."));
    EXPECT_TRUE(drop(links, Qt::LinkAction));
    EXPECT_FALSE(drop(links, Qt::MoveAction));
    said();

    QMimeData words;
    words.setText(text("https://example.org/b\n\n  https://example.org/c  \n"));
    EXPECT_TRUE(drop(words));
    EXPECT_EQ(shell().inbox()->count(), 7);
    said();

    struct Case {
        QList<QUrl> urls;
        QString text;
        const char *hovering;
        const char *sentence;
    };
    const Case refused[] = {
        {{QUrl(text("file:///etc/passwd"))},
         {},
         "Je ne lis pas les fichiers",
         "Je ne lis pas les fichiers\u00A0: glisse l’adresse d’une page."},
        {{QUrl(text("javascript:alert(1)"))},
         {},
         "Ce n’est pas un lien",
         "Ce n’est pas l’adresse d’une page web."},
        {{},
         text("trois mots ici"),
         "Ce n’est pas un lien",
         "Ce n’est pas l’adresse d’une page web."},
        {{QUrl(text("https://example.org/") + text("a").repeated(2000))},
         {},
         "Ce n’est pas un lien",
         "Ce n’est pas l’adresse d’une page web."},
    };
    for (const Case &each : refused) {
        QMimeData data;
        if (!each.urls.isEmpty()) {
            data.setUrls(each.urls);
        } else {
            data.setText(each.text);
        }
        EXPECT_TRUE(drop(data));
        EXPECT_THAT(m_hovering, testing::ElementsAre(text(each.hovering)));
        EXPECT_EQ(said().value(0), text(each.sentence));
        EXPECT_EQ(shell().inbox()->count(), 7);
    }
    QMimeData picture;
    picture.setData(text("image/png"), "no words");
    EXPECT_FALSE(drop(picture));
    press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_FALSE(drop(links)) << "a panel lies over the window";
    EXPECT_TRUE(m_hovering.isEmpty());
    press(Qt::Key_Escape);

    // Half an address is another address; what was set aside says that it is back.
    QMimeData cut;
    cut.setText(text("https://example.org/d\n") + text("x\n").repeated(32'745) +
                text("https://example.org/lonely/page"));
    EXPECT_TRUE(drop(cut));
    EXPECT_EQ(shell().inbox()->count(), 8);
    said();
    Topic aside = test::sampleTopic(text("Écarté"), TopicStatus::Dismissed);
    aside.sources = {{text("Page"), text("https://example.org/aside")}};
    store().add({aside});
    QMimeData again;
    again.setText(text("https://example.org/aside"));
    EXPECT_TRUE(drop(again));
    EXPECT_EQ(said().value(0),
              text("Tu l’avais écarté\u00A0: il est de retour dans «\u202FÀ trier\u202F»."));
    EXPECT_EQ(shell().inbox()->count(), 9);

    // However many there are, so many are taken.
    QStringList many;
    for (int i = 0; i < 5'000; ++i) {
        many += text("https://example.org/many/%1").arg(i);
    }
    QMimeData flood;
    flood.setText(many.join(u'\n'));
    EXPECT_TRUE(drop(flood));
    EXPECT_EQ(shell().inbox()->count(), 9 + TopicLinks::mostAtOnce);
    EXPECT_TRUE(said().value(0).endsWith(text("Je n’en prends que 50 à la fois.")));
}

TEST_F(PointerTest, a_card_gives_its_link_away_and_stays_as_it_is) {
    fill();
    Topic odd = test::sampleTopic(text("<b>Titre</b> & \"guillemets\""), TopicStatus::Program);
    odd.sources = {{text("Page"), text("https://example.org/a?b=1&c=2")}};
    store().add({odd});
    open();
    const auto data = shell().links()->dragged(idOf(odd.title).toString());
    ASSERT_TRUE(data);
    EXPECT_EQ(data->urls(), QList<QUrl>{QUrl(text("https://example.org/a?b=1&c=2"))});
    EXPECT_EQ(data->text(), text("https://example.org/a?b=1&c=2"));
    EXPECT_FALSE(data->html().contains(text("<b>"))) << "a page wrote the title";
    EXPECT_TRUE(data->html().contains(text("&lt;b&gt;Titre")));
    EXPECT_FALSE(shell().links()->dragged(text("unknown")));

    // Pulled by the mouse it comes off; the card is not chosen, the list does not scroll.
    const QPoint from = cardAt(text("Sujet 8"));
    ChildCounter drags;
    shell().links()->installEventFilter(&drags);
    const auto pull = [&](int to) {
        QTest::mousePress(&window(), Qt::LeftButton, {}, from);
        for (int i = 2; i <= to; i += 4) {
            QTest::mouseMove(&window(), from + QPoint(i, i));
        }
    };
    const auto letGo = [&] {
        QTest::mouseRelease(&window(), Qt::LeftButton, {}, from + QPoint(30, 30));
        QTest::qWait(20);
    };
    pull(30);
    QTest::qWait(20);
    letGo();
    EXPECT_EQ(drags.count, 1);
    EXPECT_FALSE(shell().links()->isCarrying());
    // A press that lasts opens the menu, and pulls nothing any more.
    QTest::mousePress(&window(), Qt::LeftButton, {}, from);
    ASSERT_TRUE(QTest::qWaitFor([this] { return menu() != nullptr; }, 3000));
    QTest::mouseMove(&window(), from + QPoint(20, 20));
    QTest::mouseMove(&window(), from + QPoint(30, 30));
    letGo();
    EXPECT_EQ(drags.count, 1);
    EXPECT_TRUE(menu());
    press(Qt::Key_Escape);
    press(Qt::Key_Home);
    QTest::qWait(20);
    pull(30);
    store().dismiss(idOf(text("Sujet 8"))); // its card goes with the hand still on it
    QTest::qWait(20);
    letGo();
    EXPECT_EQ(chosen(), u"Sujet 9");
    // Click, key and menu are as before.
    QTest::mouseClick(&window(), Qt::LeftButton, {}, cardAt(text("Sujet 7")));
    EXPECT_EQ(chosen(), u"Sujet 7");
    press(Qt::Key_G);
    EXPECT_EQ(statusOf(text("Sujet 7")), TopicStatus::Program);
}

} // namespace
} // namespace vorle
