#pragma once

#include "app/triage/DecisionHistory.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// The user's decisions for QML (see DecisionHistory): topics are named by their identity as a
/// string, and what happened is told in French. Nothing happens to an unknown one.
/// Main thread; the store outlives it.
class Decisions final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")

public:
    explicit Decisions(TopicStore &store, QObject *parent = nullptr);

    /// What the card of a decided topic leaves behind, "Gardé · Programme"; nothing where the
    /// decision was not taken.
    using Taken = std::optional<QString>;

    Taken keep(const QString &topicId);                                  ///< "G"
    Taken later(const QString &topicId);                                 ///< "L"
    Taken dismiss(const QString &topicId);                               ///< "X"
    Taken postpone(const QString &topicId);                              ///< "R"
    Taken removeFromProgram(const QString &topicId);                     ///< "⌫": back to triage
    Taken backToTriage(const QString &topicId);                          ///< "T"
    Taken done(const QString &topicId, std::optional<Worth> worth = {}); ///< "D"
    /// "1 2 3". A topic that is not in the library is done with it.
    Taken verdict(const QString &topicId, Worth worth);
    /// The user's own note. An empty one takes it away. False where nothing changed.
    Q_INVOKABLE bool setNote(const QString &topicId, const QString &note);
    /// The user's own score of the topic; nothing takes it away.
    bool setCorrection(const QString &topicId, const std::optional<Correction> &correction);

    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }

    /// Where they stand, for who decides by another way: this tells of it too.
    DecisionHistory &history() { return m_history; }

    /// As DecisionHistory's. Gives a French sentence on what happened, also emitted; "" when there
    /// is nothing to take back.
    QString undo();
    QString redo();

Q_SIGNALS:
    /// A decision was taken; `ghostText` is what its card leaves behind: "Gardé · Programme".
    void decided(const QString &topicId, const QString &ghostText);
    void undone(const QString &topicId, const QString &sentence);
    void redone(const QString &topicId, const QString &sentence);
    void stepsChanged();

private:
    Taken decide(const QString &topicId, Outcome outcome);
    QString sentence(const StepResult &result) const;

    TopicStore &m_store;
    DecisionHistory m_history;
};

} // namespace vorle
