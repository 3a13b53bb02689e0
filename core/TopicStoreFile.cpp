// The topic store and its file: where it lies, how it is loaded, when it is saved.

#include "base/French.h"
#include "base/Log.h"
#include "base/MainThread.h"
#include "base/SystemErrorText.h"
#include "core/DurableFile.h"
#include "core/EngineImport.h"
#include "core/RunHistory.h"
#include "core/TopicStore.h"
#include "core/TopicWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <system_error>

namespace vorle {

namespace {

constexpr std::string_view subject = "vorle/TopicStore";

/// Makes a folder and those above it, the user's alone.
/// @throws std::system_error
void makeFolder(const QString &path) {
    if (QFileInfo(path).isDir()) {
        return;
    }
    const QFileInfo info(path);
    if (!info.isRoot()) {
        makeFolder(info.dir().absolutePath());
    }
    const bool made = QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!made && !QFileInfo(path).isDir()) {
        throw std::system_error(std::make_error_code(std::errc::io_error), path.toStdString());
    }
}

QString failureText(const std::error_code &error) {
    return French::tr("Le dernier enregistrement de tes sujets a échoué : %1.")
        .arg(systemErrorText(error));
}

} // namespace

QString TopicStore::location(Kind kind) {
    if (kind == Kind::Preview) {
        return {};
    }
    QString file = qEnvironmentVariable("VORLE_STORE");
    if (file.isEmpty()) {
        const QString name =
            kind == Kind::Demo ? QStringLiteral("demo-topics.json") : QStringLiteral("topics.json");
        file = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/vorle/") + name;
    }
    makeFolder(QFileInfo(file).absolutePath());
    return file;
}

void TopicStore::load() {
    requireMainThread(subject);
    if (isPreview()) {
        return;
    }
    // The demonstration starts afresh each time, but never over a file the user named.
    const bool fresh = isDemo() && qEnvironmentVariableIsEmpty("VORLE_STORE");
    const bool loaded = !fresh && readFile();
    m_writer =
        std::make_unique<TopicWriter>(m_file, m_setAside, [this](const std::error_code &error) {
            if (error) {
                logLine(QStringLiteral("saving the topics failed, kept for the next save: ") +
                        QString::fromStdString(error.message()));
            }
            QMetaObject::invokeMethod(
                this,
                [this, error] {
                    if (error) {
                        Q_EMIT saveFailed(failureText(error));
                    } else {
                        Q_EMIT saved();
                    }
                },
                Qt::QueuedConnection);
        });
    if (!loaded && (isDemo() || qEnvironmentVariableIsSet("VORLE_SAMPLE_DATA"))) {
        seed();
    }
    if (fresh) {
        seedHistory();
    }
}

bool TopicStore::readFile() {
    QString failure;
    try {
        const auto bytes = readWhole(m_file);
        if (!bytes || bytes->isEmpty()) {
            return false;
        }
        replaceAll(json::decode<QList<Topic>>(*bytes));
        return true;
    } catch (const json::DecodeError &error) {
        failure = QString::fromUtf8(error.what());
    } catch (const std::exception &error) {
        failure = QString::fromLocal8Bit(error.what());
    }
    logLine(QStringLiteral("the topics file could not be read: ") + failure);
    try {
        m_setAside = asideName(m_file, m_clock.now());
    } catch (const std::system_error &) {
        logLine(QStringLiteral("its links lead nowhere: there is no file to keep"));
    }
    return false;
}

void TopicStore::seed() {
    const auto data =
        m_resources.data(QStringLiteral("search-tiravue-2026-10-26"), QStringLiteral("json"));
    if (!data) {
        return;
    }
    try {
        replaceAll(importTopics(*data, QStringLiteral("Tiravue"), m_clock.now()));
        save();
    } catch (const json::DecodeError &error) {
        logLine(QStringLiteral("the sample topics could not be read: ") +
                QString::fromUtf8(error.what()));
    }
}

/// The demonstration's past ends a week before it starts, at the hour it is now.
void TopicStore::seedHistory() const {
    const auto data = m_resources.data(QStringLiteral("demo-history"), QStringLiteral("json"));
    try {
        auto reports = data ? json::decode<QList<RunReport>>(*data) : QList<RunReport>();
        const QDateTime last = m_clock.now().addDays(-7);
        const qint64 shift = reports.isEmpty() ? 0 : reports.last().date.secsTo(last);
        for (RunReport &report : reports) {
            report.date = report.date.addSecs(shift);
        }
        RunHistory(m_file).replace(std::move(reports));
    } catch (const json::DecodeError &error) {
        logLine(QStringLiteral("the demonstration's past could not be read: ") +
                QString::fromUtf8(error.what()));
    }
}

QList<RunReport> TopicStore::history() const {
    requireMainThread(subject);
    QList<RunReport> reports = RunHistory(m_file).reports();
    for (RunReport &report : reports) {
        countYields(report, [this](const QUuid &id) {
            const TopicPtr present = topic(id);
            return present ? std::optional(present->status) : std::nullopt;
        });
    }
    return reports;
}

void TopicStore::addRun(const RunReport &report) {
    RunHistory(m_file).replace(history() + QList{report});
    Q_EMIT historyChanged();
}

void TopicStore::save() {
    requireMainThread(subject);
    if (m_writer) {
        m_writer->submit(m_topics);
    }
}

void TopicStore::prepareSaves() {
    requireMainThread(subject);
    if (m_writer) {
        m_writer->prepare(m_topics);
    }
}

bool TopicStore::flush() {
    requireMainThread(subject);
    if (!m_writer || !m_writer->wait()) {
        return true;
    }
    save(); // the disk may have room again
    return !m_writer->wait();
}

std::optional<QString> TopicStore::saveError() const {
    requireMainThread(subject);
    const auto error = m_writer ? m_writer->lastOutcome() : std::error_code();
    return error ? std::optional(failureText(error)) : std::nullopt;
}

} // namespace vorle
