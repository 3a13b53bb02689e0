#include "tests/support/TestServer.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <stdexcept>

namespace vorle::test {

using namespace std::chrono_literals;

TestReply TestReply::shaped(Shape shape, const QByteArray &body) {
    TestReply reply;
    reply.shape = shape;
    reply.body = body;
    return reply;
}

TestReply TestReply::page(const QByteArray &html) { return shaped(Shape::Whole, html); }

TestReply TestReply::redirect(const QByteArray &location, int status) {
    TestReply reply;
    reply.status = status;
    reply.headers = {"Location: " + location};
    return reply;
}

TestServer::TestServer() {
    m_server.setListenBacklogSize(512); // a connection past it is made only a second later
    m_server.setMaxPendingConnections(512);
    if (!m_server.listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("the test server cannot listen");
    }
    connect(&m_server, &QTcpServer::newConnection, this, &TestServer::accept);
}

void TestServer::serve(const QByteArray &path, const TestReply &reply) {
    serve(path, [reply](const TestRequest &) { return reply; });
}

void TestServer::serve(const QByteArray &path, const Handler &handler) {
    m_handlers.insert(path, handler);
}

QUrl TestServer::url(const QByteArray &path, const QString &host) const {
    return QUrl::fromEncoded("http://" + host.toLatin1() + ':' + QByteArray::number(port()) + path);
}

QString TestServer::link(const QByteArray &path, const QString &host) const {
    return url(path, host).toString(QUrl::FullyEncoded);
}

qsizetype TestServer::requestCount(const QByteArray &path) const {
    return std::count_if(m_requests.begin(), m_requests.end(),
                         [&](const TestRequest &request) { return request.target == path; });
}

void TestServer::accept() {
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        ++m_open;
        ++m_made;
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --m_open;
            m_unread.remove(socket);
            m_answering.remove(socket);
            socket->deleteLater();
        });
    }
}

void TestServer::read(QTcpSocket *socket) {
    QByteArray &unread = m_unread[socket];
    unread += socket->readAll();
    for (qsizetype end = unread.indexOf("\r\n\r\n"); end >= 0; end = unread.indexOf("\r\n\r\n")) {
        const QList<QByteArray> lines = unread.first(end).replace('\r', "").split('\n');
        unread.remove(0, end + 4);
        TestRequest request;
        request.target = lines.first().split(' ').value(1);
        for (const QByteArray &line : lines.sliced(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(line.first(colon).toLower(), line.sliced(colon + 1).trimmed());
        }
        answer(socket, request);
    }
}

void TestServer::answer(QTcpSocket *socket, const TestRequest &request) {
    m_requests.append(request);
    const QByteArray host = request.headers.value("host");
    m_answering.insert(socket, host);
    m_mostAtOnce = std::max(m_mostAtOnce, static_cast<int>(m_answering.size()));
    const auto ofHost = std::count(m_answering.cbegin(), m_answering.cend(), host);
    int &maxPerHost = m_mostAtOnceByHost[host];
    maxPerHost = std::max(maxPerHost, static_cast<int>(ofHost));

    const auto handler = m_handlers.constFind(request.target.split('?').first());
    TestReply reply;
    if (handler == m_handlers.cend()) {
        reply.status = 404;
    } else {
        reply = (*handler)(request);
    }
    QTimer::singleShot(reply.delay, socket, [this, socket, reply] { send(socket, reply); });
}

void TestServer::send(QTcpSocket *socket, const TestReply &reply) {
    using Shape = TestReply::Shape;
    if (reply.shape == Shape::Silent) {
        return;
    }
    if (reply.shape == Shape::Raw) {
        socket->write(reply.body);
        socket->disconnectFromHost();
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(reply.status) + " Answer\r\n";
    if (!reply.contentType.isEmpty()) {
        head += "Content-Type: " + reply.contentType + "\r\n";
    }
    for (const QByteArray &line : reply.headers) {
        head += line + "\r\n";
    }
    if (reply.shape != Shape::Endless) {
        head += "Content-Length: " + QByteArray::number(reply.body.size()) + "\r\n";
    }
    socket->write(head + "\r\n");
    switch (reply.shape) {
    case Shape::Endless:
        socket->write(reply.body);
        connect(socket, &QTcpSocket::bytesWritten, socket, [socket, body = reply.body] {
            if (socket->bytesToWrite() == 0) {
                socket->write(body);
            }
        });
        return;
    case Shape::Dripping: {
        auto *drip = new QTimer(socket);
        connect(drip, &QTimer::timeout, socket, [socket, body = reply.body, sent = 0]() mutable {
            if (sent < body.size()) {
                socket->write(body.constData() + sent++, 1);
            }
        });
        drip->start(20ms);
        return;
    }
    default:
        socket->write(reply.body);
        m_answering.remove(socket);
    }
}

} // namespace vorle::test
