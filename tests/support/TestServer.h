#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTcpServer>
#include <QUrl>

#include <chrono>
#include <functional>

class QTcpSocket;

namespace vorle::test {

struct TestRequest {
    QByteArray target;                    ///< path and query, as sent
    QMap<QByteArray, QByteArray> headers; ///< names in lower case
};

/// What the server answers. The shapes other than Whole are for what a hostile or failing server
/// does.
struct TestReply {
    enum class Shape {
        Whole,    ///< the body with its length
        Endless,  ///< the body again and again, until the client goes
        Dripping, ///< one byte of the body every 20 ms
        Raw,      ///< the body is all that is sent, status line included; then the server hangs up
        Silent    ///< nothing ever
    };

    int status = 200;
    QByteArray contentType = "text/html; charset=utf-8";
    QByteArray body;
    QList<QByteArray> headers; ///< further header lines
    std::chrono::milliseconds delay{0};
    Shape shape = Shape::Whole;

    static TestReply shaped(Shape shape, const QByteArray &body = {});
    static TestReply page(const QByteArray &html);
    static TestReply redirect(const QByteArray &location, int status = 302);
};

/// A real HTTP/1.1 server on 127.0.0.1, on the calling thread's event loop. Counts what it sees.
class TestServer : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<TestReply(const TestRequest &)>;

    TestServer();

    /// Answers `path` (without its query); any other path answers 404. A Handler is asked at each
    /// request.
    void serve(const QByteArray &path, const TestReply &reply);
    void serve(const QByteArray &path, const Handler &handler);

    QUrl url(const QByteArray &path, const QString &host = QStringLiteral("127.0.0.1")) const;
    QString link(const QByteArray &path, const QString &host = QStringLiteral("127.0.0.1")) const;
    quint16 port() const { return m_server.serverPort(); }

    const QList<TestRequest> &requests() const { return m_requests; }
    qsizetype requestCount(const QByteArray &path) const;
    qsizetype connectionsOpen() const { return m_open; }
    qsizetype connectionsMade() const { return m_made; }
    /// The most requests that were being answered at once, in all or for one Host header.
    int maxConcurrent() const { return m_mostAtOnce; }
    int maxConcurrent(const QByteArray &host) const { return m_mostAtOnceByHost.value(host); }

private:
    void accept();
    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const TestRequest &request);
    void send(QTcpSocket *socket, const TestReply &reply);

    QHash<QByteArray, Handler> m_handlers;
    QList<TestRequest> m_requests;
    QHash<QTcpSocket *, QByteArray> m_unread;
    QHash<QTcpSocket *, QByteArray> m_answering; ///< the Host header of the request under way
    QHash<QByteArray, int> m_mostAtOnceByHost;
    int m_mostAtOnce = 0;
    qsizetype m_open = 0;
    qsizetype m_made = 0;
    QTcpServer m_server; ///< last: its sockets tell the counts above when they go
};

} // namespace vorle::test
