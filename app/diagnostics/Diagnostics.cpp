#include "app/diagnostics/Diagnostics.h"

#include "agents/AgentLocator.h"
#include "app/diagnostics/ErrorKind.h"
#include "app/labels/Wording.h"
#include "base/Log.h"
#include "core/RediscoveryLog.h"
#include "core/RunHistory.h"
#include "core/ScoreProvenanceLog.h"
#include "search/run/RunRemainder.h"
#include "search/run/ScreenedItems.h"
#include "storage/BesideTopics.h"

#include <QCoreApplication>
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

QString compilerName() {
#if defined(__clang__)
    return QStringLiteral("clang %1.%2").arg(__clang_major__).arg(__clang_minor__);
#elif defined(__GNUC__)
    return QStringLiteral("gcc %1.%2").arg(__GNUC__).arg(__GNUC_MINOR__);
#else
    return QStringLiteral("?");
#endif
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
    return {name, shownPath(path), info.exists() ? std::optional(info.size()) : std::nullopt};
}

void tellTopics(Diagnostics &into, const DiagnosticSources &sources) {
    const QString file = sources.topicsFile();
    into.files += fileAt(QStringLiteral("topics"), file);
    for (const QString &name :
         {RunHistory::fileName(), RemainderFile::fileName(), ScoreProvenanceLog::fileName(),
          RediscoveryLog::fileName(), ScreenedItems::fileName()}) {
        into.files += fileAt(QFileInfo(name).baseName(), sidecarPath(file, name));
    }
    const TopicStore &store = *sources.topics;
    into.damaged = store.isDamaged();
    for (const std::string_view word : rawStrings(TopicStatus{})) {
        const QString status = QString::fromUtf8(word.data(), qsizetype(word.size()));
        into.topics += {status, store.topics(*json::fromRaw<TopicStatus>(status)).size()};
    }
    if (const auto error = store.saveError()) {
        into.problems +=
            QLatin1StringView(Diagnostics::savingTopics) + QStringLiteral(": ") + errorKind(*error);
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
    into.runsAt = settings.schedule;
    into.nextRun = settings.schedule.nextRun(into.date, QTimeZone::systemTimeZone(),
                                             settings.believedSlot(into.date));
    into.lastRun = settings.lastSearch;
    if (const auto error = preferences.writeError()) {
        into.problems += QLatin1StringView(Diagnostics::savingSettings) + QStringLiteral(": ") +
                         errorKind(*error);
    }
    if (preferences.notice()) {
        into.problems += QString::fromLatin1(Diagnostics::noSettings);
    }
}

void tellAgents(Diagnostics &into, const DiagnosticSources &sources) {
    const AgentLocator &locator = sources.agent->locator();
    const AgentKind chosen = locator.choose();
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        auto path = locator.locate(kind);
        if (path) {
            path = shownPath(*path);
        }
        into.agents += {json::rawText(kind), locator.readiness(kind), kind == chosen, path};
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

} // namespace

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
    attempt(told, Diagnostics::theSettings, [&] { tellSettings(told, sources); });
    attempt(told, Diagnostics::theTopics, [&] { tellTopics(told, sources); });
    attempt(told, Diagnostics::theAgents, [&] { tellAgents(told, sources); });
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

} // namespace vorle
