// The topic store and its file: where it lies, how it is loaded, when it is saved.

#include "base/French.h"
#include "base/Log.h"
#include "base/MainThread.h"
#include "base/SystemErrorText.h"
#include "core/DemoPast.h"
#include "core/EngineImport.h"
#include "core/RunHistory.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "core/TopicWriter.h"
#include "storage/DurableFile.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>

#include <cerrno>
#include <new>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

constexpr std::string_view logSubject = "vorle/TopicStore";

/// Earlier versions, which did not say what brought a topic in, ended a summary with the project's
/// name. A summary of this one is what it says.
void repairSummary(Topic &topic) {
    if (topic.origin) {
        return;
    }
    static const QRegularExpression suffix(QStringLiteral(" · [A-ZÉ][a-zéèA-Z ]+$"));
    if (topic.summary.contains(u'·')) {
        const auto match = suffix.match(topic.summary);
        if (match.hasMatch()) {
            topic.summary.remove(match.capturedStart(), match.capturedLength());
        }
    }
}

QString failureText(const std::error_code &error) {
    return French::tr("Le dernier enregistrement de tes sujets a échoué\u00A0: %1.")
        .arg(systemErrorText(error));
}

/// "39 sujets lisibles sur 40."
QString readableText(const TopicSalvage &salvage) {
    const qsizetype kept = salvage.topics.size();
    const QString pattern = kept == 1 ? French::tr("%1 sujet lisible sur %2.")
                                      : French::tr("%1 sujets lisibles sur %2.");
    return French::tr("Ton fichier de sujets est abîmé\u00A0:") + u' ' +
           pattern.arg(kept).arg(salvage.entries());
}

} // namespace

QString TopicStore::location(Kind kind) {
    if (kind == Kind::Preview) {
        return {};
    }
    // The demonstration starts afresh each time: never over a file that the user named.
    const QString named = kind == Kind::Demo ? QString() : qEnvironmentVariable("VORLE_STORE");
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                           QStringLiteral("/vorle");
    const QString own = folder + (kind == Kind::Demo ? QStringLiteral("/demo-topics.json")
                                                     : QStringLiteral("/topics.json"));
    const QString file = named.isEmpty() ? own : named;
    if (file.contains(QChar::ReplacementCharacter)) {
        // Bytes that no name of ours can carry: another file would be read, and written.
        throw std::system_error(EILSEQ, std::generic_category(), file.toStdString());
    }
    if (named.isEmpty()) {
        makeOwnFolder(folder);
    } else {
        makeFolder(QFileInfo(file).absolutePath());
    }
    return file;
}

void TopicStore::load() {
    requireMainThread(logSubject);
    if (isPreview()) {
        return;
    }
    // The topics are written where a link leads, what lies beside them where the link stands.
    const QString folder = QFileInfo(m_file).absolutePath();
    const QString target = QFileInfo(linkTarget(m_file)).absolutePath();
    removeStaleTemporaryFiles(folder);
    if (target != folder) {
        removeStaleTemporaryFiles(target);
    }
    const bool loaded = !isDemo() && readFile();
    m_writer = std::make_unique<TopicWriter>(
        m_file, m_setAside, [this](const std::error_code &error, quint64 number) {
            if (error) {
                logLine(QStringLiteral("saving the topics failed, kept for the next save: ") +
                        QString::fromStdString(error.message()));
            }
            QMetaObject::invokeMethod(
                this,
                [this, error, number] {
                    if (error) {
                        Q_EMIT saveFailed(failureText(error));
                    } else {
                        m_savedUpTo = number;
                        Q_EMIT saved();
                    }
                },
                Qt::QueuedConnection);
        });
    if (!loaded && (isDemo() || qEnvironmentVariableIsSet("VORLE_SAMPLE_DATA"))) {
        seed();
    }
}

bool TopicStore::readFile() {
    const auto bytes = readWhole(m_file);
    m_wasEmpty = bytes && bytes->isEmpty();
    if (!bytes || m_wasEmpty) {
        return false;
    }
    try {
        auto topics = json::decode<QList<Topic>>(*bytes);
        for (Topic &topic : topics) {
            repairSummary(topic);
        }
        replaceAll(std::move(topics));
        return true;
    } catch (const json::DecodeError &error) {
        logLine(QStringLiteral("the topics file could not be read: ") +
                QString::fromUtf8(error.what()));
    } catch (const std::bad_alloc &) { // says nothing of what the file holds
        throw std::system_error(ENOMEM, std::generic_category(), m_file.toStdString());
    }
    m_setAside = backupName(m_file, m_clock.now());
    m_readable = salvageTopics(*bytes);
    return false;
}

