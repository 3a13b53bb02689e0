#pragma once

#include "app/models/CalibrationModel.h"
#include "app/models/Decisions.h"
#include "app/models/Drafts.h"
#include "app/models/FiguresModel.h"
#include "app/models/KeyboardMap.h"
#include "app/models/ProgramBudget.h"
#include "app/models/ReportModel.h"
#include "app/models/RunModel.h"
#include "app/models/Sections.h"
#include "app/models/TopicActions.h"
#include "app/models/TopicListModel.h"
#include "app/models/TriageEnd.h"
#include "app/models/palette/CommandPalette.h"
#include "app/models/palette/Commands.h"
#include "app/models/palette/TopicSearch.h"
#include "app/models/settings/AgentStates.h"
#include "app/models/settings/OnboardingModel.h"
#include "app/models/settings/SettingsModel.h"
#include "app/models/territory/TerritoryModel.h"
#include "app/window/Screens.h"
#include "app/window/TopicLinks.h"
#include "app/window/TopicPage.h"
#include "app/window/desktop/CaptureNotices.h"
#include "app/window/desktop/QuickCapture.h"
#include "base/Async.h"
#include "core/ScoreProvenanceLog.h"
#include "search/capture/LinkCapture.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace vorle {

class AgentLocator;
class AgentSetup;
class Asker;
class BriefMarks;
class BriefWriter;
class ClaudeLauncher;
class Feeds;
class FilePicker;
class FrontBrowser;
class LinkOpener;
class Pasteboard;
class SearchEngine;

/// All that the main window shows and asks for, in one place. Makes the models
/// and wires them. Main thread.
class Shell final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(vorle::Sections *sections READ sections CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicListModel *inbox READ inbox CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicListModel *program READ program CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicListModel *reserve READ reserve CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicListModel *library READ library CONSTANT FINAL)
    Q_PROPERTY(vorle::TriageEnd *end READ end CONSTANT FINAL)
    Q_PROPERTY(vorle::Decisions *decisions READ decisions CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicActions *actions READ actions CONSTANT FINAL)
    Q_PROPERTY(vorle::KeyboardMap *keyboard READ keyboard CONSTANT FINAL)
    Q_PROPERTY(vorle::Drafts *drafts READ drafts CONSTANT FINAL)
    Q_PROPERTY(vorle::RunModel *run READ run CONSTANT FINAL)
    Q_PROPERTY(vorle::Commands *commands READ commands CONSTANT FINAL)
    Q_PROPERTY(vorle::CommandPalette *commandPalette READ commandPalette CONSTANT FINAL)
    Q_PROPERTY(vorle::TerritoryModel *territory READ territory CONSTANT FINAL)
    Q_PROPERTY(vorle::ReportModel *report READ report CONSTANT FINAL)
    Q_PROPERTY(vorle::FiguresModel *figures READ figures CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicPage *page READ page CONSTANT FINAL)
    Q_PROPERTY(vorle::ProgramBudget *budget READ budget CONSTANT FINAL)
    Q_PROPERTY(vorle::SettingsModel *settings READ settings CONSTANT FINAL)
    Q_PROPERTY(vorle::AgentStates *agentStates READ agentStates CONSTANT FINAL)
    Q_PROPERTY(vorle::OnboardingModel *onboarding READ onboarding CONSTANT FINAL)
    Q_PROPERTY(vorle::CalibrationModel *calibration READ calibration CONSTANT FINAL)
    Q_PROPERTY(vorle::TopicLinks *links READ links CONSTANT FINAL)
    Q_PROPERTY(vorle::QuickCapture *quickCapture READ quickCapture CONSTANT FINAL)
    /// What single screens stand on.
    Q_PROPERTY(vorle::Screens *screens READ screens CONSTANT FINAL)
    /// The agent that is used now, "claude" or "codex", chosen by hand or by what is ready.
    Q_PROPERTY(QString agent READ agent NOTIFY agentChanged FINAL)
    /// The terminals there are on this machine, as the settings name them.
    Q_PROPERTY(QStringList terminals READ terminals CONSTANT FINAL)
    /// The reasons a correction may name; of NamedChoice.
    Q_PROPERTY(QVariantList correctionReasons READ correctionReasons CONSTANT FINAL)
    /// Nothing here is the user's own: made-up topics, an agent that plays its part.
    Q_PROPERTY(bool demo READ isDemo CONSTANT FINAL)
    /// It was opened from the app, which waits for its end.
    Q_PROPERTY(bool demoReturns READ demoReturns CONSTANT FINAL)
    /// A sentence on what went wrong lately (a save, the settings); "" when nothing did, or when it
    /// holds no longer. The latest first; dismissed, the one before shows again.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged FINAL)
    /// What a button beside the notice does about it ("Réparer", "Réessayer"); "" when there is
    /// nothing to do.
    Q_PROPERTY(QString remedy READ remedy NOTIFY noticeChanged FINAL)

