#include "app/labels/StepCommand.h"

#include "base/Text.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace vorle {

namespace {

constexpr qsizetype longest = 200;

constexpr auto programs = std::to_array<QStringView>(
    {u"npm",    u"npx",    u"pnpm",       u"yarn",   u"bun",     u"bunx",    u"deno",   u"node",
     u"git",    u"gh",     u"glab",       u"brew",   u"pip",     u"pip3",    u"pipx",   u"uv",
     u"uvx",    u"python", u"python3",    u"poetry", u"conda",   u"pytest",  u"ruff",   u"cargo",
     u"rustup", u"go",     u"docker",     u"podman", u"kubectl", u"helm",    u"make",   u"cmake",
     u"ninja",  u"swift",  u"xcodebuild", u"xcrun",  u"pod",     u"flutter", u"dart",   u"gem",
     u"bundle", u"rails",  u"composer",   u"php",    u"dotnet",  u"mvn",     u"gradle", u"curl",
     u"ollama", u"claude", u"codex",      u"vorle",  u"expo",    u"eas",     u"tsc",    u"eslint",
     u"vite",   u"jest",   u"code",       u"psql",   u"sqlite3", u"ffmpeg",  u"magick"});

/// What is typed has plain blanks, whatever typography made of them.
QString typed(QStringView words) {
    QString line = trimmed(words).toString();
    std::ranges::replace_if(
        line, [](QChar c) { return isBlank(c.unicode()) && c != u'\n'; }, QChar(u' '));
    return line;
}

bool handsOn(const QString &line) {
    if (std::ranges::any_of(line, [](QChar c) { return QStringView(u"|;<>`").contains(c); }) ||
        line.contains(QStringView(u"$("))) {
        return true;
    }
    return QString(line).remove(QStringLiteral(" && ")).contains(u'&');
}

bool isStarted(QStringView program) {
    return (program.startsWith(QStringView(u"./")) && program.size() > 2) ||
           std::ranges::find(programs, program) != programs.end();
}

/// Whether an option has the program write a file of that name, or run what stands in the command.
bool writesOrRuns(const QStringList &words) {
    const QString &program = words.first();
    const auto has = [&](std::initializer_list<QStringView> options) {
        return std::ranges::any_of(words, [&](const QString &word) {
            return std::ranges::find(options, QStringView(word)) != options.end();
        });
    };
    if (program == u"curl") {
        return std::ranges::any_of(words, [](const QString &word) {
            const bool letters = word.startsWith(u'-') && !word.startsWith(QStringView(u"--"));
            return word.startsWith(QStringView(u"--output")) ||
                   word.startsWith(QStringView(u"--remote-name")) ||
                   (letters && word.contains(u'o', Qt::CaseInsensitive));
        });
    }
    if (program == u"php") {
        return has({u"-r"});
    }
    const bool runsScripts = program.startsWith(QStringView(u"python")) || program == u"node" ||
                             program == u"deno" || program == u"bun";
    const bool runsPackages = program == u"npx" || program == u"npm" || program == u"pnpm";
    return (runsScripts && has({u"-c", u"-e", u"-p", u"--eval", u"--print", u"eval"})) ||
           (runsPackages && has({u"-c", u"--call", u"--shell-mode"}));
}

bool isCommand(const QString &line) {
    const bool plain = std::ranges::all_of(line, [](QChar c) { return c >= u' ' && c <= u'~'; });
    if (!plain || line.size() > longest || handsOn(line)) {
        return false;
    }
    const QStringList parts = line.split(QStringLiteral(" && "));
    return std::ranges::all_of(parts, [](const QString &part) {
        const QStringList words = part.split(u' ', Qt::SkipEmptyParts);
        return words.size() >= 2 && isStarted(words.first()) && !writesOrRuns(words);
    });
}

/// Of the whole step: a sentence of some language may begin with "make" or "go" as well.
bool looksTyped(const QString &line) {
    return std::ranges::any_of(line, [](QChar c) { return QStringView(u"@/=-").contains(c); });
}

} // namespace

StepParts stepParts(const QString &step) {
    if (const QString whole = typed(step); isCommand(whole) && looksTyped(whole)) {
        return {{}, whole, {}};
    }
    static constexpr std::pair<QChar, QChar> quotes[] = {
        {u'«', u'»'}, {u'`', u'`'}, {u'“', u'”'}, {u'"', u'"'}};
    for (qsizetype at = 0; at < step.size(); ++at) {
        const auto quote = std::ranges::find(quotes, step[at], &std::pair<QChar, QChar>::first);
        const qsizetype end = quote == std::end(quotes) ? -1 : step.indexOf(quote->second, at + 1);
        if (end < 0) {
            continue;
        }
        QString line = typed(QStringView(step).sliced(at + 1, end - at - 1));
        if (isCommand(line)) {
            return {step.first(at), std::move(line), step.sliced(end + 1)};
        }
        at = end;
    }
    return {step, {}, {}};
}

} // namespace vorle
