#include "app/window/desktop/CaptureShortcut.h"

#include "app/labels/Wording.h"
#include "app/models/ShortcutText.h"
#include "desktop/HotKey.h"
#include "platform/KeyCodes.h"
#include "platform/KeyWatch.h"

namespace vorle {

using State = GlobalHotKey::State;

CaptureShortcut::CaptureShortcut(Preferences &preferences, HotKey &hotKey, KeyWatch &keys,
                                 KeySpelling spelling, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_hotKey(hotKey)
    , m_keys(keys)
    , m_spelling(spelling) {
    connect(&hotKey, &HotKey::changed, this, &CaptureShortcut::changed);
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::captureShortcut)) {
            Q_EMIT changed();
        }
    });
}

CaptureShortcut::~CaptureShortcut() {
    if (m_recording) {
        m_keys.stop();
    }
}

QString CaptureShortcut::text() const {
    const QString keys = shortcutText(m_preferences.settings().captureShortcut, m_spelling);
    return keys.isEmpty() ? tr("Aucun") : keys;
}

QString CaptureShortcut::workingKeys() const {
    if (m_hotKey.state() != State::Registered) {
        return {};
    }
    const QString bound = shownWords(m_hotKey.boundTo());
    return bound.isEmpty() ? shortcutText(m_preferences.settings().captureShortcut, m_spelling)
                           : bound;
}

void CaptureShortcut::tell(KeyboardMap &map) {
    const auto tellNow = [this, &map] { map.setCaptureKeys(workingKeys()); };
    connect(this, &CaptureShortcut::changed, &map, tellNow);
    tellNow();
}

QString CaptureShortcut::help() const {
    const bool glyphs = m_spelling == KeySpelling::Glyphs;
    if (m_refusal == Refusal::NoModifier) {
        return glyphs ? tr("Il faut aussi ⌘, ⌥ ou ⌃.") : tr("Il faut aussi Ctrl, Alt ou Super.");
    }
    if (m_refusal == Refusal::NoSuchKey) {
        return tr("Je ne peux pas me servir de cette touche.");
    }
    if (m_recording) {
        return glyphs ? tr("Avec ⌘, ⌥ ou ⌃. Échap garde l’ancien, ⌫ n’en garde aucun.")
                      : tr("Avec Ctrl, Alt ou Super. Échap garde l’ancien, Effacer n’en garde "
                           "aucun.");
    }
    switch (m_hotKey.state()) {
    case State::None:
        return tr("Sans raccourci, la capture s’ouvre depuis la fenêtre et la barre de menus.");
    case State::Asked:
        return tr("J’attends la réponse de ton bureau.");
    case State::Taken:
        return tr("Une autre app utilise déjà %1.").arg(text());
    case State::Unavailable:
        return tr("Ton système ne donne pas ce raccourci à vorle.");
    case State::Registered:
        break;
    }
    const QString bound = shownWords(m_hotKey.boundTo());
    return bound.isEmpty() || bound == text() ? tr("Ouvre la capture depuis n’importe quelle app.")
                                              : tr("Ton bureau l’a réglé sur %1.").arg(bound);
}

bool CaptureShortcut::isTroubled() const {
    return m_refusal != Refusal::None || (!m_recording && (m_hotKey.state() == State::Taken ||
                                                           m_hotKey.state() == State::Unavailable));
}

void CaptureShortcut::record() {
    if (m_recording) {
        return;
    }
    m_recording = true;
    m_hotKey.pause(); // else the one in use could not be typed
    m_keys.start([this](const KeyCombination &pressed) { take(pressed); });
    Q_EMIT changed();
}

void CaptureShortcut::take(const KeyCombination &pressed) {
    if (pressed.modifiers == 0 && pressed.keyCode == keys::escape) {
        leave();
        Q_EMIT recorded();
        return;
    }
    if (pressed.modifiers == 0 && pressed.keyCode == keys::backspace) {
        end(Shortcut::none());
        return;
    }
    const Shortcut shortcut{pressed.keyCode, pressed.modifiers, pressed.key};
    if (shortcut.isValid()) {
        end(shortcut);
        return;
    }
    m_refusal = pressed.keyCode < 0 ? Refusal::NoSuchKey : Refusal::NoModifier;
    Q_EMIT changed();
}

void CaptureShortcut::end(const Shortcut &shortcut) {
    m_preferences.change(&Settings::captureShortcut, shortcut);
    leave();
    Q_EMIT recorded();
}

void CaptureShortcut::leave() {
    if (!m_recording) {
        return;
    }
    m_recording = false;
    m_refusal = Refusal::None;
    m_keys.stop();
    m_hotKey.resume();
    Q_EMIT changed();
}

void CaptureShortcut::look() { m_hotKey.look(); }

} // namespace vorle