public:
    /// What the shell stands on; all of it outlives it.
    struct Parts {
        TopicStore &store;
        Preferences &preferences;
        ScoreProvenanceLog &provenance;
        RediscoveryLog &rediscoveries;
        SearchEngine &engine;
        BriefWriter &briefs;
        LinkCapture &capture;
        Asker &asker;
        Feeds &feeds;
        const AgentLocator &agents;
        const AgentSetup &agentSetup;
        const Clock &clock;
        LinkOpener &links;
        Pasteboard &pasteboard;
        ClaudeLauncher &launcher;
        FilePicker &files;
        Screens::Parts screens;
        /// The apps of this machine, in the order they are shown in. Any thread.
        std::function<QList<discovery::App>()> apps = {};
        FrontBrowser *browser =
            nullptr;                ///< null where the system tells nothing of what is in front
        qsizetype released = 0;     ///< topics of a run that died, handed out at this start
        QStringList terminals = {}; ///< of Terminals::names, those that are there
    };
    explicit Shell(Parts parts, QObject *parent = nullptr);
    ~Shell() override;

    Sections *sections() const { return m_sections.get(); }
    TopicListModel *inbox() const { return m_inbox.get(); }
    TopicListModel *program() const { return m_program.get(); }
    TopicListModel *reserve() const { return m_reserve.get(); }
    TopicListModel *library() const { return m_library.get(); }
    TriageEnd *end() const { return m_end.get(); }
    Decisions *decisions() const { return m_decisions.get(); }
    TopicActions *actions() const { return m_actions.get(); }
    KeyboardMap *keyboard() const { return m_keyboard.get(); }
    Drafts *drafts() const { return m_drafts.get(); }
    RunModel *run() const { return m_run.get(); }
    Commands *commands() const { return m_commands.get(); }
    TopicSearch *search() const { return m_search.get(); }
    CommandPalette *commandPalette() const { return m_palette.get(); }
    TerritoryModel *territory() const { return m_territory.get(); }
    ReportModel *report() const { return m_report.get(); }
    FiguresModel *figures() const { return m_figures.get(); }
    TopicPage *page() const { return m_page.get(); }
    ProgramBudget *budget() const { return m_budget.get(); }
    SettingsModel *settings() const { return m_settings.get(); }
    AgentStates *agentStates() const { return m_agentStates.get(); }
    OnboardingModel *onboarding() const { return m_onboarding.get(); }
    CalibrationModel *calibration() const { return m_calibration.get(); }
    Screens *screens() const { return m_screens.get(); }
    TopicLinks *links() const { return m_links.get(); }
    QuickCapture *quickCapture() const { return m_quickCapture.get(); }
    const Clock &clock() const { return m_parts.clock; }
    QString agent() const;
    QStringList terminals() const { return m_parts.terminals; }
    QString notice() const { return m_notices.isEmpty() ? QString() : m_notices.last().text; }
    QString remedy() const;
    bool isDemo() const { return m_parts.store.isDemo(); }
    bool demoReturns() const;
    /// Whether a run is under way, an agent's installation or a sign-in: who closes for good is
    /// asked first.
    bool isAtWork() const;

    /// See TopicLinks.
    Q_INVOKABLE void openLink(const QString &url) { m_links->open(url); }
    Q_INVOKABLE void dismissNotice();
    /// Does what `remedy` says: takes up the topics that can be read of a damaged file, or tries
    /// again what failed.
    Q_INVOKABLE void takeRemedy();
    /// Takes a topic's first step with the agent (⌘↩). What there is to say is said by `said`.
    void firstStep(const QString &topicId);
    /// Opens the quick capture, from wherever the person is.
    Q_SLOT void openQuickCapture();
    /// A topic's title as it is shown; "" for none.
    Q_INVOKABLE QString titleOf(const QString &topicId) const;
    /// Has a captured link that could not be judged tried once more; nothing for one that did not
    /// fail.
    void retry(const QString &topicId);
    /// Looks at the clock and the agents again: a new day changes what is next, what was missed,
    /// the week's time; an agent may have been signed in to.
    void refresh();
    /// The agent answers again: goes on with the run that waited for it, and with the links.
    void goOn();
    /// Has the person told of what was dropped for them.
    void tellOfDrops(const QString &sentence) { tell(Matter::Drops, sentence); }
    /// The same for an update that came up by itself.
    void tellOfUpdate(const QString &sentence) { tell(Matter::Update, sentence); }
    /// Stops what goes on in the background, and ends once it has.
    Task<> stopped();

    /// The user's own score; `score` is held to 0-10.
    Q_INVOKABLE void correct(const QString &topicId, int score, const QStringList &tags,
                             const QString &text);
    Q_INVOKABLE void uncorrect(const QString &topicId);
    Q_INVOKABLE bool isCorrected(const QString &topicId) const;
    /// The app's own score, whatever the user said of it; -1 where nothing could be read.
    Q_INVOKABLE int judgedScore(const QString &topicId) const;
    /// The score that its card shows: the user's own, else the app's; -1 for none.
    Q_INVOKABLE int shownScore(const QString &topicId) const;
    Q_INVOKABLE QStringList correctionTags(const QString &topicId) const;
    Q_INVOKABLE QString correctionText(const QString &topicId) const;
    QVariantList correctionReasons() const;

