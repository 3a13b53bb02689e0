#pragma once

#include "base/Async.h"
#include "platform/LoginItem.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace vorle {

class Notifier;

/// What the settings show of the desktop's own: whether it shows notifications, whether it opens
/// the app with the session and has a place for its icon. All are the system's answers, asked for
/// each time, and never waited for: a switch shows what it was turned to until the system has
/// answered. Main thread; what it is given outlives it, and the questions under way.
class DesktopSettings final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// Why notifications cannot be shown, and how to mend it; "" while nothing is known to be
    /// wrong.
    Q_PROPERTY(QString noticesTrouble READ noticesTrouble NOTIFY noticesChanged FINAL)
    /// What the system says; a switch that it refuses shows what it says.
    Q_PROPERTY(bool opensAtLogin READ opensAtLogin WRITE setOpensAtLogin NOTIFY loginChanged FINAL)
    /// Why it does not, or not yet; "" otherwise.
    Q_PROPERTY(QString loginTrouble READ loginTrouble NOTIFY loginChanged FINAL)
    /// What it comes to that the desktop has no place for the app's icon; "" where it has one.
    Q_PROPERTY(QString iconTrouble READ iconTrouble NOTIFY loginChanged FINAL)

public:
    /// `hasMenuBar`: whether there is a place for the app's icon now.
    DesktopSettings(Notifier &notifier, LoginItem &login, std::function<bool()> hasMenuBar,
                    QObject *parent = nullptr);

    QString noticesTrouble() const;
    bool opensAtLogin() const;
    void setOpensAtLogin(bool on);
    QString loginTrouble() const;
    QString iconTrouble() const;

    /// Asks the system anew.
    Q_INVOKABLE void refresh();
    /// The person asked for notifications, by a control of these settings.
    Q_INVOKABLE void askForNotices();

Q_SIGNALS:
    void noticesChanged();
    void loginChanged();

private:
    static Task<> ask(QPointer<DesktopSettings> self);
    void askLogin();

    Notifier &m_notifier;
    LoginItem &m_login;
    std::function<bool()> m_hasMenuBar;
    LoginItem::State m_state = LoginItem::State::Off; ///< as the system said last
    std::optional<bool> m_wanted;                     ///< it was turned to that, and is to be set
    bool m_asking = false;
    QString m_refusal; ///< of the last switch
};

} // namespace vorle
