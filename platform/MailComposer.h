#pragma once

#include "base/Async.h"

#include <QString>
#include <QStringList>
#include <QUrl>

namespace vorle {

/// A message that the person is to send themselves.
struct MailDraft {
    QString to;
    QString subject;         ///< one line
    QString body;            ///< lines end with "\n"
    QStringList attachments; ///< paths of files
};

/// The person's own mail program. Nothing is sent by this: a message is laid before them. Main
/// thread; needs a QGuiApplication; outlives every question under way.
class MailComposer {
public:
    virtual ~MailComposer() = default;

    /// What opens for the address of somebody's mail, as the system calls it: "com.apple.mail",
    /// "thunderbird.desktop"; "" where nothing does, or where the system does not say.
    virtual Task<QString> program() = 0;
    /// Whether that program can be handed a whole message.
    virtual bool takesDrafts(const QString &program) const = 0;
    /// Opens the message in it, attachments and all. False when it did not take it.
    virtual Task<bool> compose(MailDraft draft) = 0;
    /// Opens an address, of mail or of the web. False when the system is known not to have.
    virtual bool open(const QUrl &address) = 0;
    /// Shows the files in the system's file browser, to be taken from there.
    virtual void show(const QStringList &files) = 0;
};

} // namespace vorle
