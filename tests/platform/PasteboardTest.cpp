#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/qt/QtPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <gtest/gtest.h>

namespace vorle {
namespace {

template <class Adapter>
class PasteboardTest : public testing::Test {};
using Adapters = testing::Types<QtPasteboard, test::FakePasteboard>;
TYPED_TEST_SUITE(PasteboardTest, Adapters);

TYPED_TEST(PasteboardTest, holds_the_text_put_on_it_last_and_nothing_else) {
    TypeParam pasteboard;
    for (const QString &text : {QStringLiteral("une\nconsigne « l’été » 👩‍💻"),
                                QString(), QStringLiteral("https://example.org/")}) {
        pasteboard.replace(text);
        EXPECT_EQ(pasteboard.text(), text);
    }
}

TEST(QtPasteboard, gives_an_address_as_text_and_clears_what_is_no_text) {
    auto *data = new QMimeData; // the clipboard's from there on
    data->setUrls({QUrl(QStringLiteral("https://example.org/a b"))});
    data->setData(QStringLiteral("application/x-picture"), "…");
    QGuiApplication::clipboard()->setMimeData(data);
    QtPasteboard pasteboard;
    EXPECT_EQ(pasteboard.text(), u"https://example.org/a%20b");
    pasteboard.replace(QStringLiteral("texte"));
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasUrls());
    EXPECT_EQ(pasteboard.text(), u"texte");
}

TEST(LinkOpener, takes_the_addresses_of_pages_alone) {
    test::FakeLinkOpener browser;
    for (const char *address : {"https://example.org/", "HTTP://example.org/?a=b#c"}) {
        EXPECT_TRUE(browser.open(QUrl(QString::fromLatin1(address)))) << address;
    }
    for (const char *address : {"file:///etc/passwd", "mailto:a@example.org", "javascript:x", "",
                                "https://", "example.org", "vscode://x/y"}) {
        EXPECT_FALSE(browser.open(QUrl(QString::fromLatin1(address)))) << address;
    }
    EXPECT_EQ(browser.opened.size(), 2);
}

} // namespace
} // namespace vorle

int main(int argc, char **argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QGuiApplication app(argc, argv); // the pasteboard is the window system's
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
