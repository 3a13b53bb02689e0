#include "app/models/settings/TransferModel.h"

#include "app/labels/Wording.h"
#include "app/transfer/TopicImport.h"
#include "app/transfer/TransferText.h"
#include "base/OnDisk.h"
#include "base/SystemErrorText.h"
#include "platform/FilePicker.h"

#include <QDir>

#include <atomic>
#include <memory>
#include <system_error>

namespace vorle {

namespace {

/// What came of the disk's part of a transfer.
struct DiskWork {
    enum class End { Done, Stopped, Silent };
    End end = End::Done;
    WrittenFiles files;
    QList<Topic> topics;
    QString problem; ///< a French sentence; "" when it went well
};

/// Has `job` done on a thread that may hang. One that is asked to stop, by `cancel`, or that gave
/// no sign of life for that long, ends where it may, and nobody waits for it.
Task<DiskWork> done(std::function<void(DiskWork &, DiskPulse &)> job,
                    std::chrono::milliseconds patience, CancelToken cancel) {
    const auto whole = [job = std::move(job)](DiskPulse &pulse) {
        DiskWork work;
        try {
            job(work, pulse);
        } catch (const TransferRefused &refusal) {
            work.problem = refusal.text();
        } catch (const Cancelled &) {
            work.end = DiskWork::End::Stopped;
        } catch (const std::system_error &error) {
            work.problem = systemRefusalText(error);
        }
        return work;
    };
    DiskWork none{.end = DiskWork::End::Silent, .files = {}, .topics = {}, .problem = {}};
    try {
        co_return (co_await onDisk(whole, patience, std::move(cancel))).value_or(none);
    } catch (const Cancelled &) {
        none.end = DiskWork::End::Stopped;
    }
    co_return none;
}

} // namespace

TransferModel::TransferModel(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)) {
    connect(&m_parts.store, &TopicStore::topicsAdded, this, &TransferModel::changed);
    connect(&m_parts.store, &TopicStore::topicsReset, this, &TransferModel::changed);
}

TransferModel::~TransferModel() { m_cancel.cancel(); }

QString TransferModel::sizeText() const {
    const qsizetype count = m_parts.store.count();
    return count == 0   ? tr("Aucun sujet pour l’instant.")
           : count == 1 ? tr("1 sujet et sa fiche, en JSON")
                        : tr("%1 et leurs fiches, en JSON").arg(countedTopics(count));
}

void TransferModel::choose(Work work, ExportFormats formats) {
    if (!m_work.isEmpty()) {
        return;
    }
    m_cancel = CancelSource();
    m_work.add(logged(run(work, {this, m_parts.files, m_parts.patience, formats, m_cancel.token()}),
                      QStringLiteral("a transfer of topics")));
}

void TransferModel::stop() { m_cancel.cancel(); }

Task<> TransferModel::run(Work work, Asked asked) {
    const QPointer<TransferModel> model = asked.model;
    co_await work(std::move(asked));
    if (model && model->m_busy) {
        model->end({}, false);
    }
}

Task<> TransferModel::writeOut(Asked asked) {
    const auto folder = co_await asked.files.folder(tr("Où exporter tes sujets"), QDir::homePath());
    if (!asked.model || !folder || asked.cancel.isCancelled()) {
        co_return;
    }
    const TopicStore &store = asked.model->m_parts.store;
    if (store.isDamaged()) {
        asked.model->end(tr("Tes sujets sont illisibles\u00A0: %1").arg(store.file()), true);
        co_return;
    }
    asked.model->begin(tr("J’exporte."));
    QList<Topic> topics;
    for (const QList<TopicPtr> all = store.topics(); const TopicPtr &topic : all) {
        topics += *topic;
    }
    const qsizetype count = topics.size();
    const auto stop = std::make_shared<std::atomic<bool>>(false);
    const auto job = [topics = std::move(topics), folder = *folder, live = store.file(),
                      formats = asked.formats, now = asked.model->m_parts.clock.now(),
                      stop](DiskWork &work, DiskPulse &pulse) {
        work.files = exportTopics(topics, folder, live, formats, now, [&pulse, &stop] {
            pulse.beat();
            return *stop || pulse.isStopped();
        });
    };
    // One that is stopped is waited for to its next file: two must not write in one folder, nor
    // the program end with a file half written beside it.
    const auto registration = asked.cancel.onCancel([stop] { *stop = true; });
    const DiskWork work = co_await done(job, asked.patience, {});
    if (!asked.model) {
        co_return;
    }
    if (work.end == DiskWork::End::Silent) {
        asked.model->end(tr("Ce dossier ne répond pas\u00A0: %1").arg(*folder), true);
    } else if (work.end == DiskWork::End::Stopped) {
        asked.model->end(tr("Arrêté. Ce qui est écrit reste."), false);
    } else if (!work.problem.isEmpty()) {
        asked.model->end(work.problem, true);
    } else {
        asked.model->end(exportText(count, *folder, work.files), false);
    }
}

Task<> TransferModel::readIn(Asked asked) {
    const auto file = co_await asked.files.file(tr("Quels sujets importer"),
                                                {tr("Sujets"), {QStringLiteral("*.json")}});
    if (!asked.model || !file || asked.cancel.isCancelled()) {
        co_return;
    }
    asked.model->begin(tr("Je lis le fichier."));
    const auto job = [file = *file](DiskWork &work, DiskPulse &) {
        work.topics = readTopicArchive(file);
    };
    // It reads at a stretch: a large file gives no sign of life.
    DiskWork work = co_await done(job, 3 * asked.patience, asked.cancel);
    if (!asked.model) {
        co_return;
    }
    TransferModel &model = *asked.model;
    if (work.end == DiskWork::End::Silent) {
        model.end(tr("Ce fichier ne répond pas\u00A0: %1").arg(*file), true);
    } else if (!work.problem.isEmpty()) {
        model.end(work.problem, true);
    } else if (work.end == DiskWork::End::Stopped || asked.cancel.isCancelled()) {
        model.end(tr("Arrêté\u00A0: rien n’a changé."), false);
    } else if (model.m_parts.store.isDamaged()) {
        model.end(tr("Tes sujets sont illisibles\u00A0: %1").arg(model.m_parts.store.file()), true);
    } else {
        const ImportOutcome outcome = importTopicsInto(model.m_parts.store, std::move(work.topics));
        if (model.m_parts.readOn) {
            model.m_parts.readOn();
        }
        model.end(importText(outcome), false); // a save that fails is told by the store
    }
}

void TransferModel::begin(const QString &word) {
    m_busy = true;
    m_failed = false;
    m_word = word;
    Q_EMIT changed();
}

void TransferModel::end(const QString &word, bool failed) {
    m_busy = false;
    m_failed = failed;
    m_word = shownWords(word);
    Q_EMIT changed();
}

} // namespace vorle
