#pragma once

#include "core/Topic.h"
#include "tests/support/ScriptedAgent.h"

#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <list>
#include <memory>
#include <string>

namespace vorle::test {

/// vorle as a person has it, in a folder of its own: a home with an agent that is signed in and
/// answers nothing until it is told to, the topics, the settings, and the runtime folder. Runs the
/// program itself there; what still runs in the end is killed.
class Program {
    QTemporaryDir m_folder;
    std::list<QProcess> m_processes;

public:
    struct Outcome {
        int status = -1; ///< -1 of one that was killed
        std::string out;
        std::string err;
        QByteArray bytes() const { return QByteArray::fromStdString(out); }
        QJsonObject object() const; ///< what was printed, as JSON
        QJsonArray list() const;
    };

    Program();
    ~Program();

    /// Where the file of that name lies in the folder.
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString path(const char *name = "") const { return path(QString::fromUtf8(name)); }
    void write(const char *name, const QByteArray &bytes) const { writeFile(path(name), bytes); }
    QByteArray read(const char *name) const { return readFile(path(name)); }
    QString topicsFile() const { return path("data/vorle/topics.json"); }
    QString settingsFile() const { return path("config/vorle/settings.json"); }
    void save(const QList<Topic> &topics) const;
    /// The topics a file of the data folder holds, none when it is not there.
    QList<Topic> topics(const char *name = "topics.json") const;

    /// A command, its words given or parted by blanks, ready to be started.
    QProcess &command(const QStringList &words);
    QProcess &start(const QStringList &words);
    QProcess &start(const char *words) { return start(parted(words)); }
    static Outcome end(QProcess &process);
    Outcome run(const QStringList &words) { return end(start(words)); }
    Outcome run(const char *words) { return run(parted(words)); }
    static QStringList parted(const char *words);

    ScriptedAgent agent{path("home")};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

} // namespace vorle::test
