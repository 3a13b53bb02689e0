#pragma once

#include "search/capture/LinkCapture.h"

#include <QList>
#include <QObject>
#include <QUuid>

namespace vorle {

/// What is to be told of the captured links that wait, all together. Main thread; what it is given
/// outlives it.
class CaptureNotices final : public QObject {
    Q_OBJECT
public:
    enum class Kind {
        Failed,   ///< they could not be judged
        Postponed ///< they wait for another day
    };
    Q_ENUM(Kind)

    CaptureNotices(const LinkCapture &capture, const TopicStore &store, QObject *parent = nullptr);

    /// A French sentence; empty when there are none.
    QString text(Kind kind) const;

Q_SIGNALS:
    /// There is something to tell that was not told before.
    void told(vorle::CaptureNotices::Kind kind);
    /// The text of what was told is another, or empty: what was put away is not to come back.
    void changed(vorle::CaptureNotices::Kind kind);

private:
    void dropIfSettled(const QUuid &id);
    void countPostponed();
    QString failedText() const;
    QString postponedText() const;

    const LinkCapture &m_capture;
    QList<QUuid> m_failed; // the latest last
    qsizetype m_postponed = 0;
};

} // namespace vorle
