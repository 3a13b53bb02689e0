#include "app/window/desktop/SharedLinks.h"

#include "app/labels/Wording.h"
#include "base/SystemErrorText.h"
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
    , m_inbox({.folder = m_parts.inbox,
               .keeper = {.mayTake = [this] { return !m_parts.store.isDamaged(); },
                          .take = [this](const auto &items) { return take(items); },
                          .saved = [this] { return topicsSaved(m_parts.store); }},
               .signal = m_parts.signal,
               .topicsFile = m_parts.store.file()},
              pace) {
    connect(&m_inbox, &ShareInbox::wasSetAside, this, &SharedLinks::tellOfFiles);
    connect(&m_inbox, &ShareInbox::cannotRead, this, [this](const QString &name) {
        Q_EMIT told(
            tr("Un fichier déposé ne se laisse pas lire. Il reste ici, et je réessaierai\u00A0: "
               "%1/%2")
                .arg(m_parts.inbox, shownWords(name)));
    });
    connect(&m_inbox, &ShareInbox::folderRefused, this, [this](const std::error_code &why) {
        Q_EMIT told(tr("Je n’arrive pas à lire le dossier des liens déposés (%1)\u00A0: %2")
                        .arg(systemErrorText(why), m_parts.inbox));
    });
    connect(&m_inbox, &ShareInbox::heldBack, this, [this] {
        if (!std::exchange(m_toldOfDamage, true)) {
            Q_EMIT told(tr("Des liens déposés attendent. Je les prendrai quand tes sujets seront "
                           "de nouveau lisibles."));
        }
    });
    // Repaired, or begun anew: what was held back is taken in.
    const auto lookAgain = [this] {
        if (std::exchange(m_toldOfDamage, false)) {
            m_inbox.look();
        }
    };
    connect(&m_parts.store, &TopicStore::topicsReset, this, lookAgain);
    connect(&m_parts.store, &TopicStore::topicsAdded, this, lookAgain);
}

SharedLinks::~SharedLinks() = default;

Task<> SharedLinks::stopped() {
    co_await m_inbox.stopped();
    co_await m_names.written();
}

void SharedLinks::tellOfFiles(qsizetype noLinks, qsizetype tooLarge) {
    QStringList sentences;
    if (noLinks > 0) {
        sentences +=
            noLinks == 1
                ? tr("Un fichier déposé ne contient aucun lien.")
                : tr("%1 fichiers déposés ne contiennent aucun lien.").arg(numberText(noLinks));
    }
    if (tooLarge > 0) {
        const qint64 most = InboxFolder::maxBytes >> 20;
        sentences += tooLarge == 1
                         ? tr("Un fichier déposé est trop lourd pour un lien (plus de %1\u00A0Mo).")
                               .arg(most)
                         : tr("%1 fichiers déposés sont trop lourds pour des liens (plus "
                              "de %2\u00A0Mo).")
                               .arg(numberText(tooLarge))
                               .arg(most);
    }
    const QString folder = m_inbox.asideFolder();
    sentences += noLinks + tooLarge == 1 ? tr("Je le garde ici\u00A0: %1").arg(folder)
                                         : tr("Je les garde ici\u00A0: %1").arg(folder);
    Q_EMIT told(sentences.join(u' '));
}

QList<ShareInbox::Taken> SharedLinks::take(const QList<ShareInbox::Item> &items) {
    QList<CapturedLink> links;
    for (const ShareInbox::Item &item : items) {
        links += linkOf(item);
    }
    QList<ShareInbox::Taken> taken;
    for (const IntakeResult &result : m_parts.capture.takeDropped(links)) {
        taken += result.kind == IntakeResult::Kind::NoLink ? ShareInbox::Taken::NoLink
                                                           : ShareInbox::Taken::Kept;
    }
    return taken;
}

} // namespace vorle
