#include "app/diagnostics/ErrorKind.h"

#include "agents/AgentError.h"
#include "agents/AgentKind.h"
#include "base/SystemErrorText.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <system_error>

namespace vorle {

namespace {

/// The sentence of ours that a failed call's text begins with, without what the agent said.
QStringList ownSentence(const QString &text) {
    constexpr int anyCode = 12345;
    static const QRegularExpression stopped = [] {
        QString pattern =
            QRegularExpression::escape(AgentError::stopped(anyCode, {}).text().trimmed());
        pattern.replace(QString::number(anyCode), QStringLiteral("-?[0-9]+"));
        return QRegularExpression(QStringLiteral("^(") + pattern + u')');
    }();
    if (const auto match = stopped.match(text); match.hasMatch()) {
        return {match.captured(1)};
    }
    QStringList sentences{AgentError::unreadable().text(), AgentError::missingInstruction().text()};
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        sentences += AgentError::notFound(displayName(kind)).text();
        sentences += AgentError::signedOut(displayName(kind)).text();
        sentences += AgentError::timedOut(displayName(kind)).text();
    }
    const auto own = std::ranges::find_if(
        sentences, [&](const QString &sentence) { return text.startsWith(sentence); });
    return own == sentences.end() ? QStringList() : QStringList{*own};
}

/// What the system refused, as our sentences say it.
QStringList refusalsIn(const QString &text) {
    QStringList words;
    for (const std::errc code :
         {std::errc::no_space_on_device, std::errc::read_only_file_system,
          std::errc::permission_denied, std::errc::no_such_file_or_directory, std::errc::io_error,
          std::errc::too_many_files_open, std::errc::not_enough_memory, std::errc::is_a_directory,
          std::errc::not_a_directory, std::errc::file_too_large}) {
        if (const QString refusal = systemErrorText(std::make_error_code(code));
            text.contains(refusal)) {
            words += refusal;
        }
    }
    return words;
}

} // namespace

QString errorKind(const QString &text) {
    static const QRegularExpression known(
        QStringLiteral(
            "\\b(API Error|rate limit|usage limit|hit your limit|overloaded|quota|billing|credit|"
            "unauthorized|forbidden|invalid api key|log ?in|logged out|not logged in|timed? ?out|"
            "ECONNREFUSED|ECONNRESET|ENOTFOUND|ETIMEDOUT|EAI_AGAIN|certificate|proxy|"
            "model not found|not supported|unknown option|"
            "no such file or directory|permission denied|no space left on device|"
            "read-only file system|input/output error|too many open files|disk quota exceeded|"
            "argument list too long|cannot allocate memory|resource temporarily unavailable|"
            "40[0-9]|42[0-9]|50[0-9]|52[0-9])\\b"),
        QRegularExpression::CaseInsensitiveOption);
    const QString begin = text.left(4000);
    QStringList kinds = ownSentence(begin) + refusalsIn(begin);
    for (auto found = known.globalMatch(begin); found.hasNext();) {
        const QString word = found.next().captured(1).toLower();
        if (!kinds.contains(word) && kinds.size() < 6) {
            kinds += word;
        }
    }
    return kinds.isEmpty() && !text.isEmpty()
               ? QStringLiteral("? (%1)").arg(text.size()) // its length tells two apart
               : kinds.join(QStringLiteral(", "));
}

} // namespace vorle
