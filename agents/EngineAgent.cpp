#include "agents/EngineAgent.h"
#include "agents/AgentWords.h"
#include "agents/ProcessRunner.h"
#include "agents/TemporaryFiles.h"
#include "base/Text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <csignal>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype detailLength = 300;
constexpr qsizetype examinedErrors = 65'536;

bool hasModel(const AgentRequest &request) { return request.model && !request.model->isEmpty(); }

QStringList claudeArguments(const AgentRequest &request) {
    QStringList arguments{QStringLiteral("-p"),
                          request.prompt,
                          QStringLiteral("--output-format"),
                          QStringLiteral("json"),
                          QStringLiteral("--json-schema"),
                          request.schema,
                          QStringLiteral("--strict-mcp-config"),
                          QStringLiteral("--setting-sources"),
                          QStringLiteral("project"),
                          QStringLiteral("--disable-slash-commands")};
    if (hasModel(request)) {
        arguments += {QStringLiteral("--model"), *request.model};
    }
    const QStringList webTools{QStringLiteral("WebSearch"), QStringLiteral("WebFetch")};
    if (request.web == WebAccess::On) {
        arguments += QStringLiteral("--allowedTools");
        arguments += webTools;
    }
    arguments += QStringLiteral("--disallowedTools");
    if (request.web == WebAccess::Off) {
        arguments += webTools;
    }
    return arguments + QStringList{QStringLiteral("Bash"),        QStringLiteral("Edit"),
                                   QStringLiteral("Write"),       QStringLiteral("Read"),
                                   QStringLiteral("Glob"),        QStringLiteral("Grep"),
                                   QStringLiteral("NotebookEdit")};
}

QStringList codexArguments(const AgentRequest &request, const QString &schemaPath,
                           const QString &answerPath) {
    QStringList arguments;
    if (request.web == WebAccess::On) {
        arguments += QStringLiteral("--search");
    }
    arguments += {QStringLiteral("exec"),
                  QStringLiteral("--skip-git-repo-check"),
                  QStringLiteral("--ephemeral"),
                  QStringLiteral("--sandbox"),
                  QStringLiteral("read-only"),
                  QStringLiteral("--color"),
                  QStringLiteral("never"),
                  QStringLiteral("--output-schema"),
                  schemaPath,
                  QStringLiteral("--output-last-message"),
                  answerPath};
    if (hasModel(request)) {
        arguments += {QStringLiteral("--model"), *request.model};
    }
    return arguments + QStringList{QStringLiteral("-")}; // the prompt comes on standard input
}

/// Claude Code attaches the file behind every "@path" of a prompt that follows a blank, even when
/// it may not read files: a page could have it send any file of the user's. A word joiner before
/// the sign keeps it a plain one.
constexpr char16_t wordJoiner = u'\u2060';

QString withoutMentions(const QString &prompt) {
    QString out;
    out.reserve(prompt.size() + 64);
    for (const QChar c : prompt) {
        if (c == u'@' && (out.isEmpty() || !out.back().isLetterOrNumber())) {
            out += QChar(wordJoiner);
        }
        out += c;
    }
    return out;
}

/// The word that a mention names, from the sign on: what an answer would repeat of it.
QStringView mentioned(QStringView text) {
    qsizetype end = 0;
    while (end < text.size() &&
           (text[end].isLetterOrNumber() || QStringView(u"-_./~").contains(text[end]))) {
        ++end;
    }
    while (end > 0 && QStringView(u"-./").contains(text[end - 1])) {
        --end; // the sentence's own
    }
    return text.first(end);
}

/// What was marked in a prompt that was marked so.
QSet<QString> markedMentions(const QString &prompt) {
    QSet<QString> words;
    const QString mark = QString(QChar(wordJoiner)) + u'@';
    for (qsizetype at = prompt.indexOf(mark); at >= 0; at = prompt.indexOf(mark, at + 2)) {
        words.insert(mentioned(QStringView(prompt).sliced(at + 2)).toString());
    }
    return words;
}

/// The answer may repeat what was marked in the prompt, in any of its texts, the sign behind the
/// mark or not. A mark before anything else is the agent's own.
QByteArray withoutMarks(const QByteArray &json, const QSet<QString> &marked) {
    if (marked.isEmpty() || !json.contains(QString(QChar(wordJoiner)).toUtf8())) {
        return json;
    }
    const QString text = QString::fromUtf8(json);
    QString out;
    out.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == QChar(wordJoiner)) {
            const QStringView rest = QStringView(text).sliced(at + 1);
            const bool sign = rest.startsWith(u'@');
            const QString word = mentioned(sign ? rest.sliced(1) : rest).toString();
            if ((sign || !word.isEmpty()) && marked.contains(word)) {
                continue;
            }
        }
        out += text[at];
    }
    return out.toUtf8();
}

/// The prompt as the agent takes it literally. @throws AgentError when it is too long to be passed
QString literalPrompt(QString prompt, AgentKind kind) {
    if (kind == AgentKind::Claude) {
        prompt.replace(QChar(u'\0'), QChar(QChar::ReplacementCharacter)); // it ends an argument
        prompt = withoutMentions(prompt);
        if (prompt.startsWith(u'-') || prompt.startsWith(u'/')) {
            prompt.prepend(QStringLiteral("Task:\n"));
        }
    }
    const auto limit = EngineAgent::promptLimit(kind);
    if (limit && utf8Size(prompt) > *limit) {
        throw AgentError::message(QCoreApplication::translate(
            "AgentError", "La consigne est trop longue pour être transmise à l’IA."));
    }
    return prompt;
}

