#include "app/window/Shell.h"

#include "agents/AgentLocator.h"
#include "app/labels/TopicLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "app/window/BriefMarks.h"
#include "app/window/DemoProcess.h"
#include "base/SystemErrorText.h"
#include "briefs/BriefWriter.h"
#include "core/Corrections.h"
#include "core/ScoreScale.h"
#include "desktop/ClaudeLauncher.h"

#include <QSysInfo>

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// macOS asks the user before a program reads "Documents" and the like.
bool guardsPersonalFolders() { return QSysInfo::kernelType() == u"darwin"; }

} // namespace

Shell::Shell(Parts parts, QObject *parent) : QObject(parent), m_parts(std::move(parts)) {
    makeTopicModels();
    makeOtherModels();
    m_captureNotices = std::make_unique<CaptureNotices>(m_parts.capture, m_parts.store);
    m_quickCapture = std::make_unique<QuickCapture>(
        QuickCapture::Parts{m_parts.preferences, m_parts.store, m_parts.capture,
                            BrowserTab(m_parts.browser, m_parts.pasteboard)});
    follow(m_parts.capture);
    m_briefMarks = std::make_unique<BriefMarks>(
        m_parts.briefs, QList<TopicListModel *>{inbox(), program(), reserve(), library()});
    followStores();
    // Links that still wait from another day, once the window is there.
    QMetaObject::invokeMethod(this, [this] { m_parts.capture.resume(); }, Qt::QueuedConnection);
    tellFound();
}

void Shell::makeTopicModels() {
    TopicStore &store = m_parts.store;
    Preferences &preferences = m_parts.preferences;
    const Clock &clock = m_parts.clock;
    m_inbox = std::make_unique<TopicListModel>(store, Section::Inbox, clock);
    m_program = std::make_unique<TopicListModel>(store, Section::Program, clock);
    m_reserve = std::make_unique<TopicListModel>(store, Section::Reserve, clock);
    m_reserve->observe(m_parts.rediscoveries);
    m_library = std::make_unique<TopicListModel>(store, Section::Library, clock);
    m_decisions = std::make_unique<Decisions>(store);
    m_end = std::make_unique<TriageEnd>(store, *m_inbox, *m_decisions);
    m_links = std::make_unique<TopicLinks>(
        TopicLinks::Parts{store, m_parts.capture, m_parts.links, m_parts.pasteboard, clock});
    connect(m_links.get(), &TopicLinks::said, this, &Shell::say);
    m_keyboard = std::make_unique<KeyboardMap>(m_parts.agents.choose());
    m_drafts = std::make_unique<Drafts>(this);
    m_run = std::make_unique<RunModel>(m_parts.engine, preferences, store, clock);
    m_budget = std::make_unique<ProgramBudget>(store, preferences, clock, *m_program);
    m_sections = std::make_unique<Sections>(Sections::Parts{
        *m_inbox, *m_program, *m_reserve, *m_library, *m_budget, *m_run, preferences, clock});
    m_actions = std::make_unique<TopicActions>(*m_sections, *m_decisions, *m_keyboard);
    connect(m_actions.get(), &TopicActions::said, this, &Shell::said);
    connect(m_actions.get(), &TopicActions::firstStepAsked, this, &Shell::firstStep);
    connect(m_actions.get(), &TopicActions::readingAsked, this, &Shell::retry);
    connect(m_actions.get(), &TopicActions::sourceAsked, m_links.get(), &TopicLinks::openOf);
    connect(m_actions.get(), &TopicActions::linkCopyAsked, m_links.get(), &TopicLinks::copyOf);
    m_commands = std::make_unique<Commands>(Commands::Parts{
        *m_keyboard, *m_sections, *m_actions, *m_decisions, *m_run, preferences, store.isDemo()});
    connect(m_commands.get(), &Commands::said, this, &Shell::say);
    m_search = std::make_unique<TopicSearch>(store);
    m_palette = std::make_unique<CommandPalette>(store, *m_commands, *m_search);
    m_page = std::make_unique<TopicPage>(store, m_parts.provenance, m_parts.briefs, clock);
}

