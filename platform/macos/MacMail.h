#pragma once

#include "platform/MailComposer.h"

namespace vorle {

/// Mail by the system's sharing service, other programs by their address, files by the Finder.
class MacMail final : public MailComposer {
public:
    Task<QString> program() override;
    bool takesDrafts(const QString &program) const override;
    Task<bool> compose(MailDraft draft) override;
    bool open(const QUrl &address) override;
    void show(const QStringList &files) override;
};

/// The program's version and its build, as its bundle tells them: "1.4.2 (310)"; "" outside a
/// bundle.
QString bundleVersion();

} // namespace vorle
