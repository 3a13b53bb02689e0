#pragma once

#include "agents/AgentLocator.h"
#include "core/Preferences.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// One of the agents, as a screen shows it.
struct AgentState {
    Q_GADGET
    QML_VALUE_TYPE(agentState)
    Q_PROPERTY(QString kind MEMBER kind FINAL)
    Q_PROPERTY(QString name MEMBER name FINAL)
    Q_PROPERTY(QString state MEMBER state FINAL)
    Q_PROPERTY(QString text MEMBER text FINAL)
    Q_PROPERTY(bool ready MEMBER ready FINAL)
    Q_PROPERTY(bool chosen MEMBER chosen FINAL)

public:
    QString kind;  ///< as the settings keep it: "claude"
    QString name;  ///< "Claude Code"
    QString state; ///< "prêt", "déconnecté", "introuvable"
    QString text;  ///< what it will work with; or what to do so that it can, a sentence
    bool ready = false;
    bool chosen = false; ///< the one that is used, by the user's choice or for being ready

    bool operator==(const AgentState &) const = default;
};

/// The agents there are, whether each can work, and which one is used. Looks when it is made, when
/// the choice changes, and when it is asked to: an agent installed or signed in to meanwhile shows
/// then. Main thread; what it is given outlives it.
class AgentStates final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed FINAL) ///< of AgentState
    /// Whether the one that is used can work.
    Q_PROPERTY(bool ready READ isReady NOTIFY changed FINAL)

public:
    AgentStates(const AgentLocator &agents, Preferences &preferences, QObject *parent = nullptr);

    QVariantList rows() const;
    const QList<AgentState> &states() const { return m_states; }
    bool isReady() const;
    /// Looks at the machine again.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void changed();

private:
    QList<AgentState> look() const;

    const AgentLocator &m_agents;
    QList<AgentState> m_states;
};

} // namespace vorle
