#pragma once

#include "platform/FileReveal.h"

#include <QDBusConnection>

namespace vorle {

/// The desktop's file browser, by the interface that the desktops share
/// (org.freedesktop.FileManager1); where none answers it, the folder is opened. Needs a
/// QGuiApplication.
class DesktopReveal final : public FileReveal {
public:
    explicit DesktopReveal(const QDBusConnection &bus = QDBusConnection::sessionBus());

    QString label() const override;
    bool reveal(const QString &path) override;

private:
    QDBusConnection m_bus;
};

} // namespace vorle
