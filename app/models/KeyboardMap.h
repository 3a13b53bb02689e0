#pragma once

#include "agents/AgentKind.h"
#include "app/models/ListParts.h"
#include "app/models/Section.h"

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace vorle {

/// How keys are written: a Mac's glyphs (⌃⌥⇧⌘), or words ("Ctrl+Alt+Maj", ⌘ being Ctrl).
enum class KeySpelling { Glyphs, Words };

/// The spelling people know on the system this runs on.
KeySpelling nativeSpelling();
/// A text of a Mac's glyphs in that spelling: "⌘K" gives "Ctrl+K".
QString spelled(const QString &glyphs, KeySpelling spelling);

/// A row of the shortcut sheet.
struct KeyRow {
    Q_GADGET
    QML_VALUE_TYPE(keyRow)
    Q_PROPERTY(QString keys MEMBER keys FINAL)
    Q_PROPERTY(QString label MEMBER label FINAL)

public:
    QString keys;
    QString label;
    bool operator==(const KeyRow &) const = default;
};
struct KeyGroup {
    Q_GADGET
    QML_VALUE_TYPE(keyGroup)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QVariantList rows READ rowList FINAL)

public:
    QString title;
    QList<KeyRow> rows;
    bool operator==(const KeyGroup &) const = default;

    QVariantList rowList() const { return variants(rows); }
};

/// The keys of the main window: one table that both draws the shortcut sheet and says what a key
/// does. Main thread.
class KeyboardMap final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// The sheet: a list of KeyGroup.
    Q_PROPERTY(QVariantList groups READ groups NOTIFY groupsChanged FINAL)
    /// The line under an open card.
    Q_PROPERTY(QString openCardHint READ openCardHint CONSTANT FINAL)

public:
    enum Action {
        NoAction,
        Search,
        AddTopic,
        GoInbox,
        GoProgram,
        GoReserve,
        GoLibrary,
        GoTerritory,
        GoReport,
        GoMenu,
        GoContent,
        RunNow,
        Undo,
        Redo, ///< has no row in the sheet
        OpenSettings,
        ShowShortcuts,
        Previous,
        Next,
        PreviousTopic, ///< these two also where `Previous` and `Next` scroll; no row in the sheet
        NextTopic,
        Keep,
        Later,
        Dismiss,
        ToggleCard, ///< opens the card, or closes the open one
        CloseCard,
        FirstStep,
        Done,
        Postpone,
        Remove,
        BackToTriage,
        WorthMeh,
        WorthUseful,
        WorthGem,
        ReadAgain,     ///< has no key: a captured link that could not be judged is tried once more
        Correct,       ///< has no key: the chosen topic's score is given by hand
        SendFeedback,  ///< has no key: a message to the maker is written
        ShowUpdate,    ///< has no key: the update that waits for an answer
        LookForUpdate, ///< has no key: the same, after a look for one
        StopRun,       ///< has no key: the run under way
        LargerText,    ///< these three have no row in the sheet
        SmallerText,
        UsualText,
        OpenSource, ///< these two have no row in the sheet: the topic's link, in the browser
        CopyLink    ///< or onto the pasteboard
    };
    Q_ENUM(Action)

    explicit KeyboardMap(AgentKind agent, KeySpelling spelling = nativeSpelling(),
                         QObject *parent = nullptr);

    /// What a key does in that section. `key` is a Qt::Key, `modifiers` Qt::KeyboardModifiers
    /// (Control being ⌘ on a Mac, as Qt has it). Where a text field has the focus, the keys that
    /// edit text are its own. The digits are known on a French keyboard too, where they need
    /// Shift; `scanCode` is the event's own, which tells the 6 of such a keyboard from a minus
    /// sign. A key event that repeats is to be dropped unless `repeats`.
    Q_INVOKABLE vorle::KeyboardMap::Action action(vorle::sections::Section section, int key,
                                                  int modifiers, bool textFieldFocused,
                                                  quint32 scanCode = 0) const;
    /// Whether the action has a key in that section.
    bool actsIn(Action action, Section section) const;
    /// What the action is called where it stands alone, in a menu or among commands: the sheet's
    /// label where its row has one action. "" for none.
    QString label(Action action) const;
    /// The combination that a menu may show and take for the action: its first one with ⌘; empty
    /// where there is none. A key without ⌘ is left to the window: in a menu it would be taken
    /// from every text field.
    QKeySequence sequence(Action action) const;
    /// The digit that a press gives, 0 to 9, on a French keyboard with Shift or without; -1 for any
    /// other press.
    Q_INVOKABLE int digit(int key, int modifiers) const;
    /// Whether the action stands under "Partout": it acts while the menu has the keyboard too.
    Q_INVOKABLE bool isEverywhere(vorle::KeyboardMap::Action action) const;
    /// Whether holding the key down goes on doing it: moving through the list does, nothing that
    /// decides.
    Q_INVOKABLE bool repeats(vorle::KeyboardMap::Action action) const;
    /// The section an action goes to; the first for any other action.
    Q_INVOKABLE vorle::sections::Section target(vorle::KeyboardMap::Action action) const;
    /// The key shown on a button: "G", "⌘Z"; "" for none.
    Q_INVOKABLE QString keys(vorle::KeyboardMap::Action action) const;

    void setAgent(AgentKind agent);
    /// What opens the quick capture from any application; "" where nothing does. Until it is told,
    /// the sheet shows the combination that is asked for at first.
    void setCaptureKeys(const QString &keys);

    QVariantList groups() const;
    /// The line under the list of "À trier".
    QString inboxHint() const;
    QString openCardHint() const;

    /// The sheet as values; without `captureKeys`, as it is before they are told.
    static QList<KeyGroup> sheet(AgentKind agent, KeySpelling spelling,
                                 const std::optional<QString> &captureKeys = {});

Q_SIGNALS:
    void groupsChanged();

private:
    AgentKind m_agent;
    KeySpelling m_spelling;
    std::optional<QString> m_captureKeys;
};

} // namespace vorle
