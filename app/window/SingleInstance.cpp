#include "app/window/SingleInstance.h"

#include "base/Log.h"
#include "storage/DurableFile.h"

#include <QFileInfo>
#include <QTimer>

#include <system_error>

namespace vorle {

namespace {

constexpr int timeoutMs = 2000;
/// Commands under way and callers that have not asked yet.
constexpr qsizetype maxCallers = 16;

} // namespace

SingleInstance::SingleInstance(const QString &topicsFile, QObject *parent)
    : QObject(parent), m_name(appSocketName(topicsFile)) {
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server.nextPendingConnection()) {
            welcome(socket);
        }
    });
}

void SingleInstance::welcome(QLocalSocket *socket) {
    auto *caller = new AppConnection(socket, AppConnection::maxRequestBytes, this);
    connect(caller, &AppConnection::closed, caller, &QObject::deleteLater);
    if (findChildren<AppConnection *>(Qt::FindDirectChildrenOnly).size() > maxCallers) {
        caller->close();
        return;
    }
    auto *patience = new QTimer(caller);
    connect(patience, &QTimer::timeout, caller, &AppConnection::close);
    patience->start(timeoutMs);
    connect(
        caller, &AppConnection::received, this,
        [this, caller, patience](const AppMessage &message) {
            patience->stop();
            take(*caller, message);
        },
        Qt::SingleShotConnection);
    caller->send({.kind = m_serving ? AppMessage::Kind::Hello : AppMessage::Kind::Waiting});
}

void SingleInstance::take(AppConnection &caller, const AppMessage &message) {
    if (m_closed) {
        caller.close(); // a window that is about to go is not to be shown
    } else if (message.kind == AppMessage::Kind::Raise) {
        caller.send({.kind = AppMessage::Kind::End, .status = 0});
        caller.finish();
        Q_EMIT raiseAsked();
    } else if (message.kind == AppMessage::Kind::Command && message.command && m_serving) {
        Q_EMIT commandAsked(caller, *message.command);
    } else {
        caller.close();
    }
}

void SingleInstance::close() {
    m_closed = true;
    m_server.close();
}

Task<bool> SingleInstance::raiseRunning(QString topicsFile) {
    auto *socket = new QLocalSocket;
    AppConnection app(socket, AppConnection::maxAnswerBytes);
    const OneShot over;
    bool raised = false;
    connect(&app, &AppConnection::closed, &app, [over] { over.fire(); });
    connect(&app, &AppConnection::received, &app, [&app, &raised, over](const AppMessage &message) {
        if (message.kind == AppMessage::Kind::Hello || message.kind == AppMessage::Kind::Waiting) {
            app.send({.kind = AppMessage::Kind::Raise});
        } else {
            raised = message.kind == AppMessage::Kind::End;
            over.fire();
        }
    });
    QTimer::singleShot(timeoutMs, &app, &AppConnection::close);
    socket->connectToServer(appSocketName(topicsFile));
    co_await over;
    co_return raised;
}

void SingleInstance::listenWhereGone() {
    if (m_server.isListening() && !QFileInfo::exists(m_name)) {
        m_server.close(); // callers that it has already stay
        listen();
    }
}

bool SingleInstance::listen() {
    try {
        makeFolder(QFileInfo(m_name).absolutePath());
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("no folder for the socket: ") +
                QString::fromLocal8Bit(error.what()));
    }
    QLocalServer::removeServer(m_name);
    if (m_server.listen(m_name)) {
        return true;
    }
    logLine(QStringLiteral("a second start will not find this one: ") + m_server.errorString());
    return false;
}

} // namespace vorle
