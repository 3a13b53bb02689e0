#include "tests/support/Program.h"

#include "tests/support/Wait.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

namespace vorle::test {

QJsonObject Program::Outcome::object() const { return QJsonDocument::fromJson(bytes()).object(); }

QJsonArray Program::Outcome::list() const { return QJsonDocument::fromJson(bytes()).array(); }

Program::Program() {
    agent.signIn();
    agent.answerBy(R"({"candidates":{}})");
    QDir(path()).mkdir(QStringLiteral("runtime"));
    QFile::setPermissions(path("runtime"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    for (const auto &[variable, name] :
         {std::pair("XDG_DATA_HOME", "data"), std::pair("XDG_CONFIG_HOME", "config"),
          std::pair("XDG_RUNTIME_DIR", "runtime"), std::pair("VORLE_HOME", "home")}) {
        environment.insert(QString::fromLatin1(variable), path(name));
    }
    // Where a Mac would take the user's own.
    environment.insert(QStringLiteral("VORLE_STORE"), topicsFile());
    environment.insert(QStringLiteral("VORLE_SETTINGS"), settingsFile());
}

Program::~Program() {
    for (QProcess &process : m_processes) {
        process.kill();
        process.waitForFinished();
    }
}

void Program::save(const QList<Topic> &topics) const {
    writeFile(topicsFile(), json::encode(topics));
}

QList<Topic> Program::topics(const char *name) const {
    const QByteArray bytes = readFile(path("data/vorle/") + QString::fromUtf8(name));
    return bytes.isEmpty() ? QList<Topic>() : json::decode<QList<Topic>>(bytes);
}

QProcess &Program::command(const QStringList &words) {
    QProcess &process = m_processes.emplace_back();
    process.setProcessEnvironment(environment);
    process.setProgram(QStringLiteral(VORLE_BINARIES "/vorle"));
    process.setArguments(words);
    return process;
}

QProcess &Program::start(const QStringList &words) {
    QProcess &process = command(words);
    process.start();
    return process;
}

Program::Outcome Program::end(QProcess &process) {
    spinUntil([&] { return process.state() == QProcess::NotRunning; }, std::chrono::seconds(100));
    Outcome outcome;
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    if (process.isReadable()) { // its output may have gone to a file
        outcome.out = process.readAllStandardOutput().toStdString();
    }
    outcome.err = process.readAllStandardError().toStdString();
    return outcome;
}

QStringList Program::parted(const char *words) {
    return QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts);
}

} // namespace vorle::test
