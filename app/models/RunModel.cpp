#include "app/models/RunModel.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "base/FrenchSpacing.h"
#include "search/run/RunPlan.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// Searching takes less than reading and judging what was found.
constexpr double searchingPart = 0.4;

double partDone(const RunProgress &progress) {
    if (progress.scopes <= 0) {
        return 0;
    }
    // What was found so far is read: it says little while most scopes are still being asked.
    const double scopes = double(progress.scopesDone) / progress.scopes;
    const double links = progress.candidates <= 0 ? 0
                                                  : double(progress.read + progress.judged) /
                                                        (2.0 * progress.candidates);
    return scopes * (searchingPart + (1 - searchingPart) * links);
}

} // namespace

RunModel::RunModel(SearchEngine &engine, Preferences &preferences, const TopicStore &store,
                   const Clock &clock, const LocalZone &zone, QObject *parent)
    : QObject(parent)
    , m_engine(engine)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_store(store)
    , m_zone(zone) {
    m_engine.remainder(); // so that no property has to read it from the disk
    m_second.setInterval(1000);
    connect(&m_second, &QTimer::timeout, this, &RunModel::spentChanged);
    connect(&engine, &SearchEngine::remainderChanged, this, &RunModel::scheduleChanged);
    connect(&engine, &SearchEngine::progressed, this, &RunModel::take);
    connect(&engine, &SearchEngine::started, this, &RunModel::begin);
    connect(&engine, &SearchEngine::failed, this,
            [this](const RunFailure &failure) { end({}, failureNotice(failure)); });
    connect(&engine, &SearchEngine::finished, this, [this](const RunReport &report) {
        FailureNotice notice;
        if (!report.saved) {
            notice.text = tr("Les sujets n’ont pas pu être enregistrés.");
        }
        end(resultText(report), std::move(notice));
    });
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        // What there is to search says whether a run was missed.
        const bool isSearched =
            Preferences::isKeyOf(key, &Settings::interests, &Settings::projects,
                                 &Settings::projectDescriptions, &Settings::addedTools);
        if (isSearched) {
            followTerritory();
        }
        if (isSearched || Preferences::isKeyOf(key, &Settings::schedule, &Settings::lastSearch)) {
            Q_EMIT scheduleChanged();
        }
    });
}

RunModel::~RunModel() { m_cancel.cancel(); }

/// What was missing may have come: then that is no longer to be told.
void RunModel::followTerritory() {
    if (m_nothingToSearch && refusalText(m_preferences).isEmpty()) {
        m_nothingToSearch = false;
        m_notice = {};
        Q_EMIT outcomeChanged();
        Q_EMIT scheduleChanged();
    }
}

void RunModel::start() { ask(SearchRun::Part::First, AskedBy::Person); }

void RunModel::goOn() { ask(SearchRun::Part::Further, AskedBy::Person); }

void RunModel::startDue() { ask(SearchRun::Part::First, AskedBy::Schedule); }

void RunModel::ask(SearchRun::Part part, AskedBy by) {
    if (m_running || !m_following.isEmpty()) {
        return;
    }
    m_cancel = CancelSource();
    m_following.add(logged(follow(this, m_engine, part, by, m_cancel.token()),
                           QStringLiteral("the search run")));
}

void RunModel::giveUpRest() { m_engine.giveUpRest(); }

/// Once the run has ended nothing but `self` is looked at: the window may be gone by then.
Task<> RunModel::follow(QPointer<RunModel> self, SearchEngine &engine, SearchRun::Part part,
                        AskedBy by, CancelToken cancel) {
    try {
        co_await (part == SearchRun::Part::First ? engine.run(cancel) : engine.resume(cancel));
    } catch (const RunRefused &refusal) {
        if (self) {
            self->refused(refusal, by);
        }
    } catch (const std::exception &) {
        // The engine has announced it.
    }
}

/// What the schedule asked for is not told: nobody did.
void RunModel::refused(const RunRefused &refusal, AskedBy by) {
    if (by == AskedBy::Schedule) {
        m_refusedAt = m_clock.now();
        return;
    }
    m_nothingToSearch = refusal.reason() == RunRefused::Reason::NothingToSearch;
    end({}, {.title = {}, .text = refusal.text()});
}

void RunModel::begin() {
    m_running = true;
    m_stopping = false;
    m_part = 0;
    m_progress = {};
    m_result.clear();
    m_notice = {};
    m_nothingToSearch = false;
    m_told.start();
    m_second.start();
    Q_EMIT runningChanged();
    Q_EMIT progressChanged();
    Q_EMIT spentChanged();
    Q_EMIT outcomeChanged();
    Q_EMIT scheduleChanged();
}

void RunModel::end(const QString &result, FailureNotice notice) {
    const bool wasRunning = std::exchange(m_running, false);
    m_stopping = false;
    m_second.stop();
    m_part = 0;
    m_progress = {};
    m_result = shownWords(result);
    m_notice = {.title = shownWords(notice.title), .text = shownWords(notice.text)};
    if (wasRunning) {
        Q_EMIT runningChanged();
    }
    Q_EMIT progressChanged();
    Q_EMIT outcomeChanged();
    Q_EMIT scheduleChanged();
    Q_EMIT ended();
}

void RunModel::take(const RunProgress &progress) {
    if (m_running && m_engine.phase() != SearchEngine::Phase::Idle) {
        m_progress = progress;
        m_part = std::clamp(partDone(progress), m_part, 1.0);
        m_told.start();
        Q_EMIT progressChanged();
        Q_EMIT spentChanged();
    }
}

