#include "app/demo/DemoSite.h"

#include "app/demo/DemoBlog.h"
#include "app/demo/DemoPageWriter.h"
#include "base/French.h"

#include <QTcpSocket>
#include <QTimer>

#include <stdexcept>

namespace vorle {

namespace {

constexpr qsizetype maxHead = 16'384;
constexpr int maxConnections = 64;
constexpr int idleMilliseconds = 30'000;

QByteArray response(const QByteArray &status, const DemoBody &body, bool withBody, bool keep) {
    QByteArray out = "HTTP/1.1 " + status + "\r\nContent-Type: " + body.contentType +
                     "\r\nContent-Length: " + QByteArray::number(body.bytes.size()) +
                     (keep ? "\r\n\r\n" : "\r\nConnection: close\r\n\r\n");
    return withBody ? out + body.bytes : out;
}

void refuse(QTcpSocket *socket, const QByteArray &status) {
    socket->write(response(status, {"text/plain", status}, true, false));
    socket->disconnectFromHost();
}

QByteArray headerValue(const QByteArrayList &lines, const QByteArray &name) {
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        if (colon > 0 && line.first(colon).compare(name, Qt::CaseInsensitive) == 0) {
            return line.sliced(colon + 1).trimmed();
        }
    }
    return {};
}

} // namespace

DemoSite::DemoSite(DemoCatalogue catalogue, int pauseMilliseconds, QObject *parent)
    : QObject(parent), m_catalogue(std::move(catalogue)), m_pauseMilliseconds(pauseMilliseconds) {
    connect(&m_server, &QTcpServer::newConnection, this, &DemoSite::accept);
    if (!m_server.listen(QHostAddress::LocalHost)) {
        throw std::runtime_error(French::tr("Le site de démonstration n’a pas pu s’ouvrir : %1")
                                     .arg(m_server.errorString())
                                     .toStdString());
    }
}

QString DemoSite::address() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort());
}

void DemoSite::accept() {
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_connections.remove(socket);
            socket->deleteLater();
        });
        if (m_connections.size() >= maxConnections) {
            socket->abort();
            continue;
        }
        m_connections.insert(socket, {});
        socket->setReadBufferSize(maxHead);
        auto *idle = new QTimer(socket);
        idle->setSingleShot(true);
        connect(idle, &QTimer::timeout, socket, &QTcpSocket::abort);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket, idle] {
            idle->start(idleMilliseconds);
            receive(socket);
        });
        idle->start(idleMilliseconds);
    }
}

void DemoSite::receive(QTcpSocket *socket) {
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end()) {
        return;
    }
    connection->waiting += socket->read(maxHead + 1 - connection->waiting.size());
    answerNext(socket);
}

void DemoSite::answerNext(QTcpSocket *socket) {
    const auto connection = m_connections.find(socket);
    if (connection == m_connections.end() || connection->answering) {
        return;
    }
    const qsizetype end = connection->waiting.indexOf("\r\n\r\n");
    if (end < 0) {
        if (connection->waiting.size() > maxHead) {
            refuse(socket, "431 Request Header Fields Too Large");
        }
        return;
    }
    const QByteArray head = connection->waiting.first(end);
    connection->waiting.remove(0, end + 4);
    connection->answering = true;
    QTimer::singleShot(m_pauseMilliseconds, socket, [this, socket, head] {
        answer(socket, head);
        const auto answered = m_connections.find(socket);
        if (answered != m_connections.end() && socket->state() == QTcpSocket::ConnectedState) {
            answered->answering = false;
            receive(socket);
        }
    });
}

void DemoSite::answer(QTcpSocket *socket, const QByteArray &head) {
    QByteArrayList lines = head.split('\n');
    for (QByteArray &line : lines) {
        line = line.trimmed();
    }
    const QByteArrayList request = lines.takeFirst().split(' ');
    if (request.size() != 3 || !request[2].startsWith("HTTP/1.") || !request[1].startsWith('/') ||
        !headerValue(lines, "transfer-encoding").isEmpty() ||
        headerValue(lines, "content-length").toLongLong() > 0) {
        refuse(socket, "400 Bad Request");
        return;
    }
    const bool headOnly = request[0] == "HEAD";
    if (request[0] != "GET" && !headOnly) {
        refuse(socket, "405 Method Not Allowed");
        return;
    }
    const QByteArray path =
        request[1].first(request[1].indexOf('?') < 0 ? request[1].size() : request[1].indexOf('?'));
    const auto page = m_catalogue.at(QString::fromLatin1(path));
    if (page && page->shape == DemoPage::Shape::Dead) {
        socket->abort();
        return;
    }
    const bool keep = request[2] != "HTTP/1.0" &&
                      headerValue(lines, "connection").compare("close", Qt::CaseInsensitive) != 0;
    auto body = page ? std::optional(writePage(*page))
                     : blogAnswer(m_catalogue, QString::fromLatin1(path), address());
    if (!body) {
        body = pictureAnswer(QString::fromLatin1(path));
    }
    const DemoBody missing{"text/html; charset=utf-8", "<h1>Page introuvable</h1>\n"};
    socket->write(body ? response("200 OK", *body, !headOnly, keep)
                       : response("404 Not Found", missing, !headOnly, keep));
    if (!keep) {
        socket->disconnectFromHost();
    }
}

} // namespace vorle
