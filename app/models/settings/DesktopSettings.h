#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace vorle {

class LoginItem;
class Notifier;

/// What the settings show of the desktop's own: whether it shows notifications, and whether it
/// opens the app with the session. Both are the system's answers, asked for each time. Main thread;
/// what it is given outlives it.
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

public:
    DesktopSettings(Notifier &notifier, LoginItem &login, QObject *parent = nullptr);

    QString noticesTrouble() const;
    bool opensAtLogin() const;
    void setOpensAtLogin(bool on);
    QString loginTrouble() const;

    /// Asks the system anew.
    Q_INVOKABLE void refresh();

Q_SIGNALS:
    void noticesChanged();
    void loginChanged();

private:
    Notifier &m_notifier;
    LoginItem &m_login;
    QString m_refusal; ///< of the last switch
};

} // namespace vorle
