#include "app/window/desktop/SharedLinks.h"

#include "core/NumberText.h"
#include "core/TopicsSaved.h"

#include <utility>

namespace vorle {

namespace {

CapturedLink linkOf(const ShareInbox::Item &item) {
    return {.url = item.url,
            .title = item.title.value_or(QString()),
            .note = item.note.value_or(QString()),
            .project = item.project,
            .pageText = item.pageText.value_or(QString()),
            .sharedAt = item.sharedAt.value_or(QDateTime())};
}

} // namespace

SharedLinks::SharedLinks(Parts parts, ShareInbox::Pace pace, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_names(m_parts.projectNames, m_parts.preferences)
    , m_inbox(
          m_parts.inbox, [this](QList<ShareInbox::Item> items) { return take(std::move(items)); },
          m_parts.signal, pace) {
    connect(&m_inbox, &ShareInbox::wasSetAside, this, [this](qsizetype files) {
        const QString folder = m_inbox.asideFolder();
        Q_EMIT told(files == 1 ? tr("Un fichier déposé ne contient aucun lien. Je le garde "
                                    "ici\u00A0: %1")
                                     .arg(folder)
                               : tr("%1 fichiers déposés ne contiennent aucun lien. Je les garde "
                                    "ici\u00A0: %2")
                                     .arg(numberText(files), folder));
    });
}

SharedLinks::~SharedLinks() = default;

Task<> SharedLinks::stopped() {
    co_await m_inbox.stopped();
    co_await m_names.written();
}

Task<std::optional<QList<ShareInbox::Taken>>> SharedLinks::take(QList<ShareInbox::Item> items) {
    QList<CapturedLink> links;
    for (const ShareInbox::Item &item : std::as_const(items)) {
        links += linkOf(item);
    }
    QList<ShareInbox::Taken> taken;
    for (const IntakeResult &result : m_parts.capture.takeDropped(links)) {
        taken += result.kind == IntakeResult::Kind::NoLink ? ShareInbox::Taken::NoLink
                                                           : ShareInbox::Taken::Kept;
    }
    co_return co_await topicsSaved(m_parts.store) ? std::optional(taken) : std::nullopt;
}

} // namespace vorle
