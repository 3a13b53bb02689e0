// What a run costs by itself: 200 pages of 60 KB, each answered after 200 ms, over 50 hosts, read
// 16 at a time with their extraction, beside the ideal (the waits alone) and a peer (curl's own
// command line with as many transfers at once, extracting nothing). Also how long the main thread
// was held at a stretch meanwhile.

#include "search/web/PageReader.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace {

using namespace vorle;

constexpr int pages = 200;
constexpr int hosts = 50;
constexpr int waitMilliseconds = 200;
constexpr int atOnce = 16;

QByteArray article() {
    QByteArray html = "<!doctype html><html><head><title>Une page</title><meta "
                      "name=\"description\" content=\"Ce qu’elle dit\"></head><body><nav>";
    html += QByteArray("<a href=\"/x\">lien</a> ").repeated(300) + "</nav><article>";
    while (html.size() < 60'000) {
        html += "<p class=\"texte\">Une phrase avec <b>du gras</b> &amp; des entit&#233;s, puis "
                "<a href=\"/suite?x=1\">la suite</a> de la page.</p>\n";
    }
    return html + "</article><footer>pied</footer></body></html>";
}

/// Listens on 127.0.0.1 to 127.0.0.50, on one port, in a thread of its own.
class SlowWeb : public QObject {
public:
    quint16 listen() {
        quint16 port = 0;
        for (int host = 1; host <= hosts; ++host) {
            auto *server = new QTcpServer(this);
            server->listen(QHostAddress(QStringLiteral("127.0.0.%1").arg(host)), port);
            port = server->serverPort();
            connect(server, &QTcpServer::newConnection, this, [this, server] {
                while (QTcpSocket *socket = server->nextPendingConnection()) {
                    connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                        const qsizetype requests = socket->readAll().count("\r\n\r\n");
                        for (qsizetype i = 0; i < requests; ++i) {
                            QTimer::singleShot(waitMilliseconds, socket,
                                               [this, socket] { socket->write(m_response); });
                        }
                    });
                }
            });
        }
        return port;
    }

private:
    const QByteArray m_body = article();
    const QByteArray m_response = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " +
                                  QByteArray::number(m_body.size()) + "\r\n\r\n" + m_body;
};

QStringList links(quint16 port) {
    QStringList made;
    for (int page = 0; page < pages; ++page) {
        made +=
            QStringLiteral("http://127.0.0.%1:%2/p%3").arg(page % hosts + 1).arg(port).arg(page);
    }
    return made;
}

Task<> readOne(PageReader &reader, QString link, int *full) {
    const ReadPage page = co_await reader.read(std::move(link));
    *full += page.level == ReadLevel::Full ? 1 : 0;
}

Task<> readAll(PageReader &reader, QStringList addresses, int *full) {
    std::vector<Task<>> reads;
    for (const QString &link : addresses) {
        reads.push_back(readOne(reader, link, full));
    }
    for (Task<> &read : reads) {
        co_await read;
    }
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

double measured(const QStringList &addresses, double *maxHold) {
    HttpClient http(true);
    PageReader reader(http);
    QElapsedTimer beat;
    QTimer heart;
    QObject::connect(&heart, &QTimer::timeout, [&] {
        *maxHold = std::max(*maxHold, double(beat.nsecsElapsed()) / 1e6 - 1.0);
        beat.restart();
    });
    heart.setTimerType(Qt::PreciseTimer);
    heart.start(1);
    beat.start();
    QElapsedTimer elapsed;
    elapsed.start();
    int full = 0;
    const Task<> all = readAll(reader, addresses, &full);
    QCoreApplication::exec();
    if (full != pages) {
        std::printf("only %d pages were read\n", full);
    }
    return double(elapsed.nsecsElapsed()) / 1e9;
}

double curl(const QStringList &addresses) {
    QStringList arguments{QStringLiteral("-s"), QStringLiteral("--no-progress-meter"),
                          QStringLiteral("--parallel"), QStringLiteral("--parallel-max"),
                          QString::number(atOnce)};
    for (const QString &address : addresses) {
        arguments += {address, QStringLiteral("-o"), QStringLiteral("/dev/null")};
    }
    QElapsedTimer elapsed;
    elapsed.start();
    if (QProcess::execute(QStringLiteral("curl"), arguments) != 0) {
        return 0;
    }
    return double(elapsed.nsecsElapsed()) / 1e9;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QThread thread;
    SlowWeb web;
    web.moveToThread(&thread);
    thread.start();
    quint16 port = 0;
    QMetaObject::invokeMethod(&web, [&] { port = web.listen(); }, Qt::BlockingQueuedConnection);

    constexpr int rounds = (pages + atOnce - 1) / atOnce;
    const double ideal = rounds * waitMilliseconds / 1000.0;
    std::printf("%d pages, %d at a time, %d ms each, %d hosts; the waits alone: %.2f s\n", pages,
                atOnce, waitMilliseconds, hosts, ideal);
    for (int round = 0; round < 3; ++round) {
        double hold = 0;
        const double ours = measured(links(port), &hold);
        const double peer = curl(links(port));
        std::printf("read and extracted %.3f s (%.3f of the ideal), main thread held %.1f ms at "
                    "most; curl %.3f s (%.3f)\n",
                    ours, ours / ideal, hold, peer, peer / ideal);
    }
    QMetaObject::invokeMethod(
        &web, [&] { qDeleteAll(web.children()); }, Qt::BlockingQueuedConnection);
    thread.quit();
    thread.wait();
    return 0;
}
