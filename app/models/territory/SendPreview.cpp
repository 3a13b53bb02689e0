#include "app/models/territory/SendPreview.h"

#include "app/models/ListParts.h"
#include "core/NumberText.h"
#include "core/TopicStore.h"

namespace vorle {

namespace {

constexpr std::chrono::milliseconds pause{500};

QString sizeText(qsizetype bytes) {
    constexpr qsizetype kilo = 1'000;
    return SendPreview::tr("%1 ko").arg(
        numberText(std::max<qsizetype>(1, (bytes + kilo / 2) / kilo)));
}

} // namespace

SendPreview::SendPreview(const Parts &parts, QObject *parent) : QObject(parent), m_parts(parts) {
    m_later.setSingleShot(true);
    m_later.setInterval(pause);
    connect(&m_later, &QTimer::timeout, this,
            [this] { m_work.add(logged(work(this), QStringLiteral("the preview of a run"))); });
    const auto followed = [this] {
        if (m_active) {
            m_later.start();
        }
    };
    connect(&parts.preferences, &Preferences::changed, this, followed);
    connect(&parts.store, &TopicStore::topicChanged, this, followed);
    connect(&parts.store, &TopicStore::topicsAdded, this, followed);
    connect(&parts.store, &TopicStore::topicsReset, this, followed);
}

SendPreview::~SendPreview() { m_cancel.cancel(); }

Task<> SendPreview::stopped() {
    m_later.stop();
    m_cancel.cancel();
    co_await m_work.join();
}

void SendPreview::setActive(bool active) {
    m_active = active;
    if (active) {
        m_later.start();
    } else {
        m_later.stop();
        m_preview = {}; // it may be large
    }
}

Task<> SendPreview::work(QPointer<SendPreview> self) {
    if (self->m_working) {
        self->m_stale = true;
        co_return;
    }
    self->m_working = true;
    do {
        self->m_stale = false;
        RunPreview preview;
        try {
            preview =
                co_await previewRun({self->m_parts.preferences, self->m_parts.store,
                                     self->m_parts.asker, self->m_parts.clock,
                                     [apps = self->m_parts.apps] {
                                         return apps ? discovery::namesOf(apps()) : QStringList();
                                     },
                                     self->m_cancel.token()});
        } catch (const Cancelled &) {
            co_return; // it goes
        } catch (const std::exception &error) {
            preview.refusal = QString::fromUtf8(error.what());
        }
        if (!self) {
            co_return;
        }
        if (self->m_active) {
            self->m_preview = std::move(preview);
            Q_EMIT self->changed();
        }
    } while (self && self->m_stale && self->m_active);
    if (self) {
        self->m_working = false;
    }
}

QVariantList SendPreview::questions() const {
    QList<SentQuestion> questions;
    for (const PromptPreview &each : m_preview.prompts) {
        questions += {shownLine(each.scope), sizeText(utf8Size(each.prompt)),
                      withoutHidden(each.prompt.trimmed())};
    }
    return variants(questions);
}

QString SendPreview::size() const {
    return m_preview.prompts.isEmpty() ? QString() : sizeText(m_preview.bytes());
}

QString SendPreview::note() const {
    return shownWords(m_preview.refusal.isEmpty() ? m_preview.warnings.join(u' ')
                                                  : m_preview.refusal);
}

} // namespace vorle
