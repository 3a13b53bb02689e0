#include "app/models/settings/TransferModel.h"

#include "platform/fakes/FakeFilePicker.h"
#include "tests/core/Samples.h"
#include "tests/support/Files.h"
#include "tests/support/Text.h"
#include "tests/support/Wait.h"

#include <QDir>
#include <QThread>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace vorle {
namespace {

using test::readFile;
using test::sampleTopic;
using test::text;
using test::writeFile;

class TransferModelTest : public testing::Test {
protected:
    TransferModelTest() {
        store.add({sampleTopic(text("a")), sampleTopic(text("b"), TopicStatus::Done)});
        store.flush();
    }
    /// Has it done and gives what is said.
    QString said(void (TransferModel::*work)(), const QString &path) {
        picker.answer = path;
        (model.*work)();
        test::spinUntil([this] { return !model.busy() && !model.word().isEmpty(); });
        QCoreApplication::processEvents(); // its task ends
        return model.word();
    }

    QTemporaryDir dir;
    test::FixedClock clock;
    TopicStore store{dir.filePath(QStringLiteral("sujets.json")), Resources(dir.path()), clock};
    test::FakeFilePicker picker;
    int readOn = 0;
    TransferModel model{{store, picker, clock, [this] { ++readOn; }}};
    QString folder = dir.filePath(QStringLiteral("dehors"));
};

TEST_F(TransferModelTest, takes_the_topics_out_and_back_in_and_doubles_none) {
    EXPECT_EQ(model.sizeText(), text("2 sujets et leurs fiches, en JSON"));
    EXPECT_EQ(said(&TransferModel::exportJson, folder),
              text("2 sujets dans %1\u00A0: 1 fichier écrit.").arg(folder));
    EXPECT_EQ(readFile(folder + QStringLiteral("/topics.json")), readFile(store.file()));
    EXPECT_FALSE(QDir(folder).exists(QStringLiteral("notes")));
    said(&TransferModel::exportNotes, folder);
    EXPECT_EQ(QDir(folder + QStringLiteral("/notes")).entryList({QStringLiteral("*.md")}).size(),
              2);

    TopicStore other(dir.filePath(QStringLiteral("autre.json")), Resources(dir.path()), clock);
    test::FakeFilePicker where;
    where.answer = folder + QStringLiteral("/topics.json");
    TransferModel importing{{other, where, clock, [this] { ++readOn; }}};
    for (const char *word : {"2 sujets importés.", "0 sujet importé, 2 déjà là."}) {
        importing.importFile();
        test::spinUntil([&] { return !importing.busy() && !importing.word().isEmpty(); });
        EXPECT_EQ(importing.word(), text(word));
        EXPECT_FALSE(importing.failed());
    }
    EXPECT_EQ(other.count(), 2);
    EXPECT_EQ(readOn, 2);
}

TEST_F(TransferModelTest, what_cannot_be_read_or_written_is_told_and_changes_nothing) {
    const QByteArray before = readFile(store.file());
    const auto at = [this](const char *name) { return dir.filePath(text(name)); };
    writeFile(at("prose.json"), "Bonjour, voici tes sujets.");
    writeFile(at("deep.json"), QByteArray(1'000'000, '['));
    writeFile(at("torn.json"), readFile(store.file()).chopped(40));
    writeFile(at("huge.json"), "[");
    ASSERT_EQ(::truncate(at("huge.json").toLocal8Bit().constData(), maxArchiveBytes + 1), 0);
    ASSERT_EQ(::mkfifo(at("pipe.json").toLocal8Bit().constData(), 0600), 0);
    const std::pair<const char *, const char *> files[] = {
        {"prose.json", "n’est pas une liste de sujets"},
        {"deep.json", "n’est pas une liste"},
        {"torn.json", "n’est pas une liste de sujets"},
        {"huge.json", "trop gros"},
        {"pipe.json", "Le système a refusé"},
        {"nowhere.json", "n’existe pas"},
    };
    for (const auto &[name, reason] : files) {
        const QString word = said(&TransferModel::importFile, at(name));
        EXPECT_TRUE(model.failed()) << name;
        EXPECT_TRUE(word.contains(text(reason))) << name << ": " << word.toStdString();
    }
    writeFile(at("file"), "x");
    said(&TransferModel::exportNotes, at("file")); // a file where the folder would be
    EXPECT_TRUE(model.failed());
    ASSERT_TRUE(QDir().mkdir(at("live")));
    ASSERT_TRUE(QFile::link(store.file(), at("live/topics.json")));
    EXPECT_TRUE(said(&TransferModel::exportJson, at("live")).contains(u"choisis-en un autre"));
    EXPECT_EQ(readFile(store.file()), before);
    EXPECT_EQ(store.count(), 2);
}

TEST_F(TransferModelTest, one_at_a_time_and_none_for_who_gives_up) {
    model.exportJson(); // the person closes the dialog
    QCoreApplication::processEvents();
    EXPECT_FALSE(model.busy());
    EXPECT_EQ(model.word(), QString());
    picker.answer = folder;
    model.exportJson();
    model.exportNotes();
    test::spinUntil([this] { return !model.busy() && !model.word().isEmpty(); });
    EXPECT_EQ(picker.asked.size(), 2) << "of the last two, one";
    // Stopped before it is read: nothing comes in.
    picker.answer = folder + QStringLiteral("/topics.json");
    TopicStore other(dir.filePath(QStringLiteral("autre.json")), Resources(dir.path()), clock);
    TransferModel importing{{other, picker, clock}};
    importing.importFile();
    importing.stop();
    test::spinUntil([&] { return !importing.busy(); });
    EXPECT_EQ(other.count(), 0);
    EXPECT_EQ(importing.word(), text("Arrêté\u00A0: rien n’a changé."));
}

TEST_F(TransferModelTest, a_stopped_export_is_over_when_it_says_so) {
    QList<Topic> many;
    for (int i = 0; i < 500; ++i) {
        many += sampleTopic(QStringLiteral("t%1").arg(i));
    }
    store.add(many);
    const QDir notes(folder + QStringLiteral("/notes"));
    picker.answer = folder;
    model.exportNotes();
    test::spinUntil([&] { return !notes.isEmpty(); });
    model.stop();
    test::spinUntil([this] { return !model.busy(); });
    EXPECT_EQ(model.word(), text("Arrêté. Ce qui est écrit reste."));
    const auto written = notes.count();
    EXPECT_LT(written, 500U);
    QThread::msleep(50);
    EXPECT_EQ(notes.count(), written);
    const QString word = said(&TransferModel::exportNotes, folder);
    EXPECT_TRUE(word.startsWith(text("502 sujets dans "))) << word.toStdString();
    EXPECT_EQ(notes.entryList({QStringLiteral("*.md")}).size(), 502);
}

} // namespace
} // namespace vorle
