#pragma once

#include "app/transfer/TopicArchive.h"
#include "base/Async.h"
#include "base/Cancellation.h"
#include "base/Clock.h"
#include "core/TopicStore.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>

namespace vorle {

class FilePicker;

/// Topics that leave and come back by the window: as an archive, as notes, out of an archive. The
/// disk is asked on threads that may hang: a folder that does not answer is told, and left. Main
/// thread; what it is given outlives it, the picker every question under way.
///
/// It may go while one is under way, and nobody has to wait: an import then changes nothing, and
/// what an export wrote by then stands, each file whole.
class TransferModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    /// One is under way; not while the person still says where.
    Q_PROPERTY(bool busy READ busy NOTIFY changed FINAL)
    /// What the last one came to, in a sentence; "" before.
    Q_PROPERTY(QString word READ word NOTIFY changed FINAL)
    Q_PROPERTY(bool failed READ failed NOTIFY changed FINAL)
    /// What there is to take along: "428 sujets et leurs fiches, en JSON".
    Q_PROPERTY(QString sizeText READ sizeText NOTIFY changed FINAL)

public:
    struct Parts {
        TopicStore &store;
        FilePicker &files;
        const Clock &clock;
        /// Has links that came in and were never read be read; may be empty.
        std::function<void()> readOn = {};
        /// How long the disk may take without a sign of life.
        std::chrono::milliseconds patience = std::chrono::seconds(10);
    };
    explicit TransferModel(Parts parts, QObject *parent = nullptr);
    ~TransferModel() override;

    /// Each asks where, then works in the background; nothing while one is under way.
    Q_INVOKABLE void exportJson() { choose(&TransferModel::writeOut, {.markdown = false}); }
    Q_INVOKABLE void exportNotes() { choose(&TransferModel::writeOut, {.json = false}); }
    Q_INVOKABLE void importFile() { choose(&TransferModel::readIn, {}); }
    /// Gives up on the one under way, as if this went.
    Q_INVOKABLE void stop();

    bool busy() const { return m_busy; }
    QString word() const { return m_word; }
    bool failed() const { return m_failed; }
    QString sizeText() const;

Q_SIGNALS:
    void changed();

private:
    /// What a task works with once the window may be gone.
    struct Asked {
        QPointer<TransferModel> model;
        FilePicker &files;
        std::chrono::milliseconds patience;
        ExportFormats formats;
        CancelToken cancel;
    };
    using Work = Task<> (*)(Asked asked);

    void choose(Work work, ExportFormats formats);
    static Task<> run(Work work, Asked asked);
    static Task<> writeOut(Asked asked);
    static Task<> readIn(Asked asked);
    void begin(const QString &word);
    void end(const QString &word, bool failed);

    Parts m_parts;
    CancelSource m_cancel;
    TaskGroup m_work;
    bool m_busy = false;
    bool m_failed = false;
    QString m_word;
};

} // namespace vorle
