#include "app/models/settings/DesktopSettings.h"

#include "app/labels/Wording.h"
#include "desktop/Notifier.h"
#include "platform/LoginItem.h"

namespace vorle {

DesktopSettings::DesktopSettings(Notifier &notifier, LoginItem &login, QObject *parent)
    : QObject(parent), m_notifier(notifier), m_login(login) {
    connect(&notifier, &Notifier::standingChanged, this, &DesktopSettings::noticesChanged);
}

QString DesktopSettings::noticesTrouble() const { return shownWords(m_notifier.trouble()); }

bool DesktopSettings::opensAtLogin() const {
    const LoginItem::State state = m_login.state();
    return state == LoginItem::State::On || state == LoginItem::State::Held;
}

void DesktopSettings::setOpensAtLogin(bool on) {
    const auto refused = m_login.set(on);
    m_refusal = refused ? tr("Le système a refusé\u00A0: %1").arg(*refused) : QString();
    Q_EMIT loginChanged();
}

QString DesktopSettings::loginTrouble() const {
    return shownWords(m_refusal.isEmpty() ? m_login.remedy() : m_refusal);
}

void DesktopSettings::refresh() {
    m_refusal.clear();
    Q_EMIT loginChanged();
    m_notifier.look();
}

} // namespace vorle
