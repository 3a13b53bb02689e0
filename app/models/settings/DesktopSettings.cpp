#include "app/models/settings/DesktopSettings.h"

#include "app/labels/Wording.h"
#include "desktop/Notifier.h"

#include <utility>

namespace vorle {

DesktopSettings::DesktopSettings(Notifier &notifier, LoginItem &login,
                                 std::function<bool()> hasMenuBar, QObject *parent)
    : QObject(parent), m_notifier(notifier), m_login(login), m_hasMenuBar(std::move(hasMenuBar)) {
    connect(&notifier, &Notifier::standingChanged, this, &DesktopSettings::noticesChanged);
    askLogin();
}

QString DesktopSettings::noticesTrouble() const { return shownWords(m_notifier.trouble()); }

bool DesktopSettings::opensAtLogin() const {
    return m_wanted.value_or(m_state == LoginItem::State::On || m_state == LoginItem::State::Held);
}

void DesktopSettings::setOpensAtLogin(bool on) {
    m_wanted = on;
    m_refusal.clear();
    Q_EMIT loginChanged();
    askLogin();
}

void DesktopSettings::askLogin() {
    if (!std::exchange(m_asking, true)) {
        detach(ask(this), QStringLiteral("opening with the session"));
    }
}

/// One question at a time; what was turned meanwhile is set before the answer is shown.
Task<> DesktopSettings::ask(QPointer<DesktopSettings> self) {
    LoginItem &login = self->m_login;
    LoginItem::State state{};
    do {
        if (const auto on = self->m_wanted) {
            const auto refused = co_await login.set(*on);
            if (!self) {
                co_return;
            }
            self->m_refusal =
                refused ? tr("Le système a refusé\u00A0: %1").arg(*refused) : QString();
            if (self->m_wanted == on) {
                self->m_wanted.reset();
            }
        }
        state = co_await login.state();
        if (!self) {
            co_return;
        }
    } while (self->m_wanted);
    self->m_asking = false;
    self->m_state = state;
    Q_EMIT self->loginChanged();
}

QString DesktopSettings::loginTrouble() const {
    return m_wanted ? QString() // it was mended, or is about to be
                    : shownWords(m_refusal.isEmpty() ? m_login.remedy(m_state) : m_refusal);
}

QString DesktopSettings::iconTrouble() const {
    return m_hasMenuBar()
               ? QString()
               : tr("Ton bureau ne montre pas l’icône de vorle\u00A0: sa fenêtre s’ouvre "
                    "donc, et la fermer le quitte.");
}

void DesktopSettings::refresh() {
    m_refusal.clear();
    askLogin();
    m_notifier.look();
    if (m_notifier.waitsForLeave()) {
        m_notifier.askLeave(); // a command has switched it on, with nobody to ask
    }
}

void DesktopSettings::askForNotices() { m_notifier.askLeave(); }

} // namespace vorle
