#include "desktop/HotKey.h"

namespace vorle {

HotKey::HotKey(const Preferences &preferences, GlobalHotKey &system, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_system(system) {
    m_system.follow([this] { Q_EMIT pressed(); }, [this] { Q_EMIT changed(); });
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::captureShortcut)) {
            apply();
        }
    });
    apply();
}

HotKey::~HotKey() {
    m_system.follow({}, {});
    m_system.replace(std::nullopt);
}

void HotKey::pause() {
    m_paused = true;
    apply();
}

void HotKey::resume() {
    m_paused = false;
    apply();
}

void HotKey::look() {
    if (state() == GlobalHotKey::State::Taken || state() == GlobalHotKey::State::Unavailable) {
        apply();
    }
}

void HotKey::apply() {
    const Shortcut &shortcut = m_preferences.settings().captureShortcut;
    if (m_paused || shortcut.isNone()) {
        m_system.replace(std::nullopt);
    } else {
        m_system.replace(KeyCombination{shortcut.keyCode, shortcut.modifiers, shortcut.key});
    }
}

} // namespace vorle
