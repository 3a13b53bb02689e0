#pragma once

#include "app/demo/DemoCatalogue.h"

#include <QHash>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

namespace vorle {

/// The pages, their pictures and the blog of the demonstration over plain HTTP/1.1, on this machine
/// alone (127.0.0.1, a port the system chooses). GET and HEAD; connections are kept; a request
/// larger than 16 KB, a body or anything that is not HTTP is refused and the connection closed.
/// Nothing is read from disk: a path is looked up among the pages and that is all. Main thread
/// only.
class DemoSite final : public QObject {
    Q_OBJECT
public:
    /// `pauseMilliseconds`: how long each answer waits, so that progress can be seen.
    /// @throws std::runtime_error (French) when no port can be opened
    explicit DemoSite(DemoCatalogue catalogue, int pauseMilliseconds = 150,
                      QObject *parent = nullptr);

    /// "http://127.0.0.1:" and the port, without a trailing slash.
    QString address() const;

private:
    struct Connection {
        QByteArray waiting; ///< what came and is not answered yet
        bool answering = false;
    };

    void accept();
    void receive(QTcpSocket *socket);
    void answerNext(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const QByteArray &head);

    DemoCatalogue m_catalogue;
    int m_pauseMilliseconds;
    QHash<QTcpSocket *, Connection> m_connections;
    QTcpServer m_server; ///< last: its sockets say goodbye to the list above when they go
};

} // namespace vorle
