#include "platform/linux/DesktopMail.h"

#include "base/Descriptor.h"
#include "platform/linux/DesktopReveal.h"
#include "platform/linux/PortalRequest.h"

#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFile>
#include <QPointer>
#include <QProcess>
#include <QTimer>

#include <fcntl.h>

#include <memory>
#include <optional>

namespace vorle {

namespace {

struct Run {
    enum class End { Well, Badly, GoesOn };
    End end;
    QByteArray said; ///< on its standard output
};

/// A program that is over or, after `patience`, left to go on: what opens a mail program may be
/// there as long as that one.
Task<Run> runOf(QString program, QStringList arguments, std::chrono::milliseconds patience) {
    auto process = std::make_unique<QProcess>();
    OneShot ended;
    QObject::connect(process.get(), &QProcess::finished, process.get(), [ended] { ended.fire(); });
    QObject::connect(process.get(), &QProcess::errorOccurred, process.get(),
                     [ended] { ended.fire(); });
    QTimer::singleShot(patience, process.get(), [ended] { ended.fire(); });
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, arguments);
    co_await ended;
    if (process->state() != QProcess::NotRunning && process->error() != QProcess::Crashed) {
        QObject::connect(process.get(), &QProcess::finished, process.get(), &QObject::deleteLater);
        process.release(); // NOLINT(bugprone-unused-return-value): it deletes itself
        co_return Run{Run::End::GoesOn, {}};
    }
    const bool well = process->error() == QProcess::UnknownError && process->exitCode() == 0;
    co_return Run{well ? Run::End::Well : Run::End::Badly, process->readAllStandardOutput()};
}

/// Some mail programs are handed the message as one text in which an apostrophe ends a part of it.
QString withoutApostrophes(QString text) { return text.replace(u'\'', u'’'); }

} // namespace

DesktopMail::DesktopMail(const QDBusConnection &bus, Patience patience)
    : m_bus(bus), m_patience(patience) {
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
}

Task<QString> DesktopMail::program() {
    const Run run = co_await runOf(QStringLiteral("xdg-mime"),
                                   {QStringLiteral("query"), QStringLiteral("default"),
                                    QStringLiteral("x-scheme-handler/mailto")},
                                   m_patience.program);
    co_return run.end == Run::End::Well ? QString::fromUtf8(run.said).trimmed() : QString();
}

Task<bool> DesktopMail::compose(MailDraft draft) {
    if (co_await byPortal(draft)) {
        co_return true;
    }
    QStringList arguments{QStringLiteral("--utf8"), QStringLiteral("--subject"),
                          withoutApostrophes(draft.subject), QStringLiteral("--body"),
                          withoutApostrophes(draft.body)};
    for (const QString &path : draft.attachments) {
        arguments += {QStringLiteral("--attach"), path};
    }
    arguments += draft.to;
    const Run run = co_await runOf(QStringLiteral("xdg-email"), arguments, m_patience.program);
    co_return run.end != Run::End::Badly;
}

Task<bool> DesktopMail::byPortal(const MailDraft &draft) {
    if (!m_bus.isConnected()) {
        co_return false;
    }
    QList<QDBusUnixFileDescriptor> files;
    for (const QString &path : draft.attachments) {
        const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
        if (!file.isOpen()) {
            co_return false;
        }
        files += QDBusUnixFileDescriptor(file.number()); // a number of its own
    }
    auto answer = std::make_shared<std::optional<PortalRequest::Answer>>();
    OneShot answered;
    const QPointer<PortalRequest> request = PortalRequest::ask(
        m_bus, QStringLiteral("org.freedesktop.portal.Email"), QStringLiteral("ComposeEmail"),
        [&](QVariantMap options) {
            options[QStringLiteral("address")] = draft.to;
            options[QStringLiteral("subject")] = draft.subject;
            options[QStringLiteral("body")] = draft.body;
            if (!files.isEmpty()) {
                options[QStringLiteral("attachment_fds")] = QVariant::fromValue(files);
            }
            return QVariantList{QString(), options};
        },
        this,
        [answer, answered](PortalRequest::Answer given, const QVariantMap &) {
            *answer = given;
            answered.fire();
        });
    QTimer::singleShot(m_patience.program, this, [request, answered] {
        if (request && !request->isTaken()) {
            answered.fire();
        }
    });
    QTimer::singleShot(m_patience.person, this, [answered] { answered.fire(); });
    co_await answered;
    if (!*answer && request) {
        request->takeBack();
    }
    // Refused by the person is an answer too: they are not asked by another way.
    co_return *answer && *answer != PortalRequest::Answer::Failed;
}

bool DesktopMail::open(const QUrl &address) { return QDesktopServices::openUrl(address); }

void DesktopMail::show(const QStringList &files) {
    if (!files.isEmpty()) {
        DesktopReveal(m_bus).reveal(files.first()); // they lie in one folder
    }
}

} // namespace vorle
