#pragma once

#include "agents/AgentLocator.h"
#include "app/models/settings/AgentSetupWork.h"
#include "core/Preferences.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

class Pasteboard;

/// One of the agents, as a screen shows it, with what goes on in setting it up.
struct AgentState {
    Q_GADGET
    QML_VALUE_TYPE(agentState)
    Q_PROPERTY(QString kind MEMBER kind FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString state MEMBER state FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(QString note MEMBER note FINAL)
    Q_PROPERTY(QString problem MEMBER problem FINAL)
    Q_PROPERTY(QString action MEMBER action FINAL)
    Q_PROPERTY(QString page MEMBER page FINAL)
    Q_PROPERTY(bool ready MEMBER ready FINAL)
    Q_PROPERTY(bool chosen MEMBER chosen FINAL)
    Q_PROPERTY(bool working MEMBER working FINAL)
    Q_PROPERTY(bool installing MEMBER installing FINAL)
    Q_PROPERTY(int percent MEMBER percent FINAL)

public:
    QString kind;         ///< as the settings keep it: "claude"
    QString name;         ///< "Claude Code"
    QString state;        ///< "prêt", "déconnecté", "introuvable"
    QString text = {};    ///< what it will work with, what that needs, or what goes on
    QString note = {};    ///< more on it; or ""
    QString problem = {}; ///< why the last try to set it up came to nothing, sentences; or ""
    QString action = {};  ///< what a button does next ("Installer"); "" where there is nothing
    QString page = {};    ///< where to confirm the sign-in that waits; or ""
    bool ready = false;
    bool chosen = false;     ///< the one that is used, by the user's choice or for being ready
    bool working = false;    ///< it is being set up: the button stops that
    bool installing = false; ///< it is being installed
    int percent = -1;        ///< of the installation, -1 where that cannot be told

    bool operator==(const AgentState &) const = default;
};

/// The agents there are, whether each can work, and which one is used. Looks when it is made, when
/// the choice changes, and when it is asked to: an agent installed or signed in to meanwhile shows
/// then, and one that is set up here at once. Main thread; what it is given outlives it.
class AgentStates final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed FINAL) ///< of AgentState
    /// Whether the one that is used can work.
    Q_PROPERTY(bool ready READ isReady NOTIFY changed FINAL)
    /// Whether one is being installed or signed in to, and whether one is being installed.
    Q_PROPERTY(bool working READ isWorking NOTIFY changed FINAL)
    Q_PROPERTY(bool installing READ isInstalling NOTIFY changed FINAL)

public:
    struct Parts {
        const AgentLocator &agents;
        Preferences &preferences;
        const AgentSetup &setup;
        LinkOpener &links;
        Pasteboard &pasteboard;
        bool settable = true; ///< agents may be set up; else they are shown as they are
    };
    explicit AgentStates(const Parts &parts, QObject *parent = nullptr);

    QVariantList rows() const;
    const QList<AgentState> &states() const { return m_states; }
    bool isReady() const;
    bool isWorking() const;
    bool isInstalling() const;
    /// Looks at the machine again.
    Q_INVOKABLE void refresh();
    /// Does what the agent's button said, its `action`: installs it, has the user sign in, or stops
    /// that. Where that is no longer what there is to do, shows what is, and does nothing.
    Q_INVOKABLE void act(const QString &kind, const QString &action);
    /// Puts the address of the page to confirm on onto the pasteboard.
    Q_INVOKABLE void copyPage(const QString &kind);
    /// Stops what is under way, and waits for its end.
    Task<> stopped() { return m_work.stopped(); }

Q_SIGNALS:
    void changed();
    /// An agent was installed, or signed in to.
    void setUp();

private:
    QList<AgentState> look() const;
    AgentState looked(AgentKind kind) const;
    void showProgress(AgentKind kind);

    Parts m_parts;
    AgentSetupWork m_work;
    QList<AgentState> m_states;
};

} // namespace vorle
