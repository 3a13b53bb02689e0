// vorle_attack_probe launch|clock: answers each line of standard input (a JSON object) with one.

#include "tests/attack/Probe.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>

#include <cstdio>

int main(int argc, char **argv) {
    const QCoreApplication app(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const bool launch = words.value(1) == u"launch";
    if (!launch && words.value(1) != u"clock") {
        std::fputs("usage: vorle_attack_probe launch|clock\n", stderr);
        return 2;
    }
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly)) {
        return 1;
    }
    while (true) {
        const QByteArray line = in.readLine();
        if (line.isEmpty()) {
            return 0;
        }
        const QJsonObject question = QJsonDocument::fromJson(line).object();
        const QJsonObject answer =
            launch ? vorle::attack::launched(question) : vorle::attack::timed(question);
        std::puts(QJsonDocument(answer).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    }
}
