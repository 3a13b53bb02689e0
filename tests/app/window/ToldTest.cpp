#include "tests/app/window/OpenWindow.h"
#include "tests/support/Text.h"

#include <QRegularExpression>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;

/// What the window tells over its sections, and for how long.
class ToldTest : public test::OpenWindow {
protected:
    double scrolled() {
        const auto all = shown([](const QQuickItem &item) {
            return QByteArrayView(item.metaObject()->className()) == "QQuickFlickable";
        });
        return all.isEmpty() ? -1
                             : all.last()->property("contentY").toDouble() -
                                   all.last()->property("originY").toDouble();
    }
};

TEST_F(ToldTest, the_banner_says_what_holds_and_leads_to_what_helps) {
    fill();
    open();
    press(Qt::Key_R, Qt::ControlModifier); // there is nothing to search
    ASSERT_TRUE(QTest::qWaitFor([this] { return shell().run()->nothingToSearch(); }, 5000));
    click(text("Ouvrir Ton territoire"));
    EXPECT_EQ(shell().sections()->current(), Section::Territory);
    // It lies over no title.
    const auto heads = shown([](const QQuickItem &item) {
        return QByteArrayView(item.metaObject()->className()).startsWith("SectionHead_");
    });
    ASSERT_EQ(heads.size(), 1);
    EXPECT_GE(heads.first()->mapToScene({0, 0}).y(), 58);

    QList<QString> interests;
    for (int i = 0; i < 40; ++i) {
        interests += text("Domaine %1").arg(i);
    }
    m_app->preferences().change(&Settings::interests, interests);
    EXPECT_EQ(buttonAt(text("Ouvrir Ton territoire")).y(), -1) << "it holds no longer";
    QCoreApplication::processEvents();
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End}) {
        const double before = scrolled();
        press(key);
        EXPECT_GT(scrolled(), before) << key;
    }
    press(Qt::Key_Home);
    EXPECT_EQ(scrolled(), 0);

    // A first step that fails is told until one works.
    press(Qt::Key_2, Qt::ControlModifier);
    m_links.takes = false;
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !shell().notice().isEmpty(); }, 5000));
    m_links.takes = true;
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return shell().notice().isEmpty(); }, 5000));
}

