#pragma once

#include "tests/support/TestServer.h"
#include "tests/support/Wait.h"
#include "tests/update/ReleaseMaker.h"
#include "update/AppcastEngine.h"
#include "update/Updater.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace vorle::test {

class TurnedClock final : public Clock {
public:
    QDateTime now() const override { return moment; }
    QDateTime moment = QDateTime({2026, 11, 23}, {8, 0}, Qt::UTC);
};

/// An installed program, a shell text, and the server that its updates come from.
class AppcastEngineTest : public testing::Test {
protected:
    using Stage = Updater::Stage;

    AppcastEngineTest() {
        layInstallation(folder(), "1.4.0", "echo vorle $VERSION");
        config.feed = server.url("/appcast.xml");
        config.publicKey = maker.publicKey();
        config.loopback = true;
        preferences.change(&Settings::updateChecks, std::optional(true));
        begin();
    }
    ~AppcastEngineTest() override { end(); }

    void begin() {
        engine = std::make_unique<AppcastEngine>(
            AppcastEngine::Parts{preferences, clock, config, program(), QStringLiteral("1.4.0"),
                                 [this] { ++quits; }, packaged});
        updater =
            std::make_unique<Updater>(Updater::Parts{.engine = *engine,
                                                     .clock = clock,
                                                     .version = QStringLiteral("1.4.0"),
                                                     .busy = {},
                                                     .countdown = std::chrono::milliseconds(1)});
        QObject::connect(updater.get(), &Updater::told, updater.get(), [this] { ++told; });
    }
    void end() {
        bool ended = false;
        engine->stop([&] { ended = true; });
        spinUntil([&] { return ended; });
    }
    /// The engine of a next start of the program.
    void beginAgain() {
        end();
        updater.reset();
        begin();
    }

    QString folder() const { return root.filePath(QStringLiteral("app")); }
    QString program() const { return folder() + QStringLiteral("/versions/1.4.0/bin/vorle"); }
    Installation installation() const { return *Installation::of(program()); }
    static QByteArray archive(const QByteArray &version,
                              const QByteArray &shell = "echo vorle $VERSION") {
        return ReleaseMaker::packed(ReleaseMaker::entries(version, shell));
    }
    /// Serves a feed of that version, and an archive, signed and announced as `announced` is.
    void publish(const QByteArray &version, const QByteArray &bytes,
                 const QByteArray &announced = {}) {
        const QByteArray &meant = announced.isEmpty() ? bytes : announced;
        server.serve("/appcast.xml", TestReply::page(ReleaseMaker::feed(ReleaseMaker::item(
                                         version, "a.tar.gz", meant.size(), maker.sign(meant)))));
        server.serve("/a.tar.gz", TestReply::page(bytes));
    }
    /// Leaves as the app does; what is to be started in its stead.
    std::optional<QString> finished() {
        std::optional<std::optional<QString>> successor;
        engine->finish([&](std::optional<QString> program) { successor = std::move(program); });
        spinUntil([&] { return successor.has_value(); });
        return *successor;
    }
    void waitFor(Stage stage) {
        spinUntil([&] { return updater->stage() == stage; });
    }
    /// Looks at the clock as the app does, again and again, until that holds.
    void lookUntil(const std::function<bool()> &done) {
        spinUntil([&] {
            updater->lookAtClock();
            return done();
        });
    }
    void checkAndInstall() {
        updater->check();
        waitFor(Stage::Found);
        updater->install();
    }
    /// What people get when they start the program.
    QByteArray started() const {
        QProcess process;
        process.start(folder() + QStringLiteral("/vorle"), {QStringLiteral("--version")});
        process.waitForFinished();
        return process.readAllStandardOutput().trimmed();
    }
    /// Nothing came of it: the old version, and nothing left of the new one.
    void expectUntouched() {
        EXPECT_FALSE(installation().ready());
        EXPECT_EQ(finished(), std::nullopt);
        EXPECT_EQ(started(), "vorle 1.4.0");
        EXPECT_FALSE(QFileInfo::exists(folder() + QStringLiteral("/.staging")));
        EXPECT_EQ(QDir(folder() + QStringLiteral("/versions"))
                      .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList{QStringLiteral("1.4.0")});
    }

    QTemporaryDir root;
    TestServer server;
    ReleaseMaker maker;
    TurnedClock clock;
    Preferences preferences{
        std::make_unique<SettingsFile>(root.filePath(QStringLiteral("settings.json")))};
    UpdateConfig config;
    std::function<Task<bool>(QString, CancelToken)> packaged = isPackaged;
    int quits = 0;
    int told = 0;
    std::unique_ptr<AppcastEngine> engine;
    std::unique_ptr<Updater> updater;
};

} // namespace vorle::test
