#pragma once

#include "app/cli/Command.h"
#include "app/window/CommandServer.h"
#include "app/window/SingleInstance.h"
#include "tests/app/cli/TwoTopics.h"
#include "tests/support/AppInProcess.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>

namespace vorle::test {

/// The app's objects in this process, to be reached by the program itself from another one.
class CommandServerTest : public testing::Test {
protected:
    CommandServerTest() {
        vorle.agent.answerBy(R"({"candidates":{},"brief":"hang"})");
        EXPECT_TRUE(app->lock().tryLock());
        app->store().add(twoTopics());
        EXPECT_TRUE(app->store().flush());
    }
    ~CommandServerTest() override {
        if (door) {
            waitFor(door->closed());
        }
    }
    void open() {
        listen();
        instance->serve();
    }
    /// As an app that waits for its topics.
    void listen() {
        door = std::make_unique<CommandServer>(
            [this](const cli::Command &command, cli::Context &context) {
                context.openCapture = propose;
                return cli::runCommand(command, context, *app);
            });
        instance = std::make_unique<SingleInstance>(app->topicsFile());
        QObject::connect(instance.get(), &SingleInstance::commandAsked, door.get(),
                         &CommandServer::serve);
        ASSERT_TRUE(instance->listen());
    }

    /// What the app answers to a command that the program itself would not send.
    Program::Outcome asked(const AppCommand &command) const {
        auto *socket = new QLocalSocket;
        AppConnection connection(socket, AppConnection::maxAnswerBytes);
        Program::Outcome outcome;
        bool over = false;
        QObject::connect(&connection, &AppConnection::closed, [&] { over = true; });
        QObject::connect(&connection, &AppConnection::received, [&](const AppMessage &message) {
            const std::string text = message.text.value_or(QByteArray()).toStdString();
            if (message.kind == AppMessage::Kind::Hello) {
                connection.send({.kind = AppMessage::Kind::Command, .command = command});
            } else if (message.kind == AppMessage::Kind::End) {
                outcome.status = message.status.value_or(-1);
            } else {
                (message.kind == AppMessage::Kind::Out ? outcome.out : outcome.err) += text;
            }
        });
        socket->connectToServer(appSocketName(app->topicsFile()));
        spinUntil([&] { return over; });
        return outcome;
    }

    TopicPtr topic(const char *beginning) const {
        for (const TopicPtr &each : app->store().topics()) {
            if (each->title == QLatin1String(beginning)) {
                return each;
            }
        }
        throw std::runtime_error("no such topic");
    }
    qsizetype calls() const { return vorle.agent.calls(u"brief"); }

    AppInProcess app;
    Program &vorle = app.program;
    std::function<bool(const cli::LinkToCapture &)> propose;
    std::unique_ptr<CommandServer> door;
    std::unique_ptr<SingleInstance> instance;
};

} // namespace vorle::test
