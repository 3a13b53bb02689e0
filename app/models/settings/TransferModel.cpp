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

/// What the thread that works on the disk tells the one that waits; whoever goes last frees it.
struct DiskWork {
    std::atomic<bool> stopped = false;
    std::atomic<unsigned> steps = 0; ///< signs of life
    std::atomic<bool> ended = false;
    WrittenFiles files;
    QList<Topic> topics;
    QString problem; ///< a French sentence; "" when it went well
    bool givenUp = false;
};

/// Has `job` done on a thread that may hang. False when it gave no sign of life for that long: then
/// it is told to stop, and left.
Task<bool> endsOrAnswers(std::shared_ptr<DiskWork> work, std::function<void(DiskWork &)> job,
                         std::chrono::milliseconds patience, CancelToken cancel) {
    constexpr std::chrono::milliseconds look(200);
    const auto stop = cancel.onCancel([work] { work->stopped = true; });
    const auto whole = [work, job = std::move(job)] {
        try {
            job(*work);
        } catch (const TransferRefused &refusal) {
            work->problem = refusal.text();
        } catch (const Cancelled &) {
            work->givenUp = true;
        } catch (const std::system_error &error) {
            work->problem = systemRefusalText(error);
        }
        work->ended = true;
    };
    bool ended = co_await endsOnDisk(whole, patience);
    unsigned seen = work->steps;
    auto silence = seen > 0 ? std::chrono::milliseconds(0) : patience;
    while (!ended && !work->ended && silence < patience) {
        co_await sleepFor(look);
        silence = work->steps != seen ? std::chrono::milliseconds(0) : silence + look;
        seen = work->steps;
    }
    ended = ended || work->ended;
    work->stopped = !ended;
    co_return ended;
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
    for (const TopicPtr &topic : store.topics()) {
        topics += *topic;
    }
    const qsizetype count = topics.size();
    const auto work = std::make_shared<DiskWork>();
    const auto job = [topics = std::move(topics), folder = *folder, live = store.file(),
                      formats = asked.formats,
                      now = asked.model->m_parts.clock.now()](DiskWork &on) {
        on.files = exportTopics(topics, folder, live, formats, now, [&on] {
            ++on.steps;
            return on.stopped.load();
        });
    };
    const bool answered = co_await endsOrAnswers(work, job, asked.patience, asked.cancel);
    if (!asked.model) {
        co_return;
    }
    if (!answered) {
        asked.model->end(tr("Ce dossier ne répond pas\u00A0: %1").arg(*folder), true);
    } else if (work->givenUp) {
        asked.model->end(tr("Arrêté. Ce qui est écrit reste."), false);
    } else if (!work->problem.isEmpty()) {
        asked.model->end(work->problem, true);
    } else {
        asked.model->end(exportText(count, *folder, work->files), false);
    }
}

Task<> TransferModel::readIn(Asked asked) {
    const auto file = co_await asked.files.file(tr("Quels sujets importer"),
                                                {tr("Sujets"), {QStringLiteral("*.json")}});
    if (!asked.model || !file || asked.cancel.isCancelled()) {
        co_return;
    }
    asked.model->begin(tr("Je lis le fichier."));
    const auto work = std::make_shared<DiskWork>();
    const auto job = [file = *file](DiskWork &on) { on.topics = readTopicArchive(file); };
    // It reads at a stretch: a large file gives no sign of life.
    const bool answered = co_await endsOrAnswers(work, job, 3 * asked.patience, asked.cancel);
    if (!asked.model) {
        co_return;
    }
    TransferModel &model = *asked.model;
    if (!answered) {
        model.end(tr("Ce fichier ne répond pas\u00A0: %1").arg(*file), true);
    } else if (!work->problem.isEmpty()) {
        model.end(work->problem, true);
    } else if (asked.cancel.isCancelled()) {
        model.end(tr("Arrêté\u00A0: rien n’a changé."), false);
    } else if (model.m_parts.store.isDamaged()) {
        model.end(tr("Tes sujets sont illisibles\u00A0: %1").arg(model.m_parts.store.file()), true);
    } else {
        const ImportOutcome outcome =
            importTopicsInto(model.m_parts.store, std::move(work->topics));
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