Q_SIGNALS:
    void agentChanged();
    void noticeChanged();
    /// The update view is to be shown.
    void updateAsked();
    /// A word for the user on what they just did.
    void said(const QString &sentence);

private:
    void makeTopicModels();
    void makeOtherModels();
    void followStores();
    void tellFound();
    void follow(LinkCapture &capture);
    void followAgent();
    /// What a notice is about: each has one at most.
    enum class Matter {
        Found, ///< how the files were found at this start
        Save,
        Settings,
        FirstStep,
        Drops,     ///< dropped files that hold no link
        Capture,   ///< captured links that could not be judged
        Postponed, ///< those that wait for another day
        Update     ///< a version that waits for an answer
    };
    struct Notice {
        Matter matter;
        QString text;
    };
    void tell(Matter matter, const QString &text);
    /// What was told of it is another by now, or nothing; nothing comes of what was put away.
    void retell(Matter matter, const QString &text);
    void dismissNotices(Matter matter);
    void say(const QString &sentence);

    static Task<> launch(QPointer<Shell> self, ClaudeLauncher &launcher, Topic topic);

    Parts m_parts;
    QList<Notice> m_notices;
    std::unique_ptr<TopicListModel> m_inbox;
    std::unique_ptr<TopicListModel> m_program;
    std::unique_ptr<TopicListModel> m_reserve;
    std::unique_ptr<TopicListModel> m_library;
    std::unique_ptr<BriefMarks> m_briefMarks;
    std::unique_ptr<Decisions> m_decisions;
    std::unique_ptr<TriageEnd> m_end;
    std::unique_ptr<TopicLinks> m_links;
    std::unique_ptr<KeyboardMap> m_keyboard;
    std::unique_ptr<Drafts> m_drafts;
    std::unique_ptr<ProgramBudget> m_budget;
    std::unique_ptr<RunModel> m_run;
    std::unique_ptr<Sections> m_sections;
    std::unique_ptr<TopicActions> m_actions;
    std::unique_ptr<Commands> m_commands;
    std::unique_ptr<TopicSearch> m_search;
    std::unique_ptr<CommandPalette> m_palette;
    std::unique_ptr<TerritoryModel> m_territory;
    std::unique_ptr<SettingsModel> m_settings;
    std::unique_ptr<AgentStates> m_agentStates;
    std::unique_ptr<OnboardingModel> m_onboarding;
    std::unique_ptr<CalibrationModel> m_calibration;
    std::unique_ptr<ReportModel> m_report;
    std::unique_ptr<FiguresModel> m_figures;
    std::unique_ptr<TopicPage> m_page;
    std::unique_ptr<Screens> m_screens;
    TaskGroup m_work; // first steps under way
    std::unique_ptr<CaptureNotices> m_captureNotices;
    std::unique_ptr<QuickCapture> m_quickCapture;
};

} // namespace vorle
