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
        QFile settings(settingsFile());
        if (!settings.open(QIODevice::WriteOnly) || settings.write("{\"onboarded\":true}") < 0) {
            std::fprintf(stderr, "no settings: %s\n", qPrintable(settings.errorString()));
        }
    }
    QProcessEnvironment environment() const {
        auto variables = QProcessEnvironment::systemEnvironment();
        const auto offer = [&](const QString &name, const QString &value) {
            if (!variables.contains(name)) {
                variables.insert(name, value);
            }
        };
        offer(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
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

    QTemporaryDir m_dir{QDir::currentPath() + QStringLiteral("/bench-window-XXXXXX")};
};

} // namespace vorle
