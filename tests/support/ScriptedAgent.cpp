#include "tests/support/ScriptedAgent.h"

#include "base/Json.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <csignal>

namespace vorle::test {

namespace {

constexpr auto prelude = R"sh(calls="$HOME/calls"
mkdir -p "$calls"
n=1
for each in "$calls"/*; do [ -e "$each" ] && n=$((n + 1)); done
while ! mkdir "$calls/$n" 2>/dev/null; do n=$((n + 1)); done
call="$calls/$n"
for argument in "$@"; do
    [ "$before" = --output-last-message ] && answer="$argument"
    before="$argument"
done
echo $$ > "$call/process"
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

QString program(const QString &home, AgentKind kind) {
    return home + QStringLiteral("/.local/bin/") + json::rawText(kind);
}

void writeAccount(const QString &home, AgentKind kind, const QByteArray &content) {
    writeFile(home + (kind == AgentKind::Claude ? QStringLiteral("/.claude.json")
                                                : QStringLiteral("/.codex/auth.json")),
              content);
}

} // namespace

const QByteArray ScriptedAgent::byTable =
    "exec env VORLE_TEST_CALL=\"$call\" python3 -S '" VORLE_SUPPORT "/stand-in-agent.py' \"$@\"";

ScriptedAgent::ScriptedAgent() : m_home(m_folder.filePath(QStringLiteral("home"))) {
    QDir().mkpath(home());
    QDir().mkpath(temporary());
    m_variables.set("TMPDIR", temporary());
}

ScriptedAgent::ScriptedAgent(const QString &home) : m_home(home) { QDir().mkpath(home); }

AgentEnvironment ScriptedAgent::environment() const {
    AgentEnvironment environment;
    environment.variables.insert(QStringLiteral("PATH"), QStringLiteral("/old/path"));
    environment.variables.insert(QStringLiteral("VORLE_HOME"), home());
    environment.userHome = QStringLiteral("/nowhere");
    environment.sharedFolders = {m_folder.filePath(QStringLiteral("shared"))};
    return environment;
}

void ScriptedAgent::install(AgentKind kind, const QByteArray &shell) const {
    writeProgram(program(home(), kind), prelude + shell);
}

void ScriptedAgent::signIn(AgentKind kind) const {
    writeAccount(home(), kind,
                 kind == AgentKind::Claude ? R"({"oauthAccount": {}})" : R"({"tokens": {}})");
}

void ScriptedAgent::signOut(AgentKind kind) const { writeAccount(home(), kind, "{}"); }

void ScriptedAgent::answerBy(const QByteArray &table) const {
    writeFile(home() + QStringLiteral("/table.json"), table);
    if (!QFile::exists(program(home(), AgentKind::Claude))) {
        install(AgentKind::Claude, byTable);
    }
}

QList<ScriptedAgent::Call> ScriptedAgent::calls() const {
    QList<Call> out;
    for (int n = 1; QDir(home() + QStringLiteral("/calls/%1").arg(n)).exists(); ++n) {
        const auto noted = [folder =
                                home() + QStringLiteral("/calls/%1/").arg(n)](const char *what) {
            return readFile(folder + QString::fromLatin1(what));
        };
        Call call;
        call.arguments = pieces(noted("arguments"));
        for (const QString &variable : pieces(noted("environment"))) {
            const qsizetype equals = variable.indexOf(u'=');
            call.environment.insert(variable.left(equals), variable.mid(equals + 1));
        }
        call.directory = QString::fromUtf8(noted("directory")).trimmed();
        call.input = noted("input");
        call.process = noted("process").trimmed().toLongLong();
        call.step = QString::fromUtf8(noted("step"));
        out += call;
    }
    return out;
}

qsizetype ScriptedAgent::calls(QStringView step) const {
    const QList<Call> all = calls();
    return std::ranges::count(all, step, &Call::step);
}

QString ScriptedAgent::prompts() const {
    QString text;
    for (const Call &call : calls()) {
        text += call.prompt() + u'\n';
    }
    return text;
}

qsizetype ScriptedAgent::living() const {
    return std::ranges::count_if(calls(), [](const Call &call) {
        return call.process > 0 && ::kill(pid_t(call.process), 0) == 0;
    });
}

QStringList ScriptedAgent::leftovers() const {
    return QDir(temporary()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
}

} // namespace vorle::test
