// "Bilan" in the real window: figures that follow what is decided, by keys alone.

#include "core/RunHistory.h"
#include "tests/app/window/OpenWindow.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"

#include <QDir>
#include <QImage>
#include <QStandardPaths>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::text;
using testing::HasSubstr;

class ReportTest : public test::OpenWindow {
protected:
    void begin() {
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
        test::writeFile(folder + QStringLiteral("/user-dirs.dirs"),
                        "XDG_DOCUMENTS_DIR=\"" + folder.toUtf8() + "/documents\"\n");
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QList<Topic> topics;
        for (int i = 0; i < 4; ++i) {
            Topic topic = test::sampleTopic(QStringLiteral("Sujet %1").arg(i));
            topic.foundAt = now;
            topics += topic;
        }
        topics += test::sampleTopic(QStringLiteral("Ancien"), TopicStatus::Done);
        topics.last().foundAt = now.addDays(-100);
        topics.last().doneAt = now.addDays(-90);
        store().add(topics);
        RunReport run;
        run.date = now;
        run.added = 4;
        run.scopes = {ScopeReport{QStringLiteral("Tiravue"), Origin::Stack, 8, 6, 1, 1, 0, {}, {}}};
        run.read.full = 4;
        run.unjudged = {{text("Un lien muet"), QStringLiteral("https://example.org/x"),
                         text("L’IA n’a rien dit de ce lien.")}};
        RunHistory(store().file()).replace({run});
        open();
        press(Qt::Key_6, Qt::ControlModifier);
    }
    /// What is seen, each blank as one.
    QStringList said() {
        QStringList all;
        for (const QString &words : shownTexts()) {
            all += words.simplified();
        }
        return all;
    }
    bool says(const char *words) { return said().contains(text(words)); }
    /// Presses Tab until the part with that name has the keyboard.
    bool reach(const QString &name) {
        for (int i = 0; i < 40; ++i) {
            const QQuickItem *item = window().activeFocusItem();
            if (item != nullptr && (item->property("text").toString() == name ||
                                    item->property("dateText").toString().startsWith(name))) {
                return true;
            }
            press(Qt::Key_Tab);
        }
        return false;
    }
};

TEST_F(ReportTest, figures_follow_what_is_decided_while_somebody_looks) {
    begin();
    EXPECT_TRUE(says("4 sujets trouvés : ils t’attendent encore."))
        << said().join(u'\n').toStdString();
    const QUuid first = store().topics().first()->id;
    store().markDone(first, Worth::Gem);
    test::spinUntil([&] { return says("4 sujets trouvés : tu en gardes 1 et tu en fais 1."); });
    EXPECT_EQ(shell().figures()->counts().value(4).value<FigureCount>().value, QStringLiteral("1"));

    // The year holds the old one, and there is nothing before it.
    shell().figures()->setKind(2);
    EXPECT_TRUE(says("Par mois"));
    EXPECT_EQ(shell().figures()->counts().value(2).value<FigureCount>().value, QStringLiteral("2"));
    EXPECT_FALSE(shell().figures()->canGoOn());
    EXPECT_FALSE(shell().figures()->canGoBack());
    shell().figures()->setKind(1);
    EXPECT_TRUE(shell().figures()->canGoBack());
    shell().figures()->goBack();
    EXPECT_TRUE(shell().figures()->canGoOn());
    EXPECT_TRUE(says("Rien de trouvé sur cette période."));
    shell().figures()->setKind(99); // hostile
    EXPECT_EQ(shell().figures()->kind(), 2);
}

TEST_F(ReportTest, a_report_opens_by_keys_to_all_that_it_has_to_tell) {
    begin();
    EXPECT_FALSE(says("Tiravue"));
    const QString date = shell().report()->index(0).data(ReportModel::DateText).toString();
    ASSERT_TRUE(reach(date)) << said().join(u'\n').toStdString();
    press(Qt::Key_Return);
    EXPECT_TRUE(says("Tiravue") && says("6 liens") && says("1 déjà connu, 1 en double") &&
                says("Pages : 4 en entier.") &&
                says("Un lien muet · L’IA n’a rien dit de ce lien."))
        << said().join(u'\n').toStdString();
    shell().report()->refresh();
    EXPECT_TRUE(says("Tiravue")) << "it stays open while the list is told anew";
    press(Qt::Key_Space);
    EXPECT_FALSE(says("Tiravue"));
}

TEST_F(ReportTest, is_kept_as_markdown_and_as_a_picture_beside_what_was_kept_before) {
    begin();
    const QDir documents(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    ASSERT_TRUE(documents.path().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")));
    const auto kept = [&](const char *names) {
        return QDir(documents.path()).entryList({QString::fromLatin1(names)});
    };
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(reach(text("Garder en Markdown")));
        press(Qt::Key_Return);
    }
    ASSERT_EQ(kept("bilan-vorle-*.md").size(), 2);
    EXPECT_THAT(test::readFile(documents.filePath(kept("bilan-vorle-*.md").last())).toStdString(),
                HasSubstr("ils t’attendent encore"));
    press(Qt::Key_Backtab);
    ASSERT_TRUE(reach(text("Garder en image")));
    press(Qt::Key_Return);
    test::spinUntil([&] { return kept("bilan-vorle-*.png").size() == 1; });
    const QImage picture(documents.filePath(kept("bilan-vorle-*.png").last()));
    EXPECT_GT(picture.width(), 1800);
    EXPECT_GT(picture.height(), 1000);
}

} // namespace
} // namespace vorle
