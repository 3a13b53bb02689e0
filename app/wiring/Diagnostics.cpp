#include "app/wiring/Diagnostics.h"

#include "agents/AgentLocator.h"
#include "base/French.h"
#include "base/Log.h"
#include "base/SystemErrorText.h"
#include "core/NumberText.h"
#include "storage/BesideTopics.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSysInfo>

#include <algorithm>
#include <system_error>

namespace vorle {

namespace {

constexpr qsizetype runsTold = 5;
constexpr qsizetype linesTold = 20;

QString withoutHome(const QString &path) {
    const QString home = QDir::homePath();
    return home.size() > 1 && (path == home || path.startsWith(home + u'/'))
               ? u'~' + path.sliced(home.size())
               : path;
}

QString compilerName() {
#if defined(__clang__)
    return QStringLiteral("clang %1.%2").arg(__clang_major__).arg(__clang_minor__);
#elif defined(__GNUC__)
    return QStringLiteral("gcc %1.%2").arg(__GNUC__).arg(__GNUC_MINOR__);
#else
    return QStringLiteral("?");
#endif
}

QString stateWord(AgentReadiness readiness) {
    switch (readiness) {
    case AgentReadiness::Ready:
        return QStringLiteral("ready");
    case AgentReadiness::SignedOut:
        return QStringLiteral("signed out");
    case AgentReadiness::Missing:
        return QStringLiteral("missing");
    }
    return {};
}

/// Whatever the part throws becomes a line, and the others are told all the same.
template <class Part>
void attempt(Diagnostics &into, const char *what, Part part) {
    try {
        part();
    } catch (const std::system_error &error) {
        into.problems += QString::fromLatin1(what) + QStringLiteral(": ") +
                         QString::fromStdString(error.code().message());
    } catch (const std::exception &) {
        into.problems += QString::fromLatin1(what) + QStringLiteral(": ?");
    }
}

Diagnostics::File fileAt(const QString &name, const QString &path) {
    const QFileInfo info(path);
    return {name, withoutHome(path), info.exists() ? std::optional(info.size()) : std::nullopt};
}

void tellTopics(Diagnostics &into, const DiagnosticSources &sources) {
    const QString file = sources.topicsFile();
    into.files += fileAt(QStringLiteral("topics"), file);
    for (const char *name : {"runs", "run-left", "score-notes", "screened"}) {
        into.files += fileAt(QString::fromLatin1(name),
                             sidecarPath(file, QLatin1StringView(name) + QStringLiteral(".json")));
    }
    const TopicStore &store = *sources.topics;
    into.damaged = store.isDamaged();
    for (const std::string_view word : rawStrings(TopicStatus{})) {
        const QString status = QString::fromUtf8(word.data(), qsizetype(word.size()));
        into.topics += {status, store.topics(*json::fromRaw<TopicStatus>(status)).size()};
    }
    if (const auto error = store.saveError()) {
        into.problems += QStringLiteral("saving the topics: ") + errorKind(*error);
    }
    const QList<RunReport> past = store.history();
    for (auto report = past.crbegin(); report != past.crend() && into.runs.size() < runsTold;
         ++report) {
        Diagnostics::Run run{
            report->date, report->added, report->seconds, report->cancelled, {}, {}};
        if (report->failed) {
            run.failed = errorKind(*report->failed);
        }
        for (const ScopeReport &scope : report->scopes) {
            if (scope.failed()) {
                run.scopes += errorKind(scope.error);
            }
        }
        into.runs += run;
    }
}

QString scheduleWord(const Schedule &schedule) {
    static const char *const names[] = {"sun", "mon", "tue", "wed", "thu", "fri", "sat"};
    QStringList days;
    for (const int day : schedule.weekdays) {
        days += QString::fromLatin1(names[std::clamp(day, 1, 7) - 1]);
    }
    days.removeDuplicates();
    return days.isEmpty() ? QString()
                          : QStringLiteral("%1 %2:%3")
                                .arg(days.join(u','))
                                .arg(schedule.hour)
                                .arg(schedule.minute, 2, 10, QChar(u'0'));
}

void tellSettings(Diagnostics &into, const DiagnosticSources &sources) {
    const Preferences &preferences = *sources.preferences;
    const Settings &settings = preferences.settings();
    into.files += fileAt(QStringLiteral("settings"), preferences.location());
    into.model = settings.agentModel;
    into.schedule = scheduleWord(settings.schedule);
    into.nextRun = settings.schedule.nextRun(into.date, QTimeZone::systemTimeZone(),
                                             settings.believedSlot(into.date));
    into.lastRun = settings.lastSearch;
    if (const auto error = preferences.writeError()) {
        into.problems += QStringLiteral("saving the settings: ") + errorKind(*error);
    }
    if (preferences.notice()) {
        into.problems += QStringLiteral("the settings file was not read as settings");
    }
}

void tellAgents(Diagnostics &into, const DiagnosticSources &sources) {
    const AgentLocator &locator = sources.agent->locator();
    const AgentKind chosen = locator.choose();
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        auto path = locator.locate(kind);
        if (path) {
            path = withoutHome(*path);
        }
        into.agents +=
            {json::rawText(kind), stateWord(locator.readiness(kind)), kind == chosen, path};
    }
}

/// What we say of what went on, up to where somebody else's words may begin.
QString logKind(const QString &line) {
    static const QRegularExpression end(QStringLiteral("( for |: |, )"));
    const qsizetype own = line.indexOf(end);
    if (own < 0) {
        return line;
    }
    const QString kind = errorKind(line.sliced(own));
    return line.first(own) + (kind.isEmpty() ? QString() : QStringLiteral(": ") + kind);
}

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

QString momentText(const std::optional<QDateTime> &moment) {
    return moment ? moment->toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm"))
                  : French::tr("jamais");
}

QString stateText(const QString &word) {
    return word == u"ready"        ? French::tr("prêt")
           : word == u"signed out" ? French::tr("déconnecté")
                                   : French::tr("introuvable");
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

Diagnostics diagnose(const DiagnosticSources &sources) {
    Diagnostics told;
    told.date = sources.clock.now();
    told.version = QCoreApplication::applicationVersion();
    told.qt = QStringLiteral("%1 (%2)").arg(QString::fromLatin1(qVersion()),
                                            QStringLiteral(QT_VERSION_STR));
    told.compiler = compilerName();
    told.system = QSysInfo::prettyProductName() + QStringLiteral(", ") + QSysInfo::kernelType() +
                  u' ' + QSysInfo::kernelVersion();
    told.architecture = QSysInfo::currentCpuArchitecture();
    told.surface = sources.surface;
    told.zone = QString::fromLatin1(QTimeZone::systemTimeZoneId());
    attempt(told, "the settings", [&] { tellSettings(told, sources); });
    attempt(told, "the topics", [&] { tellTopics(told, sources); });
    attempt(told, "the agents", [&] { tellAgents(told, sources); });
    const QStringList lines = recentLogLines();
    for (const QString &line : lines.last(std::min(linesTold, lines.size()))) {
        told.log += logKind(line);
    }
    for (const QString &name : QProcessEnvironment::systemEnvironment().keys()) {
        if (name.startsWith(u"VORLE_")) {
            told.variables += name;
        }
    }
    std::ranges::sort(told.variables);
    return told;
}

QString diagnosticText(const Diagnostics &told) {
    QStringList lines{
        QStringLiteral("vorle %1 · Qt %2 · %3").arg(told.version, told.qt, told.compiler),
        QStringLiteral("%1 · %2 · %3 · %4")
            .arg(told.system, told.architecture, told.surface, told.zone),
        momentText(told.date)};
    const auto add = [&lines](const QString &name, const QString &text) {
        lines += French::tr("%1\u00A0: %2").arg(name, text);
    };
    for (const Diagnostics::File &file : told.files) {
        add(file.path, file.bytes
                           ? (*file.bytes == 1 ? French::tr("%1 octet") : French::tr("%1 octets"))
                                 .arg(numberText(*file.bytes))
                           : French::tr("absent"));
    }
    QStringList counts;
    for (const Diagnostics::Count &count : told.topics) {
        counts += QStringLiteral("%1 %2").arg(count.status, numberText(count.topics));
    }
    add(French::tr("Sujets"),
        told.damaged ? French::tr("fichier illisible") : counts.join(QStringLiteral(", ")));
    for (const Diagnostics::Agent &agent : told.agents) {
        add(agent.name + (agent.chosen ? French::tr(" (choisi)") : QString()),
            stateText(agent.state) +
                (agent.path ? QStringLiteral(" · ") + *agent.path : QString()));
    }
    add(French::tr("Modèle"), told.model.value_or(French::tr("celui par défaut")));
    add(French::tr("Fouilles"),
        French::tr("%1 · prochaine %2 · dernière %3")
            .arg(told.schedule.isEmpty() ? French::tr("aucun jour") : told.schedule,
                 momentText(told.nextRun), momentText(told.lastRun)));
    for (const Diagnostics::Run &run : told.runs) {
        QStringList facts{French::tr("%1 s").arg(qRound64(run.seconds)),
                          French::tr("sujets %1").arg(run.added)};
        if (run.stopped) {
            facts += French::tr("arrêtée");
        }
        if (run.failed) {
            facts += French::tr("échec\u00A0: %1").arg(*run.failed);
        }
        for (const QString &kind : run.scopes) {
            facts += French::tr("recherche\u00A0: %1").arg(kind);
        }
        add(QStringLiteral("  ") + momentText(run.date), facts.join(QStringLiteral(" · ")));
    }
    const auto list = [&](const QString &name, const QList<QString> &texts) {
        if (!texts.isEmpty()) {
            add(name, QStringLiteral("\n  ") + texts.join(QStringLiteral("\n  ")));
        }
    };
    list(French::tr("Erreurs"), told.problems);
    list(French::tr("Journal"), told.log);
    if (!told.variables.isEmpty()) {
        add(French::tr("Variables"), told.variables.join(QStringLiteral(", ")));
    }
    return lines.join(u'\n') + u'\n';
}

} // namespace vorle
