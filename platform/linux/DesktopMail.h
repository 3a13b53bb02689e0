#pragma once

#include "platform/MailComposer.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>

namespace vorle {

/// The mail program of a Linux desktop: by the desktop's portal, which hands it the attachments as
/// open files, else by `xdg-email`. Which one it is says `xdg-mime`. Programs are run with a list
/// of arguments; one that has not ended after a while is taken to have done its work.
///
/// A message is opened once: a portal that has taken it is given the time that a person needs to
/// choose a program, and is told to forget it before another way is tried.
class DesktopMail final : public QObject, public MailComposer {
    Q_OBJECT
public:
    struct Patience {
        std::chrono::milliseconds program = std::chrono::seconds(5); ///< with what does not answer
        std::chrono::milliseconds person = std::chrono::minutes(3);  ///< whom the portal asks
    };
    explicit DesktopMail(const QDBusConnection &bus, Patience patience);
    explicit DesktopMail(const QDBusConnection &bus = QDBusConnection::sessionBus())
        : DesktopMail(bus, Patience{}) {}

    Task<QString> program() override;
    /// Whatever it is: the portal knows it where xdg-mime is missing.
    bool takesDrafts(const QString & /*program*/) const override { return true; }
    Task<bool> compose(MailDraft draft) override;
    bool open(const QUrl &address) override;
    void show(const QStringList &files) override;

private:
    Task<bool> byPortal(const MailDraft &draft);

    QDBusConnection m_bus;
    Patience m_patience;
};

} // namespace vorle