TEST_F(ToldTest, links_are_opened_and_offered_as_they_would_be_kept) {
    open();
    const QString wrapped = text("https://lettre.example/?u=") + QString(3'000, u'x');
    const std::pair<QString, QString> cases[] = {
        {text("https://a.fr/"), text("https://a.fr/")},
        {text(" HTTP://a.fr/?a=b#c\n"), text("http://a.fr/?a=b#c")},
        {text("https://github.com@evil.example/x"), text("https://evil.example/x")},
        {text("https://a.fr/deux mots"), text("https://a.fr/deux%20mots")},
        {wrapped, wrapped},
        {wrapped.repeated(2), {}},
        {text("https://a.fr/\nhttps://b.fr/"), {}},
        {text("file:///etc/passwd"), {}},
        {text("mailto:a@example.org"), {}},
        {text("vscode://x/y"), {}},
        {text("example.org"), {}},
        {{}, {}},
    };
    for (const auto &[given, link] : cases) {
        m_links.opened.clear();
        shell().links()->open(given);
        EXPECT_EQ(m_links.opened, link.isEmpty() ? QList<QUrl>() : QList<QUrl>{QUrl(link)})
            << given.toStdString();
        m_pasteboard.replace(given);
        EXPECT_EQ(shell().links()->onPasteboard(), link) << given.toStdString();
    }
}

TEST_F(ToldTest, what_is_told_goes_once_it_holds_no_longer) {
    open();
    Q_EMIT m_app->preferences().saveFailed(text("Le réglage n’a pas pu être enregistré : plein."));
    EXPECT_EQ(shell().notice(), text("Le réglage n’a pas pu être enregistré\u00A0: plein."));
    Q_EMIT m_app->preferences().saved();
    EXPECT_EQ(shell().notice(), QString());

    // Links that could not be judged (no agent is there), until the last is judged or sent away.
    const auto failed = [this](int count) {
        return QTest::qWaitFor(
            [&] {
                int found = 0;
                for (int row = 0; row < shell().inbox()->count(); ++row) {
                    const QString why = shell().inbox()->card(row).captureProblem();
                    found += why.isEmpty() ? 0 : 1;
                }
                return found == count;
            },
            20000);
    };
    for (const char *page : {"a", "b", "c"}) {
        ASSERT_EQ(shell().links()->add(text("http://127.0.0.1:9/") + text(page), {}), QString());
    }
    ASSERT_TRUE(failed(3));
    EXPECT_TRUE(shell().notice().startsWith(text("3 liens que tu as ajoutés attendent encore")))
        << shell().notice().toStdString();
    const QList<TopicPtr> links = store().topics(TopicStatus::Pending);
    Topic judged = *links.at(0);
    judged.readLevel = ReadLevel::Full;
    ASSERT_TRUE(store().completeCaptured(judged));
    Q_EMIT m_app->capture().completed(judged.id);
    EXPECT_TRUE(shell().notice().startsWith(text("2 liens que tu as ajoutés attendent encore")));
    store().dismiss(links.at(1)->id);
    EXPECT_TRUE(
        shell().notice().startsWith(text("Un lien que tu as ajouté attend encore\u00A0: ")));

    // Tried again, its card no longer says that it failed, until it fails again.
    int cleared = 0;
    QObject::connect(shell().inbox(), &TopicListModel::dataChanged, &window(), [&] {
        const int row = shell().inbox()->rowOf(links.at(2)->id.toString());
        cleared += shell().inbox()->card(row).captureProblem().isEmpty();
    });
    shell().takeRemedy();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shell().notice().isEmpty(); }, 20000));
    EXPECT_GE(cleared, 1);
    store().dismiss(links.at(2)->id);
    EXPECT_EQ(shell().notice(), QString());
}

TEST_F(ToldTest, every_text_is_set_as_French_sets_it) {
    fill();
    open();
    ASSERT_EQ(shell().links()->add(text("http://127.0.0.1:9/a"), {}), QString());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shell().notice().isEmpty(); }, 20000));
    shell().page()->setTopicId(window().property("chosenId").toString());
    shell().page()->askBrief();
    m_app->preferences().change(&Settings::interests, {text("Rust")});
    press(Qt::Key_R, Qt::ControlModifier); // fails: no agent is there
    ASSERT_TRUE(QTest::qWaitFor([this] { return !shell().run()->lastError().isEmpty(); }, 20000));
    shell().links()->add(text("pas un lien"), {});
    QStringList said{shell().notice(), shell().run()->lastError(), shell().run()->lastErrorTitle(),
                     shell().page()->briefFailure(), shell().run()->missedText()};
    const auto hear = [&] {
        // Those that can be marked tell of a no-break blank as of a plain one.
        for (const QQuickItem *item :
             shown([](const QQuickItem &each) { return each.inherits("QQuickText"); })) {
            said += item->property("text").toString();
        }
    };
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4, Qt::Key_5, Qt::Key_6}) {
        press(key, Qt::ControlModifier);
        hear();
        press(Qt::Key_Space);
        hear();
        press(Qt::Key_Escape);
    }
    for (const Qt::Key key : {Qt::Key_N, Qt::Key_Comma, Qt::Key_K}) {
        press(key, Qt::ControlModifier);
        hear();
        press(Qt::Key_Escape);
    }
    EXPECT_GT(said.size(), 100);
    static const QRegularExpression breaking(
        QStringLiteral("(?<!\\s) (?=»|[;:!?]+(\\s|$))|« |\u00A0(?=[;!?»])"));
    for (const QString &words : said) {
        EXPECT_FALSE(breaking.match(words).hasMatch()) << words.toStdString();
    }
}

} // namespace
} // namespace vorle
