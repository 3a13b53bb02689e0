#pragma once

#include "app/models/BadgeLook.h"
#include "base/Async.h"
#include "base/Cancellation.h"
#include "judging/JudgeBench.h"

#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vorle {

/// One sample of the bench: what an expert gave it, and what the judge did.
struct BenchRow {
    Q_GADGET
    QML_VALUE_TYPE(benchRow)
    Q_PROPERTY(QString title MEMBER title FINAL)
    Q_PROPERTY(QString expected MEMBER expected FINAL) ///< "attendu 7"
    Q_PROPERTY(QString text MEMBER text FINAL)         ///< in a sentence, what the judge says of it
    Q_PROPERTY(bool judged MEMBER judged FINAL)
    Q_PROPERTY(vorle::BadgeLook look MEMBER look FINAL) ///< of the judged score

public:
    QString title;
    QString expected;
    QString text;
    bool judged = false;
    BadgeLook look;

    bool operator==(const BenchRow &) const = default;
};

/// The bench preview: a few samples that an expert graded, judged by the present instruction when
/// the user asks for it. It opens no topics. Main thread; what it is given outlives it.
///
/// Who quits awaits `stopped()` before the asker goes.
class BenchPreview final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT FINAL)
    Q_PROPERTY(QString leaveText READ leaveText CONSTANT FINAL)
    /// "2 appels à ton IA"
    Q_PROPERTY(QString costText READ costText CONSTANT FINAL)
    Q_PROPERTY(bool running READ running NOTIFY changed FINAL)
    /// How it stands or what it came to, in a sentence; "" before.
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed FINAL)
    /// Whether that sentence tells of a failure.
    Q_PROPERTY(bool failed READ failed NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList rows READ rows NOTIFY changed FINAL) ///< of BenchRow

public:
    BenchPreview(Asker &asker, QObject *parent = nullptr);
    ~BenchPreview() override;

    /// Has the samples judged; does nothing while it does.
    Q_INVOKABLE void start();
    Q_INVOKABLE void stop();
    /// Stops it, and waits for its end.
    Task<> stopped();

    static QString title() { return previewTitle(); }
    static QString subtitle() { return previewSubtitle(); }
    static QString leaveText() { return leavePreviewText(); }
    QString costText() const;
    bool running() const { return m_running; }
    QString statusText() const { return m_status; }
    bool failed() const { return m_failed; }
    QVariantList rows() const { return m_rows; }

Q_SIGNALS:
    void changed();

private:
    static Task<> judge(QPointer<BenchPreview> self, Asker &asker, Bench bench, CancelToken cancel);
    void show(const JudgeBench::Outcome &outcome);
    void end(const QString &status, bool failed);

    Asker &m_asker;
    std::optional<Bench> m_bench; ///< nothing when the program's own are missing
    CancelSource m_cancel;
    TaskGroup m_work;
    bool m_running = false;
    bool m_failed = false;
    QString m_status;
    QVariantList m_rows;
};

} // namespace vorle