qsizetype TopicStore::repair() {
    requireMainThread(logSubject);
    if (!m_readable || m_readable->topics.isEmpty()) {
        return 0;
    }
    QList<Topic> all = std::move(std::exchange(m_readable, std::nullopt)->topics);
    const qsizetype kept = all.size();
    QSet<QUuid> ids;
    for (Topic &topic : all) {
        repairSummary(topic);
        ids.insert(topic.id);
    }
    for (const TopicPtr &topic : std::as_const(m_topics)) {
        if (!ids.contains(topic->id)) {
            all.append(*topic);
        }
    }
    replaceAll(std::move(all));
    save();
    return kept;
}

std::optional<QString> TopicStore::notice() const {
    requireMainThread(logSubject);
    if (m_wasEmpty && m_topics.isEmpty()) {
        return tr("Ton fichier de sujets était vide (0 octet). Je pars d’une liste vide\u00A0: %1")
            .arg(m_file);
    }
    if (!m_readable) {
        return std::nullopt;
    }
    const QString kept =
        tr("L’ancien fichier est gardé ici dès le premier enregistrement\u00A0: %1")
            .arg(*m_setAside);
    if (m_readable->topics.isEmpty()) {
        return tr("Tes sujets étaient illisibles. Je pars d’une liste vide.") + u' ' + kept;
    }
    return readableText(*m_readable) + u' ' + kept;
}

void TopicStore::seed() {
    QList<Topic> topics = sampleTopics();
    if (isDemo()) {
        const auto data = m_resources.data(QStringLiteral("demo-history"), QStringLiteral("json"));
        try {
            DemoPast past = demoPast(data.value_or(QByteArray()), topics, m_clock.now());
            topics = std::move(past.topics);
            RunHistory(m_file).replace(std::move(past.runs));
            ScoreProvenanceLog::replace(m_file, past.provenance);
        } catch (const json::DecodeError &error) {
            logLine(QStringLiteral("the demonstration's past could not be read: ") +
                    QString::fromUtf8(error.what()));
        }
    }
    if (!topics.isEmpty()) {
        replaceAll(std::move(topics));
        save();
    }
}

/// What the first start shows in "À trier".
QList<Topic> TopicStore::sampleTopics() const {
    const auto data =
        m_resources.data(QStringLiteral("search-tiravue-2026-10-26"), QStringLiteral("json"));
    try {
        return data ? importTopics(*data, QStringLiteral("Tiravue"), m_clock.now())
                    : QList<Topic>();
    } catch (const json::DecodeError &error) {
        logLine(QStringLiteral("the sample topics could not be read: ") +
                QString::fromUtf8(error.what()));
        return {};
    }
}

QList<RunReport> TopicStore::history() const {
    requireMainThread(logSubject);
    QList<RunReport> reports = RunHistory(m_file).reports();
    for (RunReport &report : reports) {
        countYields(report, [this](const QUuid &id) {
            const TopicPtr present = topic(id);
            return present ? std::optional(present->status) : std::nullopt;
        });
    }
    return reports;
}

void TopicStore::addRun(const RunReport &report, const QList<RunReport> &changed) {
    QList<RunReport> reports = history();
    for (const RunReport &each : changed) {
        if (const auto earlier = reportOf(reports, each.date); earlier != reports.cend()) {
            reports[earlier - reports.cbegin()] = each;
        }
    }
    RunHistory(m_file).add(reports + QList{report});
    Q_EMIT historyChanged();
}

void TopicStore::replaceRun(const RunReport &report) {
    QList<RunReport> reports = history();
    const auto earlier = reportOf(reports, report.date);
    if (earlier == reports.cend()) {
        addRun(report);
        return;
    }
    reports[earlier - reports.cbegin()] = report;
    RunHistory(m_file).add(reports);
    Q_EMIT historyChanged();
}

void TopicStore::save() {
    requireMainThread(logSubject);
    if (m_writer) {
        m_writer->submit(m_topics);
    }
}

bool TopicStore::isSaved() const {
    requireMainThread(logSubject);
    return !m_writer || m_savedUpTo == m_writer->asked();
}

void TopicStore::prepareSaves() {
    requireMainThread(logSubject);
    if (m_writer) {
        m_writer->prepare(m_topics);
    }
}

bool TopicStore::flush() {
    requireMainThread(logSubject);
    if (!m_writer || !m_writer->wait()) {
        return true;
    }
    save(); // the disk may have room again
    return !m_writer->wait();
}

std::optional<QString> TopicStore::saveError() const {
    requireMainThread(logSubject);
    const auto error = m_writer ? m_writer->lastOutcome() : std::error_code();
    return error ? std::optional(failureText(error)) : std::nullopt;
}

} // namespace vorle
