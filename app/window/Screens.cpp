#include "app/window/Screens.h"

#include "app/labels/Wording.h"
#include "core/TopicsSaved.h"
#include "platform/FileReveal.h"
#include "platform/Pasteboard.h"

namespace vorle {

Screens::Screens(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_captureShortcut(m_parts.preferences, m_parts.hotKey, m_parts.keys) {}

Screens::~Screens() = default;

SettingsPages *Screens::settingsPages() {
    if (!m_settingsPages) {
        m_settingsPages = std::make_unique<SettingsPages>(m_parts.preferences, m_parts.clock);
    }
    return m_settingsPages.get();
}

BenchPreview *Screens::bench() {
    if (!m_bench) {
        m_bench = std::make_unique<BenchPreview>(m_parts.asker);
    }
    return m_bench.get();
}

TransferModel *Screens::transfer() {
    if (!m_transfer) {
        m_transfer = std::make_unique<TransferModel>(
            TransferModel::Parts{m_parts.store, m_parts.files, m_parts.clock, m_parts.readOn});
    }
    return m_transfer.get();
}

DesktopSettings *Screens::desktop() {
    if (!m_desktop) {
        m_desktop =
            std::make_unique<DesktopSettings>(m_parts.notifier, m_parts.login, m_parts.hasMenuBar);
    }
    return m_desktop.get();
}

FeedbackModel *Screens::feedback() {
    if (!m_feedback) {
        m_feedback = std::make_unique<FeedbackModel>(FeedbackModel::Parts{
            m_parts.mail, m_parts.files, m_parts.pasteboard, m_parts.feedbackLine});
        connect(m_feedback.get(), &FeedbackModel::said, this, &Screens::said);
    }
    return m_feedback.get();
}

UpdateModel *Screens::updates() {
    if (!m_updates) {
        m_updates = std::make_unique<UpdateModel>(m_parts.updater);
    }
    return m_updates.get();
}

QString Screens::topicsPath() const { return shownPath(m_parts.store.file()); }

QString Screens::revealLabel() const { return m_parts.reveal.label(); }

void Screens::revealTopics() {
    m_work.add(logged(showFile(this), QStringLiteral("showing the topics file")));
}

Task<> Screens::showFile(QPointer<Screens> self) {
    co_await topicsSaved(self->m_parts.store); // so that it is there
    if (self && !self->m_parts.reveal.reveal(self->m_parts.store.file())) {
        Q_EMIT self->said(tr("Je n’ai pas pu ouvrir ce dossier."));
    }
}

void Screens::copyDiagnostics() {
    m_parts.pasteboard.replace(m_parts.diagnosticText());
    Q_EMIT said(tr("Diagnostics copiés\u00A0: colle-les où tu veux."));
}

QString Screens::underWay() const {
    if (m_transfer && m_transfer->busy()) {
        return tr("Un export ou un import est en cours");
    }
    if (m_bench && m_bench->running()) {
        return tr("L’aperçu du jugement est en cours");
    }
    const bool hasFeedback = m_feedback && (!m_feedback->text().trimmed().isEmpty() ||
                                            !m_feedback->pictures().isEmpty());
    return hasFeedback ? tr("Ton retour n’est pas encore envoyé") : QString();
}

Task<> Screens::stopped() {
    if (m_transfer) {
        m_transfer->stop();
    }
    if (m_bench) {
        co_await m_bench->stopped();
    }
    co_await m_work.join();
}

} // namespace vorle
