#include "app/window/desktop/CaptureNotices.h"

#include "core/NumberText.h"

#include <utility>

namespace vorle {

CaptureNotices::CaptureNotices(const LinkCapture &capture, const TopicStore &store, QObject *parent)
    : QObject(parent), m_capture(capture) {
    connect(&capture, &LinkCapture::failed, this, [this](const QUuid &id) {
        m_failed.removeOne(id);
        m_failed.append(id);
        Q_EMIT told(Kind::Failed);
    });
    connect(&capture, &LinkCapture::stateChanged, this, &CaptureNotices::dropIfSettled);
    connect(&capture, &LinkCapture::postponedChanged, this, &CaptureNotices::countPostponed);
    // One that was decided on meanwhile waits no longer.
    connect(&store, &TopicStore::topicChanged, this, &CaptureNotices::dropIfSettled);
    connect(&store, &TopicStore::topicsReset, this, [this] {
        for (const QUuid &id : QList<QUuid>(m_failed)) {
            dropIfSettled(id);
        }
    });
}

QString CaptureNotices::text(Kind kind) const {
    return kind == Kind::Failed ? failedText() : postponedText();
}

void CaptureNotices::dropIfSettled(const QUuid &id) {
    if (m_failed.contains(id) && m_capture.state(id) != LinkCapture::State::Failed) {
        m_failed.removeOne(id);
        Q_EMIT changed(Kind::Failed);
    }
}

void CaptureNotices::countPostponed() {
    const qsizetype before = std::exchange(m_postponed, m_capture.postponed());
    if (before == 0 && m_postponed > 0) {
        Q_EMIT told(Kind::Postponed);
    } else if (before != m_postponed) {
        Q_EMIT changed(Kind::Postponed);
    }
}

/// The latest reason stands for all: mostly it is the same one.
QString CaptureNotices::failedText() const {
    if (m_failed.isEmpty()) {
        return {};
    }
    const QString why = m_capture.failureText(m_failed.last());
    return m_failed.size() == 1
               ? tr("Un lien que tu as ajouté attend encore\u00A0: %1 Tu peux réessayer depuis sa "
                    "carte.")
                     .arg(why)
               : tr("%1 liens que tu as ajoutés attendent encore\u00A0: %2 Tu peux réessayer "
                    "depuis leurs cartes.")
                     .arg(numberText(m_failed.size()), why);
}

QString CaptureNotices::postponedText() const {
    const QString pace = tr("J’en lis %1 par jour.").arg(numberText(DailyAllowance::linksADay));
    return m_postponed == 0 ? QString()
           : m_postponed == 1
               ? tr("Un lien déposé attend son tour. %1").arg(pace)
               : tr("%1 liens déposés attendent leur tour. %2").arg(numberText(m_postponed), pace);
}

} // namespace vorle
