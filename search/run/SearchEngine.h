#pragma once

#include "agents/Ask.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/RediscoveryLog.h"
#include "core/RunReport.h"
#include "search/run/RunFailure.h"
#include "search/run/RunPlan.h"
#include "search/run/RunRemainder.h"
#include "search/run/SearchRun.h"

#include <QObject>

#include <exception>

namespace vorle {

class Feeds;
class PageReader;
class ScoreProvenanceLog;
class SourceImage;
class Preferences;

/// A run that could not start: nothing to search, or one is under way. Its text is for the user.
class RunRefused final : public std::exception {
public:
    enum class Reason { NothingToSearch, NotNow };
    RunRefused(const QString &text, Reason reason)
        : m_text(text), m_reason(reason), m_utf8(text.toUtf8()) {}
    const QString &text() const { return m_text; }
    Reason reason() const { return m_reason; }
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    Reason m_reason;
    QByteArray m_utf8;
};

/// Drives search runs, one at a time: from the territory to judged topics in "À trier". It knows
/// neither notifier nor screen: it tells what happens, and whoever made it wires the rest. Main
/// thread; what it is given must outlive it, and it must outlive a run under way.
class SearchEngine : public QObject {
    Q_OBJECT

public:
    enum class Phase { Idle, Searching, ReadingAndSorting };

    struct Parts {
        Preferences &preferences;
        TopicStore &store;
        ScoreProvenanceLog &provenance;
        RediscoveryLog &rediscoveries; ///< which topics of the reserve it comes upon again
        Asker &asker;
        PageReader &reader;
        Feeds &feeds;
        SourceImage &images;
        const Clock &clock;
        /// The names of the apps on this machine, for whoever lets all of them be told; may be
        /// empty.
        std::function<QStringList()> apps = {};
        LocalZone zone = {};
    };

    explicit SearchEngine(Parts parts, QObject *parent = nullptr);
    ~SearchEngine() override;

    Phase phase() const { return m_phase; }
    const RunProgress &progress() const { return m_progress; }

    /// What the last run left where the agent reached its limit, if it did.
    const std::optional<RunRemainder> &remainder();

    /// One whole run. Judged topics are saved as they come, "pending", and released to "inbox" at
    /// the end; a cancelled run releases what was judged and leaves the last run's date alone. One
    /// whose calls failed and left links without a judgment is done all the same, but the next one
    /// searches its period again; once. A failing scope is reported and the others go on. A run
    /// that failed as a whole leaves its report, marked so, and the sentence in the status; so does
    /// one whose agent is missing or signed out.
    ///
    /// One whose agent reaches its limit is done with what it has; what is left is kept on disk
    /// (see remainder()). Where an earlier run left something, this one takes its links up, looks
    /// at its period again, and takes its place.
    /// @throws RunRefused  nothing to ask (the status then says so), or a run under way
    /// @throws Cancelled   before it began
    /// @throws AgentError  the agent is missing or signed out, every scope failed, or nothing that
    ///                     was found could be judged
    /// @throws std::system_error  every scope failed, the last for what the system refused
    Task<RunReport> run(CancelToken cancel);

    /// The rest of the run that was left, with the agent chosen now: asks what was not asked,
    /// judges what was not judged, and goes on with its report. The last run's date and the slot it
    /// served stay. Gives the report with the topics of this part alone. What a stop, or a failure
    /// of the whole, kept from being done is left once more, and goes on when the user says so.
    /// @throws RunRefused  nothing is left, or a run is under way
    /// @throws as run()
    Task<RunReport> resume(CancelToken cancel);

    /// Leaves what was left undone: the next run looks at its period again. False where nothing is
    /// left, or a run is under way.
    bool giveUpRest();

    /// Asks the run under way to stop, whoever asked for it; what was judged is kept.
    void stop() { m_cancel.cancel(); }

Q_SIGNALS:
    /// A run begins; `finished` or `failed` ends it.
    void started();
    void progressed(const vorle::RunProgress &progress);
    void finished(const vorle::RunReport &report);
    /// The run could not be made, or nothing came of it. A refused run announces nothing.
    void failed(const vorle::RunFailure &failure);
    /// `remainder` gives another answer.
    void remainderChanged();

private:
    /// A run under way, or the rest of one.
    struct Undertaking {
        SearchRun::Part part = SearchRun::Part::First;
        AgentKind agent = AgentKind::Claude;
        std::optional<RunRemainder> rest = {}; ///< what an earlier run left
        QDateTime start = {};
        QDateTime period = {}; ///< where its period starts
        SitesRequest sites = {};
    };

    Task<> askFolders(CancelToken cancel);
    void refuse(const QString &why);
    Task<RunReport> undertake(SearchRun::Part part, CancelToken cancel);
    Task<RunReport> execute(Undertaking &task, CancelToken cancel);
    RunReport stoppedEarly(const Undertaking &task);
    void concludeFirst(RunReport &report, const SearchRun &run, const Undertaking &task);
    void concludeFurther(RunReport &report, const SearchRun &run, const Undertaking &task);
    void recordDone(const RunReport &report, const QDateTime &start,
                    const std::optional<QDateTime> &backTo);
    void lookAgainFrom(const QDateTime &period);
    void readRest();
    void setRest(std::optional<RunRemainder> rest);
    bool keepRest(RunReport &report, const SearchRun &run, const Undertaking &task);
    void putOff();
    void waitOn(RunReport report, const SearchRun &run, const Undertaking &task);
    void leave(RunRemainder rest);
    bool finishRest();
    void giveUp(const RunReport &report, const QString &why);
    void recordFeeds(const QList<PrioritySite> &checked);
    void setProgress(Phase phase, const RunProgress &progress);

    Parts m_parts;
    RemainderFile m_restFile;
    std::optional<RunRemainder> m_rest;
    bool m_restRead = false;
    Phase m_phase = Phase::Idle;
    bool m_reported = false; ///< the run under way has left its report
    CancelSource m_cancel;   // of the run under way
    RunProgress m_progress;
};

} // namespace vorle
