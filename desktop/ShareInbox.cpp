#include "desktop/ShareInbox.h"

#include "base/Log.h"
#include "base/OnDisk.h"
#include "platform/DropSignal.h"

#include <algorithm>
#include <utility>

namespace vorle {

ShareInbox::ShareInbox(QString folder, Take take, DropSignal *signal, Pace pace, QObject *parent)
    : QObject(parent)
    , m_folder(folder)
    , m_path(std::move(folder))
    , m_take(std::move(take))
    , m_signal(signal)
    , m_pace(pace) {
    m_later.setSingleShot(true);
    connect(&m_later, &QTimer::timeout, this, &ShareInbox::look);
    if (m_signal != nullptr) {
        m_signal->follow([this] { look(); });
    }
    look();
}

ShareInbox::~ShareInbox() {
    if (m_signal != nullptr) {
        m_signal->follow({});
    }
}

void ShareInbox::look() {
    if (m_stopped) {
        return;
    }
    m_lookAgain = true;
    if (!m_draining) {
        m_work.add(logged(drain(), QStringLiteral("dropped links")));
    }
}

Task<> ShareInbox::stopped() {
    m_stopped = true;
    m_later.stop();
    m_watch.reset();
    co_await m_work.join();
}

Task<> ShareInbox::drain() {
    m_draining = true;
    bool well = true;
    while (std::exchange(m_lookAgain, false) && !m_stopped) {
        bool more = true;
        while (more && well && !m_stopped) {
            const auto went = co_await takeSome();
            well = went.has_value();
            more = went.value_or(false);
        }
    }
    co_await setAsideSettled();
    m_draining = false;
    if (m_stopped) {
        co_return;
    }
    if (m_lookAgain && well) {
        look();
    } else if (!well || !m_unsure.isEmpty()) {
        m_later.start(well ? m_pace.settled : m_pace.again);
    }
}

/// Whether there is more; nothing when it is to be tried again later.
Task<std::optional<bool>> ShareInbox::takeSome() {
    const bool open = std::exchange(m_opened, true);
    const auto listing = co_await onDisk(
        [folder = m_folder, known = known(), open]() -> std::optional<InboxFolder::Listing> {
            try {
                if (!open) {
                    folder.open();
                }
                return folder.read(batch, known);
            } catch (const std::exception &error) {
                logLine(QStringLiteral("the inbox cannot be opened: ") +
                        QString::fromLocal8Bit(error.what()));
                return std::nullopt;
            }
        });
    if (!listing || !*listing) {
        m_opened = false;
        co_return std::nullopt;
    }
    if (!m_watch && !m_stopped) {
        // It tells once it stands: what came between the listing and this is seen then.
        m_watch = std::make_unique<FileWatch>(m_path);
        connect(m_watch.get(), &FileWatch::changed, this, &ShareInbox::look);
    }
    QList<InboxFolder::Drop> drops;
    QList<Item> items;
    for (const InboxFolder::Drop &drop : std::as_const((*listing)->drops)) {
        if (drop.item) {
            drops += drop;
            items += *drop.item;
        } else {
            note(drop);
        }
    }
    if (drops.isEmpty()) {
        co_return (*listing)->more;
    }
    const auto taken = co_await m_take(items);
    if (!taken) {
        co_return std::nullopt;
    }
    QList<InboxFolder::Drop> kept;
    QList<InboxFolder::Drop> aside;
    for (qsizetype i = 0; i < drops.size(); ++i) {
        (taken->value(i) == Taken::Kept ? kept : aside) += drops[i];
    }
    co_await leave(kept, aside);
    co_return (*listing)->more;
}

/// Those of which all is done go from the folder.
Task<> ShareInbox::leave(QList<InboxFolder::Drop> kept, QList<InboxFolder::Drop> aside) {
    using Left = InboxFolder::Left;
    struct Outcome {
        QList<InboxFolder::Drop> stuck;
        qsizetype aside = 0;
    };
    const auto outcome = co_await onDisk([folder = m_folder, kept, aside] {
        Outcome found;
        for (const InboxFolder::Drop &drop : kept) {
            if (folder.remove(drop) == Left::Refused) {
                found.stuck += drop;
            }
        }
        for (const InboxFolder::Drop &drop : aside) {
            const Left left = folder.setAside(drop);
            found.aside += left == Left::Done ? 1 : 0;
            if (left == Left::Refused) {
                found.stuck += drop;
            }
        }
        return found;
    });
    // A disk that does not answer: those that are still there have been dealt with all the same.
    for (const InboxFolder::Drop &drop : outcome ? outcome->stuck : kept + aside) {
        m_stuck.insert(drop.name, drop.state);
    }
    for (const InboxFolder::Drop &drop : kept + aside) {
        m_unsure.remove(drop.name);
    }
    if (outcome && outcome->aside > 0) {
        Q_EMIT wasSetAside(outcome->aside);
    }
}

void ShareInbox::note(const InboxFolder::Drop &drop) {
    Unsure unsure{drop, {}};
    unsure.since.start();
    m_unsure.insert(drop.name, unsure);
}

/// Those that nobody wrote into for a while hold no link.
Task<> ShareInbox::setAsideSettled() {
    QList<InboxFolder::Drop> settled;
    for (const Unsure &unsure : std::as_const(m_unsure)) {
        if (std::chrono::milliseconds(unsure.since.elapsed()) >= m_pace.settled) {
            settled += unsure.drop;
        }
    }
    if (!settled.isEmpty()) {
        co_await leave({}, settled);
    }
}

QHash<QByteArray, InboxFolder::State> ShareInbox::known() const {
    QHash<QByteArray, InboxFolder::State> states = m_stuck;
    for (const Unsure &unsure : std::as_const(m_unsure)) {
        states.insert(unsure.drop.name, unsure.drop.state);
    }
    return states;
}

} // namespace vorle