/// The limit that the last lines printed tell of, those of the prompt apart: Codex prints what it
/// is asked, and a page that speaks of a limit would hold every run up.
std::optional<UsageLimit> limitAtEnd(const QString &printed, const QString &prompt) {
    constexpr qsizetype linesLookedAt = 5;
    QStringList last;
    const QStringList lines = printed.split(u'\n', Qt::SkipEmptyParts);
    for (qsizetype i = lines.size(); i > 0 && last.size() < linesLookedAt; --i) {
        const QString line = lines[i - 1].trimmed();
        if (!line.isEmpty()) {
            last.prepend(prompt.contains(line) ? QString() : line);
        }
    }
    return usageLimit(last.join(u'\n'));
}

/// What there is to read of how a call went, besides its answer.
struct CallEnd {
    const ProcessEnd &process;
    AgentKind kind;
    std::chrono::milliseconds timeout;
    QString prompt;
};

/// @throws AgentError unless the process ended well
void requireSuccess(const CallEnd &call) {
    const ProcessEnd &end = call.process;
    if (end.succeeded()) {
        return;
    }
    if (end.how == ProcessEnd::How::Flooded) {
        throw AgentError::unreadable();
    }
    // Claude Code catches the watchdog's SIGTERM and ends with a shell's status for it.
    const bool killed = end.how == ProcessEnd::How::Signalled || end.status == 128 + SIGTERM;
    if (killed && end.elapsed >= call.timeout - 1s) {
        throw AgentError::timedOut(displayName(call.kind));
    }
    ClaudeFailure claude;
    if (call.kind == AgentKind::Claude) {
        claude = claudeFailure(end.output);
    }
    // Before the cut, which could leave half a key that nothing gives away.
    const QString errors = sanitized(end.errorTail);
    const QString told = sanitized(claude.text.right(examinedErrors));
    const QString &detail = trimmed(errors).isEmpty() ? told : errors;
    auto limit = limitAtEnd(told, call.prompt);
    if (!limit) {
        limit = limitAtEnd(errors, call.prompt);
    }
    throw AgentError::stopped(end.status, lastCharacters(detail, detailLength).toString())
        .withSpent(claude.spent)
        .withLimit(std::move(limit));
}

/// @throws AgentError
AgentResult codexResult(const QByteArray &answer, const CallEnd &call) {
    const AgentSpend spent{std::nullopt, codexTokens(call.process.errorTail)};
    try {
        AgentResult result = unwrapCodex(answer);
        result.spent = spent;
        return result;
    } catch (const AgentError &error) {
        throw error.withSpent(spent).withLimit(
            limitAtEnd(sanitized(call.process.errorTail), call.prompt));
    }
}

QByteArray readAnswer(const QString &path) {
    QFile file(path);
    // The agent may have put anything there, a pipe included.
    const bool readable = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
                          file.size() <= ProcessEnd::maxReadOutput;
    return readable ? file.readAll() : QByteArray();
}

} // namespace

EngineAgent::EngineAgent(AgentEnvironment environment, std::function<QString()> preferred,
                         AgentTimeouts timeouts)
    : m_locator(std::move(environment), std::move(preferred)), m_timeouts(timeouts) {}

std::optional<qsizetype> EngineAgent::promptLimit([[maybe_unused]] AgentKind kind) {
#ifdef Q_OS_LINUX
    if (kind == AgentKind::Claude) {
        return 131'071;
    }
#endif
    return std::nullopt;
}

Task<> EngineAgent::mended(CancelToken cancel) const {
    if (m_mending) {
        co_await m_mending(std::move(cancel));
    }
}

void EngineAgent::check(AgentKind kind) const {
    switch (m_locator.readiness(kind)) {
    case AgentReadiness::Missing:
        throw AgentError::notFound(displayName(kind));
    case AgentReadiness::SignedOut:
        throw AgentError::signedOut(displayName(kind));
    case AgentReadiness::Ready:
        break;
    }
}

Task<AgentResult> EngineAgent::run(AgentRequest request, std::optional<AgentKind> forced,
                                   CancelToken cancel) {
    const AgentKind kind = m_locator.choose(forced);
    const auto executable = m_locator.locate(kind);
    if (!executable) {
        throw AgentError::notFound(displayName(kind));
    }
    cancel.throwIfCancelled();
    request.prompt = literalPrompt(std::move(request.prompt), kind);

    const TemporaryFile schema(u"vorle-schema-", u".json");
    const TemporaryFile answer(u"vorle-answer-", u".json");
    ProcessRequest process;
    process.executable = *executable;
    process.environment = m_locator.environment().childVariables(*executable);
    process.workingDirectory = QDir::tempPath();
    process.timeout = request.web == WebAccess::On ? m_timeouts.withWeb : m_timeouts.withoutWeb;
    if (kind == AgentKind::Claude) {
        schema.write(request.schema.toUtf8());
        process.arguments = claudeArguments(request);
    } else {
        schema.write(makeStrict(request.schema).toUtf8());
        process.arguments = codexArguments(request, schema.path(), answer.path());
        process.input = request.prompt.toUtf8();
    }
    const ProcessEnd end = co_await runProcess(process, cancel);

    co_return co_await onPool(
        [end, kind, timeout = process.timeout, path = answer.path(), prompt = request.prompt] {
            const CallEnd call{end, kind, timeout, prompt};
            requireSuccess(call);
            if (kind == AgentKind::Codex) {
                return codexResult(readAnswer(path), call);
            }
            AgentResult result = unwrapClaude(end.output);
            result.json = withoutMarks(result.json, markedMentions(prompt));
            return result;
        });
}

} // namespace vorle
