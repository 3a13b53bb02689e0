#pragma once

#include "platform/MailComposer.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>

namespace vorle {

/// The mail program of a Linux desktop: by the desktop's portal, which hands it the attachments as
/// open files, else by `xdg-email`. Which one it is says `xdg-mime`. Programs are run with a list
/// of arguments; one that has not ended after a while is taken to have done its work.
class DesktopMail final : public QObject, public MailComposer {
    Q_OBJECT
public:
    explicit DesktopMail(const QDBusConnection &bus = QDBusConnection::sessionBus(),
                         std::chrono::milliseconds patience = std::chrono::seconds(5));

    Task<QString> program() override;
    /// Whatever it is: the portal knows it where xdg-mime is missing.
    bool takesDrafts(const QString & /*program*/) const override { return true; }
    Task<bool> compose(MailDraft draft) override;
    bool open(const QUrl &address) override;
    void show(const QStringList &files) override;

private:
    Task<bool> byPortal(const MailDraft &draft);

    QDBusConnection m_bus;
    std::chrono::milliseconds m_patience;
};

} // namespace vorle