void Shell::makeOtherModels() {
    TopicStore &store = m_parts.store;
    Preferences &preferences = m_parts.preferences;
    const Clock &clock = m_parts.clock;
    m_territory = std::make_unique<TerritoryModel>(TerritoryModel::Parts{
        preferences, store, m_parts.asker, m_parts.feeds, m_parts.files, clock, m_parts.apps});
    m_settings = std::make_unique<SettingsModel>(preferences);
    m_agentStates = std::make_unique<AgentStates>(
        AgentStates::Parts{.agents = m_parts.agents,
                           .preferences = preferences,
                           .setup = m_parts.agentSetup,
                           .links = m_parts.links,
                           .pasteboard = m_parts.pasteboard,
                           .settable = !store.isDemo()}); // a demonstration reaches for nothing
    connect(m_agentStates.get(), &AgentStates::setUp, this, [this] {
        refresh();
        m_parts.capture.resume(); // links that wait for an agent
    });
    m_onboarding = std::make_unique<OnboardingModel>(OnboardingModel::Parts{
        .preferences = preferences,
        .projects = *m_territory->projects(),
        .home = m_parts.agents.environment().home(),
        .personal = guardsPersonalFolders() ? discovery::PersonalFolders::LeftOut
                                            : discovery::PersonalFolders::Included,
        .apps = m_parts.apps,
        .wanted =
            !store.isDemo() && !preferences.settings().lastSearch && store.topics().isEmpty()});
    m_calibration =
        std::make_unique<CalibrationModel>(preferences, store, m_decisions->history(), clock);
    connect(m_calibration.get(), &CalibrationModel::said, this, &Shell::say);
    m_report = std::make_unique<ReportModel>(RunHistory(store.file()), clock);
    m_figures = std::make_unique<FiguresModel>(
        FiguresModel::Parts{store, preferences, m_parts.provenance, clock});
    connect(m_figures.get(), &FiguresModel::said, this, &Shell::say);
    m_screens = std::make_unique<Screens>(m_parts.screens);
    connect(m_screens.get(), &Screens::said, this, &Shell::say);
    m_screens->captureShortcut()->tell(*m_keyboard);
}

void Shell::followStores() {
    const TopicStore &store = m_parts.store;
    // A link dismissed before it was read, and taken back, still wants to be read.
    connect(m_decisions.get(), &Decisions::undone, this,
            [this](const QString &id) { m_parts.capture.ask(QUuid(id)); });
    connect(&store, &TopicStore::historyChanged, m_report.get(), &ReportModel::refresh);
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::agent)) {
            followAgent();
        }
    });
    connect(&store, &TopicStore::saveFailed, this,
            [this](const QString &text) { tell(Matter::Save, text); });
    connect(&store, &TopicStore::saved, this, [this] { dismissNotices(Matter::Save); });
    connect(m_settings.get(), &SettingsModel::problemChanged, this, [this] {
        const QString problem = m_settings->problem();
        problem.isEmpty() ? dismissNotices(Matter::Settings) : tell(Matter::Settings, problem);
    });
    // What it told is no longer so.
    connect(&m_parts.screens.updater, &Updater::changed, this,
            [this] { retell(Matter::Update, m_parts.screens.updater.notice()); });
    // Taken up by a command too.
    connect(&store, &TopicStore::topicsReset, this, [this] { dismissNotices(Matter::Found); });
}

/// How the files were found at this start.
void Shell::tellFound() {
    QStringList found;
    if (m_parts.released > 0) {
        found += releasedText(m_parts.released);
    }
    for (const auto &notice : {m_parts.store.notice(), m_parts.preferences.notice()}) {
        found += notice ? QStringList{*notice} : QStringList();
    }
    if (!found.isEmpty()) {
        tell(Matter::Found, found.join(u'\n'));
    }
}

Shell::~Shell() = default;

bool Shell::demoReturns() const {
    return isDemo() && qEnvironmentVariableIsSet(DemoProcess::returnVariable);
}

bool Shell::isAtWork() const { return m_run->running() || m_agentStates->isWorking(); }

QString Shell::agent() const { return json::rawText(m_parts.agents.choose()); }

void Shell::followAgent() {
    m_keyboard->setAgent(m_parts.agents.choose());
    Q_EMIT agentChanged();
}

QString Shell::titleOf(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic ? shownWords(topic->title) : QString();
}

void Shell::dismissNotice() {
    if (!m_notices.isEmpty()) {
        dismissNotices(m_notices.last().matter);
    }
}

QString Shell::remedy() const {
    if (m_notices.isEmpty()) {
        return {};
    }
    switch (m_notices.last().matter) {
    case Matter::Found: {
        const auto &readable = m_parts.store.readable();
        return readable && !readable->topics.isEmpty() ? tr("Réparer") : QString();
    }
    case Matter::Save:
    case Matter::Capture:
        return tr("Réessayer");
    case Matter::Postponed:
        return tr("Tout lire");
    case Matter::Update:
        return m_parts.screens.updater.isCountingDown() ? tr("Plus tard") : tr("Voir");
    default:
        return {};
    }
}

void Shell::takeRemedy() {
    if (m_notices.isEmpty()) {
        return;
    }
    const Matter matter = m_notices.last().matter;
    if (matter == Matter::Found) {
        const auto readable = m_parts.store.readable();
        const qsizetype entries = readable ? readable->entries() : 0;
        if (const qsizetype kept = m_parts.store.repair(); kept > 0) {
            say(repairedText(kept, entries));
        }
        return;
    }
    dismissNotices(matter); // it is told again where it fails again
    if (matter == Matter::Save) {
        m_parts.store.save();
    } else if (matter == Matter::Capture) {
        m_parts.capture.resume();
    } else if (matter == Matter::Postponed) {
        m_parts.capture.askPostponed();
    } else if (matter == Matter::Update && m_parts.screens.updater.isCountingDown()) {
        m_parts.screens.updater.putOff();
        say(m_parts.screens.updater.text());
    } else if (matter == Matter::Update) {
        Q_EMIT updateAsked();
    }
}

