// The agent of the demonstration. It is called exactly as the two real ones are, reads the real
// prompt and answers by the schema it was given, at no cost and without any network.
//
//   claude -p PROMPT --output-format json --json-schema SCHEMA ...    answers on standard output
//   codex [--search] exec ... --output-schema FILE --output-last-message FILE ... -
//                                                     reads the prompt on standard input
//
// VORLE_DEMO_SITE is the address of the demonstration's pages. VORLE_HOME keeps the mark that the
// first judging call has failed once. VORLE_DEMO_PACE, in thousandths of a second, stands in place
// of the pause each answer takes.

#include "app/demo/agent/BriefAgent.h"
#include "app/demo/agent/Digger.h"
#include "app/demo/agent/Grader.h"
#include "app/demo/agent/PromptReader.h"
#include "app/demo/agent/Scout.h"
#include "app/demo/agent/Screener.h"
#include "base/Resources.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <cstdio>
#include <optional>

using namespace vorle;
using namespace vorle::demo;

namespace {

struct Call {
    enum class Style { Claude, Codex } style = Style::Claude;
    QString prompt;
    QByteArray schema;
    QString answerFile; // Codex alone
};

struct Failure {
    QString text;
};

QString valueAfter(const QStringList &arguments, const QString &option) {
    const qsizetype at = arguments.indexOf(option);
    if (at < 0 || at + 1 >= arguments.size()) {
        throw Failure{QStringLiteral("option absente : ") + option};
    }
    return arguments[at + 1];
}

QByteArray wholeFile(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw Failure{QStringLiteral("fichier illisible : ") + path};
    }
    return file.readAll();
}

Call readCall(const QStringList &arguments) {
    Call call;
    if (arguments.contains(QStringLiteral("exec"))) {
        call.style = Call::Style::Codex;
        call.schema = wholeFile(valueAfter(arguments, QStringLiteral("--output-schema")));
        call.answerFile = valueAfter(arguments, QStringLiteral("--output-last-message"));
        if (arguments.last() != u"-") {
            throw Failure{QStringLiteral("la consigne est attendue sur l’entrée standard")};
        }
        QFile input;
        if (!input.open(stdin, QIODevice::ReadOnly)) {
            throw Failure{QStringLiteral("entrée standard fermée")};
        }
        call.prompt = QString::fromUtf8(input.readAll());
        return call;
    }
    call.prompt = valueAfter(arguments, QStringLiteral("-p"));
    // The joiner put before each "@" says that no file is meant; it is no part of what is read.
    call.prompt.remove(QChar(u'\u2060'));
    call.schema = valueAfter(arguments, QStringLiteral("--json-schema")).toUtf8();
    if (valueAfter(arguments, QStringLiteral("--output-format")) != u"json") {
        throw Failure{QStringLiteral("seul le format json est connu")};
    }
    return call;
}

/// What the prompt holds in the places of the named instruction; nothing when it is another.
std::optional<QHash<QString, QString>> valuesOf(const char *name, const Call &call) {
    const auto instruction = Resources().text(QString::fromLatin1(name), QStringLiteral("md"));
    return instruction ? placeholderValues(*instruction, call.prompt) : std::nullopt;
}

QString siteAddress() {
    const QString site = qEnvironmentVariable("VORLE_DEMO_SITE");
    if (site.isEmpty()) {
        throw Failure{QStringLiteral("VORLE_DEMO_SITE n’est pas donné")};
    }
    return site;
}

/// True for one call alone, whichever comes first: making the file settles it.
bool firstJudging() {
    const QString home = qEnvironmentVariable("VORLE_HOME");
    return !home.isEmpty() && QFile(home + QStringLiteral("/demo-judge-failed"))
                                  .open(QIODevice::WriteOnly | QIODevice::NewOnly);
}

/// The schema says what is asked for, and where two instructions share one, the prompt says which.
QByteArray answerTo(const Call &call) {
    const QJsonObject properties =
        QJsonDocument::fromJson(call.schema).object().value(u"properties").toObject();
    const DemoCatalogue catalogue(QDate::currentDate());
    if (properties.contains(u"candidates")) {
        if (const auto values = valuesOf("candidates-prompt", call)) {
            return json::encode(scout(*values, catalogue, siteAddress()));
        }
        if (const auto values = valuesOf("sites-prompt", call)) {
            return json::encode(screen(*values, catalogue, siteAddress()));
        }
    } else if (properties.contains(u"results")) {
        if (const auto values = valuesOf("dig-prompt", call)) {
            return json::encode(dig(*values, catalogue, siteAddress()));
        }
    } else if (properties.contains(u"essentials")) {
        if (const auto values = valuesOf("brief-prompt", call)) {
            return json::encode(writeBrief(*values, catalogue, siteAddress()));
        }
    } else if (properties.contains(u"judgments")) {
        if (const auto values = valuesOf("judge-prompt", call)) {
            if (firstJudging()) {
                throw Failure{
                    QStringLiteral("service momentanément surchargé (panne de démonstration)")};
            }
            return json::encode(grade(*values));
        }
    } else {
        throw Failure{QStringLiteral("schéma inconnu de l’agent de démonstration")};
    }
    throw Failure{QStringLiteral("consigne inconnue de l’agent de démonstration")};
}

/// Between 0.3 and 1.2 s, by the prompt's size, so that progress can be seen.
int pause(const Call &call) {
    const QString pace = qEnvironmentVariable("VORLE_DEMO_PACE");
    return pace.isEmpty() ? 300 + static_cast<int>(call.prompt.size() * 7 % 900) : pace.toInt();
}

void print(const QByteArray &bytes) {
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fputc('\n', stdout);
}

QByteArray claudeResult(QJsonObject fields) {
    fields[QStringLiteral("type")] = QStringLiteral("result");
    return QJsonDocument(fields).toJson(QJsonDocument::Compact);
}

void deliver(const Call &call, const QByteArray &answer, int milliseconds) {
    if (call.style == Call::Style::Codex) {
        QFile file(call.answerFile);
        if (!file.open(QIODevice::WriteOnly) || file.write(answer) != answer.size()) {
            throw Failure{QStringLiteral("réponse impossible à écrire")};
        }
        return;
    }
    print(claudeResult(
        {{QStringLiteral("is_error"), false},
         {QStringLiteral("result"), QStringLiteral("Réponse de démonstration.")},
         {QStringLiteral("structured_output"), QJsonDocument::fromJson(answer).object()},
         {QStringLiteral("total_cost_usd"), 0.01 + static_cast<double>(call.prompt.size()) / 2e6},
         {QStringLiteral("duration_ms"), milliseconds}}));
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().sliced(1);
    try {
        const Call call = readCall(arguments);
        const int milliseconds = pause(call);
        QThread::msleep(static_cast<unsigned long>(std::max(0, milliseconds)));
        deliver(call, answerTo(call), milliseconds);
        return 0;
    } catch (const Failure &failure) {
        if (!arguments.contains(QStringLiteral("exec"))) {
            print(claudeResult(
                {{QStringLiteral("is_error"), true}, {QStringLiteral("result"), failure.text}}));
        }
        std::fprintf(stderr, "%s\n", failure.text.toUtf8().constData());
        return 1;
    }
}
