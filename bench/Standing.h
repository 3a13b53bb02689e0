#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>

#include <functional>

namespace vorle {

/// What /proc tells of a process; nothing elsewhere.
struct Standing {
    double pss = 0; // MB
    double privately = 0;
    double switches = 0;
    double processor = 0; // milliseconds

    static Standing of(qint64 process) {
        Standing standing;
        const QString folder = QStringLiteral("/proc/%1/").arg(process);
        each(folder + QStringLiteral("smaps_rollup"), [&](const QByteArray &key, double value) {
            standing.pss += key == "Pss" ? value / 1024 : 0;
            standing.privately += key.startsWith("Private_") ? value / 1024 : 0;
        });
        for (const QString &task :
             QDir(folder + QStringLiteral("task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            const QString of = folder + QStringLiteral("task/") + task;
            each(of + QStringLiteral("/status"), [&](const QByteArray &key, double value) {
                standing.switches += key == "voluntary_ctxt_switches" ? value : 0;
            });
            QFile schedule(of + QStringLiteral("/schedstat"));
            if (schedule.open(QIODevice::ReadOnly)) {
                standing.processor += schedule.readAll().split(' ').first().toDouble() / 1e6;
            }
        }
        return standing;
    }

private:
    static void each(const QString &path,
                     const std::function<void(const QByteArray &, double)> &take) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            return;
        }
        for (const QByteArray &line : file.readAll().split('\n')) {
            const qsizetype colon = line.indexOf(':');
            if (colon > 0) {
                take(line.first(colon),
                     line.sliced(colon + 1).simplified().split(' ').first().toDouble());
            }
        }
    }
};

} // namespace vorle
