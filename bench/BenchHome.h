#pragma once

#include "bench/ManyTopics.h"
#include "core/TopicStore.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <cstdio>

namespace vorle {

/// A folder with a topics file and settings of its own, and the environment that leads there.
class BenchHome {
public:
    explicit BenchHome(qsizetype topics) {
        SystemClock clock;
        TopicStore store(file(), Resources(), clock);
        if (topics > 0) {
            store.add(manyTopics(topics));
        }
        store.flush();
        // Set up long ago: the first set-up would stand over what is measured.
        write(settingsFile(), "{\"onboarded\":true}");
        // Qt's own screen without a monitor is 800 pixels wide, and the window would be made to
        // fit.
        write(screensFile(), R"({"screens":[{"name":"one","x":0,"y":0,"width":1920,"height":1080,)"
                             R"("logicalDpi":96,"logicalBaseDpi":96,"dpr":1}]})");
    }
    QProcessEnvironment environment() const {
        auto variables = QProcessEnvironment::systemEnvironment();
        const auto offer = [&](const QString &name, const QString &value) {
            if (!variables.contains(name)) {
                variables.insert(name, value);
            }
        };
        offer(QStringLiteral("QT_QPA_PLATFORM"),
              QStringLiteral("offscreen:configfile=") + screensFile());
        offer(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        offer(QStringLiteral("XDG_RUNTIME_DIR"), m_dir.path());
        variables.insert(QStringLiteral("HOME"), m_dir.path());
        variables.insert(QStringLiteral("VORLE_HOME"), m_dir.path());
        variables.insert(QStringLiteral("VORLE_STORE"), file());
        variables.insert(QStringLiteral("VORLE_SETTINGS"), settingsFile());
        return variables;
    }

private:
    QString file() const { return m_dir.filePath(QStringLiteral("topics.json")); }
    QString settingsFile() const { return m_dir.filePath(QStringLiteral("settings.json")); }
    QString screensFile() const { return m_dir.filePath(QStringLiteral("screens.json")); }
    static void write(const QString &path, const QByteArray &text) {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(text) < 0) {
            std::fprintf(stderr, "not written: %s\n", qPrintable(file.errorString()));
        }
    }

    QTemporaryDir m_dir{QDir::currentPath() + QStringLiteral("/bench-window-XXXXXX")};
};

} // namespace vorle