Task<> Shell::launch(QPointer<Shell> self, ClaudeLauncher &launcher, Topic topic) {
    QString word;
    QString problem;
    try {
        word = launcher.hint(co_await launcher.takeFirstStep(std::move(topic)));
    } catch (const LaunchError &error) {
        problem = error.text();
    } catch (const AgentError &error) {
        problem = error.text();
    } catch (const std::system_error &error) {
        problem = systemRefusalText(error);
    }
    if (!self) {
        co_return;
    }
    if (problem.isEmpty()) {
        self->dismissNotices(Matter::FirstStep);
    } else {
        self->tell(Matter::FirstStep, problem); // whole, and until it was read
    }
    if (!word.isEmpty()) {
        self->say(word);
    }
}

void Shell::firstStep(const QString &topicId) {
    if (const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId))) {
        m_work.add(logged(launch(this, m_parts.launcher, *topic), QStringLiteral("first step")));
    }
}

void Shell::correct(const QString &topicId, int score, const QStringList &tags,
                    const QString &text) {
    m_decisions->setCorrection(topicId, correctionOf(score, tags, text, m_parts.clock.now()));
}

void Shell::uncorrect(const QString &topicId) { m_decisions->setCorrection(topicId, std::nullopt); }

QStringList Shell::correctionTags(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic && topic->correction ? QStringList(topic->correction->tags) : QStringList();
}

int Shell::judgedScore(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic ? vorle::judgedScore(*topic).value_or(-1) : -1;
}

int Shell::shownScore(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic && !isBeingRead(*topic) ? vorle::shownScore(*topic).value_or(-1) : -1;
}

bool Shell::isCorrected(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic && topic->correction.has_value();
}

QString Shell::correctionText(const QString &topicId) const {
    const TopicPtr topic = m_parts.store.topic(QUuid::fromString(topicId));
    return topic && topic->correction ? topic->correction->text : QString();
}

QVariantList Shell::correctionReasons() const {
    QList<NamedChoice> reasons;
    for (const QString &word : vorle::correctionReasons()) {
        reasons += NamedChoice{word, correctionReasonText(word)};
    }
    return variants(reasons);
}

void Shell::refresh() {
    m_run->refresh();
    m_budget->refresh();
    for (TopicListModel *list : {inbox(), program(), reserve(), library()}) {
        list->followDay();
    }
    m_figures->refresh();
    m_agentStates->refresh();
    m_parts.capture.look();
    followAgent();
}

void Shell::openQuickCapture() { m_quickCapture->open(); }

void Shell::goOn() {
    m_run->goOn();
    m_parts.capture.resume();
}

void Shell::retry(const QString &topicId) { m_parts.capture.retry(QUuid::fromString(topicId)); }

Task<> Shell::stopped() {
    m_parts.capture.stop();
    m_parts.briefs.stop();
    co_await m_screens->stopped();
    co_await m_agentStates->stopped();
    co_await m_onboarding->stopped();
    co_await m_territory->stopped();
    co_await m_search->stopped();
    co_await m_run->stopped();
    co_await m_parts.capture.ended();
    co_await m_parts.briefs.ended();
    co_await m_work.join();
}

/// What a captured link's state says goes to its card, and all of them together to the notices.
void Shell::follow(LinkCapture &capture) {
    using Kind = CaptureNotices::Kind;
    connect(&capture, &LinkCapture::stateChanged, this, [this](const QUuid &id) {
        m_inbox->setCaptureProblem(id, shownWords(m_parts.capture.failureText(id)));
    });
    const auto matter = [](Kind kind) {
        return kind == Kind::Failed ? Matter::Capture : Matter::Postponed;
    };
    connect(m_captureNotices.get(), &CaptureNotices::told, this,
            [this, matter](Kind kind) { tell(matter(kind), m_captureNotices->text(kind)); });
    connect(m_captureNotices.get(), &CaptureNotices::changed, this,
            [this, matter](Kind kind) { retell(matter(kind), m_captureNotices->text(kind)); });
}

void Shell::tell(Matter matter, const QString &text) {
    erase_if(m_notices, [matter](const Notice &each) { return each.matter == matter; });
    m_notices.append({matter, shownWords(text)});
    Q_EMIT noticeChanged();
}

void Shell::retell(Matter matter, const QString &text) {
    if (text.isEmpty()) {
        dismissNotices(matter);
        return;
    }
    const auto told = std::ranges::find(m_notices, matter, &Notice::matter);
    if (told != m_notices.end() && told->text != shownWords(text)) {
        told->text = shownWords(text); // in its place among the others
        Q_EMIT noticeChanged();
    }
}

void Shell::say(const QString &sentence) {
    m_actions->forgetGhost(); // the word takes the place of that line
    Q_EMIT said(shownWords(sentence));
}

void Shell::dismissNotices(Matter matter) {
    if (erase_if(m_notices, [matter](const Notice &each) { return each.matter == matter; }) > 0) {
        Q_EMIT noticeChanged();
    }
}

} // namespace vorle
