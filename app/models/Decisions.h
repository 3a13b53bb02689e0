#pragma once

#include "core/TopicStore.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <variant>

namespace vorle {

/// Takes the user's decisions on topics, their scores and their notes, and takes them back in the
/// order they came: as many as were taken since the application started. Topics are named by their
/// identity as a string; nothing happens to an unknown one. Main thread; the store outlives it.
class Decisions final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY stepsChanged FINAL)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY stepsChanged FINAL)

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

    bool canUndo() const { return !m_done.isEmpty(); }
    bool canRedo() const { return !m_undone.isEmpty(); }

    /// Takes the last decision back, or takes it again, and gives a French sentence on what
    /// happened, also emitted; "" when there is nothing to. Only what that step set is put back:
    /// what came to the topic by another way meanwhile stays. Where just that is no longer as the
    /// step left it, without this object, it stays: the step is dropped, and the sentence says so.
    QString undo();
    QString redo();

Q_SIGNALS:
    /// A decision was taken; `ghostText` is what its card leaves behind: "Gardé · Programme".
    void decided(const QString &topicId, const QString &ghostText);
    void undone(const QString &topicId, const QString &sentence);
    void redone(const QString &topicId, const QString &sentence);
    void stepsChanged();

private:
    using Own = std::optional<Correction>; ///< the user's own score
    using Note = std::optional<QString>;
    /// What a step sets of a topic, and nothing else of it.
    using Side = std::variant<TopicStore::Placement, Own, Note>;
    struct Step {
        QUuid id;
        Side before;
        Side after;
    };
    enum class Direction { Back, Forth };

    template <class Act>
    Taken decide(const QString &topicId, const QString &ghostText, Act act);
    void keepStep(Step step);
    bool isAt(const QUuid &id, const Side &side) const;
    bool put(const QUuid &id, const Side &side);
    QString predicate(const QUuid &id, const Side &from, const Side &to, Direction direction) const;
    QString step(QList<Step> &from, QList<Step> &to, Direction direction);

    TopicStore &m_store;
    QList<Step> m_done;
    QList<Step> m_undone;
};

} // namespace vorle
