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
