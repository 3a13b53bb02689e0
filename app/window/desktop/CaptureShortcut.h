#pragma once

#include "app/models/KeyboardMap.h"
#include "core/Preferences.h"
#include "platform/KeyCombination.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace vorle {

class HotKey;
class KeyWatch;

/// The combination that opens the quick capture, as the settings show and record it. While it
/// records, every key that is pressed in the window is its own; with Command, Option or Control it
/// becomes the combination, Escape leaves, Backspace alone leaves none. Main thread; what it is
/// given outlives it.
class CaptureShortcut final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// "⌃⌥ Espace", "Aucun"
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(bool recording READ recording NOTIFY changed FINAL)
    /// How it stands, or what to do now.
    Q_PROPERTY(QString help READ help NOTIFY changed FINAL)
    /// The help tells of a fault.
    Q_PROPERTY(bool troubled READ isTroubled NOTIFY changed FINAL)

public:
    CaptureShortcut(Preferences &preferences, HotKey &hotKey, KeyWatch &keys,
                    KeySpelling spelling = nativeSpelling(), QObject *parent = nullptr);
    ~CaptureShortcut() override;

    QString text() const;
    bool recording() const { return m_recording; }
    QString help() const;
    bool isTroubled() const;
    /// The keys that open the capture now; "" where none do.
    QString workingKeys() const;
    /// Has the shortcut sheet show those, from now on. The map outlives this.
    void tell(KeyboardMap &map);

    Q_INVOKABLE void record();
    /// Ends the recording, and keeps what there was.
    Q_INVOKABLE void leave();
    /// Asks once more for a combination that another program had, or that the system did not give.
    Q_INVOKABLE void look();

Q_SIGNALS:
    void changed();
    /// A recording ended by a key: what was shown is to have the keyboard again.
    void recorded();

private:
    void take(const KeyCombination &pressed);
    void end(const Shortcut &shortcut);

    enum class Refusal { None, NoModifier, NoSuchKey };

    Preferences &m_preferences;
    HotKey &m_hotKey;
    KeyWatch &m_keys;
    KeySpelling m_spelling;
    bool m_recording = false;
    Refusal m_refusal = Refusal::None;
};

} // namespace vorle
