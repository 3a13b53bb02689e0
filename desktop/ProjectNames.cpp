#include "desktop/ProjectNames.h"

#include "base/Json.h"
#include "base/Log.h"
#include "base/OnDisk.h"
#include "storage/DurableFile.h"

#include <QFileInfo>

#include <exception>

namespace vorle {

ProjectNames::ProjectNames(QString file, const Preferences &preferences, QObject *parent)
    : QObject(parent), m_file(std::move(file)), m_preferences(preferences) {
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::projects)) {
            write();
        }
    });
    write();
}

void ProjectNames::write() {
    if (!m_writing) {
        m_work.add(logged(work(), QStringLiteral("the names of the projects")));
    }
}

Task<> ProjectNames::work() {
    m_writing = true;
    bool well = true;
    while (well && m_written != QStringList(m_preferences.settings().projects.keys())) {
        const QStringList names = m_preferences.settings().projects.keys();
        const QByteArray bytes = json::encode(QList<QString>(names), json::Style::Pretty);
        const auto problem = co_await onDisk([file = m_file, bytes] {
            try {
                makeFolder(QFileInfo(file).absolutePath());
                replaceWhole(file, bytes, AtLink::Replace);
                return QString();
            } catch (const std::exception &error) {
                return QString::fromLocal8Bit(error.what());
            }
        });
        well = problem && problem->isEmpty();
        if (well) {
            m_written = names;
        } else {
            logLine(QStringLiteral("the names of the projects were not written: ") +
                    problem.value_or(QStringLiteral("the disk does not answer")));
        }
    }
    m_writing = false;
}

} // namespace vorle