void RunModel::stop() {
    if (m_running && !m_stopping) {
        m_stopping = true;
        Q_EMIT progressChanged();
        m_engine.stop();
    }
}

Task<> RunModel::stopped() {
    stop();
    m_cancel.cancel(); // one that has not begun yet, too
    co_await m_following.join();
}

void RunModel::refresh() { Q_EMIT scheduleChanged(); }

QString RunModel::statusText() const {
    return m_stopping ? tr("J’arrête, en gardant ce qui est déjà jugé.")
                      : shownWords(m_progress.status);
}

QString RunModel::countsText() const {
    if (m_progress.candidates == 0) {
        return {};
    }
    return QStringList{counted(m_progress.candidates, tr("lien"), tr("liens")),
                       counted(m_progress.read, tr("lu"), tr("lus")),
                       counted(m_progress.judged, tr("jugé"), tr("jugés"))}
        .join(QStringLiteral(", "));
}

QString RunModel::spentText() const {
    if (!m_running || m_progress.calls == 0) {
        return {};
    }
    RunProgress now = m_progress;
    now.seconds += static_cast<double>(m_told.elapsed()) / 1000.0;
    return vorle::spentText(now);
}

bool RunModel::waiting() const { return m_engine.remainder().has_value() && !m_running; }

bool RunModel::waitingOffered() const {
    return waiting() &&
           resumeAction(*m_engine.remainder(), m_clock.now(), m_running) == ResumeAction::Offer;
}

/// What is told of the rest that waits: no hour where it does not go on by itself then.
RunWaits RunModel::toldWaits() const {
    const RunRemainder &rest = *m_engine.remainder();
    RunWaits waits = rest.waits();
    if (resumeAction(rest, m_clock.now(), false) == ResumeAction::Offer) {
        waits.until.reset();
    }
    return waits;
}

QString RunModel::waitingTitle() const {
    return waiting() ? shownWords(waitsTitle(m_engine.remainder()->waits())) : QString();
}

QString RunModel::waitingText() const {
    if (!waiting()) {
        return {};
    }
    const RunRemainder &rest = *m_engine.remainder();
    const QDateTime now = m_clock.now();
    return shownWords(rest.asked
                          ? putOffText(rest.waits(),
                                       rest.isUnanswered() ? PutOff::Unanswered : PutOff::Asked,
                                       now, m_zone)
                          : waitsText(rest.waits(), now, m_zone));
}

QString RunModel::waitingBriefly() const {
    if (!waiting()) {
        return {};
    }
    return comingRestText(toldWaits(), m_clock.now(), m_zone);
}

/// What the run came to, what it found nothing for, and when the rest of it comes.
QString RunModel::resultText(const RunReport &report) const {
    QString text = runResultText(report);
    if (m_engine.remainder()) {
        text += u' ' + comingRestText(toldWaits(), m_clock.now(), m_zone) + u'.';
    } else if (!report.cancelled && !report.uncovered.isEmpty()) {
        text = tr("%1 Rien trouvé pour\u00A0: %2.")
                   .arg(text, report.uncovered.join(QStringLiteral(", ")));
    }
    return text;
}

QString RunModel::nextRunText() const {
    return vorle::nextRunText(m_preferences.settings(), m_clock.now(), m_zone);
}

QString RunModel::lastRunText() const {
    const auto last = m_preferences.settings().lastSearch;
    return last ? tr("%1 à %2").arg(dayText(*last, m_clock.now(), m_zone), timeText(*last, m_zone))
                : QString();
}

/// A run under way makes up for the missed one; one that failed here says why itself. One that had
/// nothing to search was not kept from being, and could not be started either.
std::optional<QDateTime> RunModel::missedMoment() const {
    if (m_running || !m_notice.text.isEmpty()) {
        return std::nullopt;
    }
    const Settings &settings = m_preferences.settings();
    const QDateTime now = m_clock.now();
    const auto missed =
        settings.schedule.missedRun(settings.lastSearch, now, m_zone, settings.believedSlot(now));
    return missed && refusalText(m_preferences).isEmpty() ? missed : std::nullopt;
}

QString RunModel::missedTitle() const {
    const auto moment = missedMoment();
    return moment ? tr("La fouille de %1 n’a pas eu lieu.")
                        .arg(dayText(*moment, m_clock.now(), m_zone))
                  : QString();
}

/// A run that was tried then and came to nothing did not fail for the Mac's sake.
QString RunModel::missedText() const {
    const auto moment = missedMoment();
    if (!moment) {
        return {};
    }
    const QList<RunReport> past = m_store.history();
    if (!past.isEmpty() && past.last().date >= *moment) {
        const RunReport &last = past.last();
        if (last.cancelled) {
            return frenchSpacing(tr("Elle a été arrêtée avant la fin. Je peux la relancer "
                                    "maintenant : quelques minutes."));
        }
        if (last.failed) {
            return frenchSpacing(tr("Je n’ai pas pu fouiller. Je peux réessayer maintenant : "
                                    "quelques minutes."));
        }
        if (!last.saved) {
            return frenchSpacing(tr("Les sujets trouvés n’ont pas pu être enregistrés. Je peux la "
                                    "relancer maintenant : quelques minutes."));
        }
    }
    if (m_refusedAt && *m_refusedAt >= *moment) {
        return frenchSpacing(tr("Il n’y avait rien à fouiller à ce moment-là. Je peux la lancer "
                                "maintenant : quelques minutes."));
    }
    return frenchSpacing(
        tr("Ton Mac était éteint ou en veille. Je peux la lancer maintenant : quelques minutes."));
}

QString RunModel::startLabel() const { return tr("Fouiller maintenant"); }

} // namespace vorle
