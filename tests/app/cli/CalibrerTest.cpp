// `vorle calibrer`, run as a person runs it.

#include "tests/app/cli/TwoTopics.h"
#include "tests/support/Wait.h"

#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace vorle {
namespace {

using test::Program;

class Calibrer : public test::TwoTopics {};

/// A terminal with a person at it: what the program shows is read, keys are typed.
class Terminal {
public:
    Terminal() : m_person(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)) {
        grantpt(m_person);
        unlockpt(m_person);
        m_name = QString::fromLocal8Bit(ptsname(m_person));
        m_held = ::open(ptsname(m_person), O_RDWR | O_NOCTTY);
    }
    ~Terminal() {
        ::close(m_held);
        ::close(m_person);
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void attach(QProcess &process) const {
        process.setStandardInputFile(m_name);
        process.setStandardOutputFile(m_name, QIODevice::Append);
        process.setStandardErrorFile(m_name, QIODevice::Append);
    }
    /// Waits for the text to be shown, after what was awaited before, then types.
    void answer(const char *text, const char *typed) {
        test::spinUntil([&] { return !shown(text).isEmpty(); });
        m_from = m_shown.indexOf(text, m_from) + qsizetype(qstrlen(text));
        [[maybe_unused]] const auto written = ::write(m_person, typed, qstrlen(typed));
    }
    QByteArray shown(const char *text) {
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = ::read(m_person, bytes.data(), bytes.size())) > 0;) {
            m_shown.append(bytes.data(), count);
        }
        return m_shown.indexOf(text, m_from) < 0 ? QByteArray() : m_shown;
    }

private:
    int m_person;
    int m_held; // keeps the terminal alive between programs
    QString m_name;
    QByteArray m_shown;
    qsizetype m_from = 0;
};

TEST_F(Calibrer, asks_at_a_terminal_and_goes_on_where_it_was_left) {
    Terminal terminal;
    const auto start = [&](const QStringList &arguments) {
        QProcess &process = vorle.command(arguments);
        terminal.attach(process);
        process.start();
        return &process;
    };
    QProcess *process = start({QStringLiteral("calibrer")});
    terminal.answer("Arrêter", "\x1B[A\x1B[3~éz X"); // what is no answer is passed over
    terminal.answer("de 0 à 10", "onze\n");
    terminal.answer("nombre entier", "2\n");
    terminal.answer("J’avais mis 7.", "");
    terminal.answer("Annuler", "a");
    terminal.answer("Réponse annulée.", "");
    terminal.answer("Arrêter", "l");
    terminal.answer("de 0 à 10", "\n");
    terminal.answer("2 sur 2", "");
    terminal.answer("Arrêter", "q");
    EXPECT_EQ(Program::end(*process).status, 0);
    EXPECT_EQ(vorle.topics()[0].status, TopicStatus::Reserve);
    EXPECT_FALSE(vorle.topics()[0].correction) << "what was taken back left nothing";
    EXPECT_EQ(vorle.run("reglages calibrated").out, "false\n");

    process = start({QStringLiteral("calibrer")});
    terminal.answer("2 sur 2", "");
    terminal.answer("Arrêter", "g");
    terminal.answer("de 0 à 10", "7\n");
    terminal.answer("C’est noté.", "");
    EXPECT_EQ(Program::end(*process).status, 0);
    EXPECT_EQ(vorle.topics()[1].status, TopicStatus::Program);
    EXPECT_EQ(vorle.topics()[1].correction->score, 7);
    EXPECT_EQ(vorle.run("reglages calibrated").out, "true\n");
    process = start({QStringLiteral("calibrer")});
    terminal.answer("C’est déjà fait.", "");
    EXPECT_EQ(Program::end(*process).status, 0);

    // Taken again an hour later, what was answered before does not count.
    QList<Topic> list = vorle.topics();
    for (Topic &topic : list) {
        topic.triagedAt = topic.triagedAt->addSecs(-3600);
    }
    list[0].status = TopicStatus::Inbox;
    vorle.save(list);
    process = start({QStringLiteral("calibrer"), QStringLiteral("--reprendre")});
    terminal.answer("1 sur 1", "");
    terminal.answer("Arrêter", "g");
    terminal.answer("de 0 à 10", "");
    ::kill(static_cast<pid_t>(process->processId()), SIGINT);
    EXPECT_EQ(Program::end(*process).status, 0);
    EXPECT_EQ(vorle.topics()[0].status, TopicStatus::Program)
        << "the choice was taken, the score is not";
    EXPECT_EQ(vorle.run("calibrer --passer").status, 0);
    EXPECT_EQ(vorle.run("reglages calibrated").out, "true\n");
}

TEST_F(Calibrer, tells_machines_how_far_it_is_and_asks_nothing) {
    const auto state = [&](const char *words) {
        const Program::Outcome outcome = vorle.run(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.object();
    };
    EXPECT_EQ(state("calibrer --json")[u"underWay"], false);
    const QJsonObject begun = state("calibrer --reprendre --json");
    EXPECT_EQ(begun[u"underWay"], true);
    EXPECT_EQ(begun[u"answered"], 0);
    EXPECT_EQ(begun[u"total"], 2);
    EXPECT_TRUE(begun[u"next"].toObject().contains(u"title"));
    EXPECT_EQ(state("calibrer --passer --json")[u"calibrated"], true);
}

} // namespace
} // namespace vorle
