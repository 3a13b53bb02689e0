#include "tests/support/ScriptedAgent.h"

#include "base/Json.h"

#include <QDir>
#include <QFile>

namespace vorle::test {

namespace {

constexpr auto prelude = R"sh(#!/bin/sh
calls="$HOME/calls"
mkdir -p "$calls"
n=1
while ! mkdir "$calls/$n" 2>/dev/null; do n=$((n + 1)); done
call="$calls/$n"
for argument in "$@"; do
    [ "$before" = --output-last-message ] && answer="$argument"
    before="$argument"
done
env -0 > "$call/environment"
pwd -P > "$call/directory"
[ $# = 0 ] || printf '%s\0' "$@" > "$call/arguments"
)sh";

QStringList pieces(const QByteArray &text) {
    QStringList out;
    for (const QByteArray &piece : text.split('\0')) {
        out += QString::fromUtf8(piece);
    }
    out.removeLast(); // after the last separator
    return out;
}

} // namespace

ScriptedAgent::ScriptedAgent() : m_oldTemporary(qgetenv("TMPDIR")) {
    QDir().mkpath(home());
    QDir().mkpath(temporary());
    qputenv("TMPDIR", QFile::encodeName(temporary()));
}

ScriptedAgent::~ScriptedAgent() {
    if (m_oldTemporary.isEmpty()) {
        qunsetenv("TMPDIR");
    } else {
        qputenv("TMPDIR", m_oldTemporary);
    }
}

AgentEnvironment ScriptedAgent::environment() const {
    AgentEnvironment environment;
    environment.variables.insert(QStringLiteral("PATH"), QStringLiteral("/old/path"));
    environment.variables.insert(QStringLiteral("VORLE_HOME"), home());
    environment.userHome = QStringLiteral("/nowhere");
    environment.sharedFolders = {m_folder.filePath(QStringLiteral("shared"))};
    return environment;
}

void ScriptedAgent::install(AgentKind kind, const QByteArray &shell) const {
    const QString path = home() + QStringLiteral("/.local/bin/") + json::rawText(kind);
    writeFile(path, prelude + shell + '\n');
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void ScriptedAgent::signIn(AgentKind kind) const {
    if (kind == AgentKind::Claude) {
        writeFile(home() + QStringLiteral("/.claude.json"), R"({"oauthAccount": {}})");
    } else {
        writeFile(home() + QStringLiteral("/.codex/auth.json"), R"({"tokens": {}})");
    }
}

QList<ScriptedAgent::Call> ScriptedAgent::calls() const {
    QList<Call> out;
    for (int n = 1; QDir(home() + QStringLiteral("/calls/%1").arg(n)).exists(); ++n) {
        const QString folder = home() + QStringLiteral("/calls/%1/").arg(n);
        Call call;
        call.arguments = pieces(readFile(folder + QStringLiteral("arguments")));
        for (const QString &variable : pieces(readFile(folder + QStringLiteral("environment")))) {
            const qsizetype equals = variable.indexOf(u'=');
            call.environment.insert(variable.left(equals), variable.mid(equals + 1));
        }
        call.directory =
            QString::fromUtf8(readFile(folder + QStringLiteral("directory"))).trimmed();
        call.input = readFile(folder + QStringLiteral("input"));
        out += call;
    }
    return out;
}

QStringList ScriptedAgent::leftovers() const {
    return QDir(temporary()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

} // namespace vorle::test
