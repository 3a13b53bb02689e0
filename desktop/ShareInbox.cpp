#include "desktop/ShareInbox.h"

#include "base/Log.h"
#include "base/OnDisk.h"
#include "platform/DropSignal.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

/// The folder as it was looked at, or what kept it from being read.
struct Looked {
    std::optional<InboxFolder::Listing> listing;
    std::error_code why = std::make_error_code(std::errc::timed_out);
};

} // namespace

ShareInbox::ShareInbox(Parts parts, Pace pace, QObject *parent)
    : QObject(parent)
    , m_folder(parts.folder)
    , m_path(parts.folder)
    , m_stuckFile(parts.topicsFile)
    , m_keeper(std::move(parts.keeper))
    , m_signal(parts.signal)
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
    co_await loadStuck();
    bool well = co_await finishHanded();
    while (well && std::exchange(m_lookAgain, false) && !m_stopped) {
        Went went = Went::More;
        while (went == Went::More && !m_stopped) {
            went = co_await takeSome();
        }
        well = went != Went::Badly;
    }
    co_await retryStuck();
    co_await setAsideSettled();
    m_draining = false;
    if (m_stopped) {
        co_return;
    }
    if (m_lookAgain && well) {
        look();
    } else {
        lookLater(well);
    }
}

Task<> ShareInbox::loadStuck() {
    if (!m_keptStuck) {
        const auto kept = co_await onDisk([file = m_stuckFile] { return file.load(); });
        m_keptStuck = kept.value_or(StuckDrops::Drops());
        m_stuck = *m_keptStuck;
    }
}

/// Those that are done with and did not leave are asked to once more, now and then.
Task<> ShareInbox::retryStuck() {
    if (m_stuck.isEmpty() || !m_stuckAgain.hasExpired()) {
        co_return;
    }
    m_stuckAgain.setRemainingTime(m_pace.again);
    QList<InboxFolder::Drop> kept;
    QList<InboxFolder::Drop> aside;
    for (auto each = m_stuck.cbegin(); each != m_stuck.cend(); ++each) {
        (each->goesAside ? aside : kept) += {each.key(), each->state};
    }
    m_stuck.clear();
    co_await leave(kept, aside);
}

Task<std::optional<InboxFolder::Listing>> ShareInbox::listing() {
    const bool open = std::exchange(m_opened, true);
    // What may not be taken in is not read either, but to see whether there is any.
    const qsizetype most = m_keeper.mayTake() ? batch : 1;
    auto looked =
        co_await onDisk([folder = m_folder, known = known(), open, most](DiskPulse &pulse) {
            Looked seen;
            try {
                if (!open) {
                    folder.open();
                }
                seen.listing = folder.read(most, known, pulse);
            } catch (const std::system_error &error) {
                seen.why = error.code();
            } catch (const std::exception &) {
                seen.why = std::make_error_code(std::errc::not_enough_memory);
            }
            return seen;
        });
    if (looked && looked->listing) {
        m_refusals = 0;
        co_return std::move(looked->listing);
    }
    m_opened = false;
    const std::error_code why = looked.value_or(Looked()).why;
    if (++m_refusals == 1) {
        logLine(QStringLiteral("the inbox cannot be read: ") +
                QString::fromStdString(why.message()));
    } else if (m_refusals == 2) {
        Q_EMIT folderRefused(why);
    }
    co_return std::nullopt;
}

Task<ShareInbox::Went> ShareInbox::takeSome() {
    const auto listing = co_await this->listing();
    if (!listing) {
        co_return Went::Badly;
    }
    if (!m_watch && !m_stopped) {
        // It tells once it stands: what came between the listing and this is seen then.
        m_watch = std::make_unique<FileWatch>(m_path);
        connect(m_watch.get(), &FileWatch::changed, this, &ShareInbox::look);
    }
    if (!m_keeper.mayTake()) {
        if (!listing->drops.isEmpty()) {
            Q_EMIT heldBack();
        }
        co_return Went::Done;
    }
    for (const QByteArray &name : listing->gone) {
        forget(name);
        m_stuck.remove(name);
    }
    QList<InboxFolder::Drop> fresh;
    QList<Item> items;
    for (const InboxFolder::Drop &drop : listing->drops) {
        if (drop.content == InboxFolder::Content::Link) {
            forget(drop.name);
            fresh += drop;
            items += drop.item;
        } else if (drop.content == InboxFolder::Content::Unread) {
            noteUnread(drop);
        } else {
            note(drop);
        }
    }
    const QList<Taken> taken = items.isEmpty() ? QList<Taken>() : m_keeper.take(items);
    for (qsizetype i = 0; i < taken.size(); ++i) {
        m_handed += Handed{fresh[i], taken[i]};
    }
    if (!co_await finishHanded()) {
        co_return Went::Badly;
    }
    co_return listing->more ? Went::More : Went::Done;
}

/// Those of which all is done go from the folder.
Task<bool> ShareInbox::finishHanded() {
    if (m_handed.isEmpty()) {
        co_return true;
    }
    if (!co_await m_keeper.saved()) {
        co_return false;
    }
    QList<InboxFolder::Drop> kept;
    QList<InboxFolder::Drop> aside;
    for (const Handed &each : std::exchange(m_handed, {})) {
        (each.taken == Taken::Kept ? kept : aside) += each.drop;
    }
    co_await leave(kept, aside);
    co_return true;
}

Task<> ShareInbox::leave(QList<InboxFolder::Drop> kept, QList<InboxFolder::Drop> aside) {
    using Left = InboxFolder::Left;
    struct Outcome {
        QList<InboxFolder::Drop> kept;  ///< still there
        QList<InboxFolder::Drop> aside; ///< likewise
        qsizetype noLinks = 0;
        qsizetype tooLarge = 0;
    };
    const auto outcome = co_await onDisk([folder = m_folder, kept, aside](DiskPulse &pulse) {
        Outcome found;
        for (const InboxFolder::Drop &drop : kept) {
            if (folder.remove(drop) == Left::Refused) {
                found.kept += drop;
            }
            pulse.beat();
        }
        for (const InboxFolder::Drop &drop : aside) {
            const Left left = folder.setAside(drop);
            if (left == Left::Refused) {
                found.aside += drop;
            }
            // By its size: one that is asked to go once more was not read again.
            const bool isLarge = drop.state.bytes > InboxFolder::maxBytes;
            (isLarge ? found.tooLarge : found.noLinks) += left == Left::Done ? 1 : 0;
            pulse.beat();
        }
        return found;
    });
    for (const InboxFolder::Drop &drop : kept + aside) {
        forget(drop.name);
    }
    // A disk that does not answer: those that are still there have been dealt with all the same.
    for (const InboxFolder::Drop &drop : outcome ? outcome->kept : kept) {
        m_stuck.insert(drop.name, {drop.state, false});
    }
    for (const InboxFolder::Drop &drop : outcome ? outcome->aside : aside) {
        m_stuck.insert(drop.name, {drop.state, true});
    }
    if (m_stuck != m_keptStuck) {
        m_keptStuck = m_stuck;
        m_stuckAgain.setRemainingTime(m_pace.again);
        co_await onDisk([file = m_stuckFile, drops = m_stuck] {
            file.save(drops);
            return true;
        });
    }
    if (outcome && outcome->noLinks + outcome->tooLarge > 0) {
        Q_EMIT wasSetAside(outcome->noLinks, outcome->tooLarge);
    }
}

void ShareInbox::note(const InboxFolder::Drop &drop) {
    Unsure unsure{drop, {}};
    unsure.since.start();
    forget(drop.name);
    m_unsure.insert(drop.name, unsure);
}

void ShareInbox::noteUnread(const InboxFolder::Drop &drop) {
    constexpr int mostDoublings = 6;
    constexpr int triesUntilTold = 3;
    m_unsure.remove(drop.name);
    Unread &unread = m_unread[drop.name];
    if (unread.state != drop.state) {
        unread = {drop.state, 0, {}};
    }
    unread.next.setRemainingTime(m_pace.again * (1 << std::min(unread.tries, mostDoublings)));
    if (++unread.tries == triesUntilTold) {
        Q_EMIT cannotRead(QFile::decodeName(drop.name));
    }
}

void ShareInbox::forget(const QByteArray &name) {
    m_unsure.remove(name);
    m_unread.remove(name);
}

/// What nobody wrote into for a while is no link.
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
    QHash<QByteArray, InboxFolder::State> states;
    for (auto each = m_stuck.cbegin(); each != m_stuck.cend(); ++each) {
        states.insert(each.key(), each->state);
    }
    for (const Unsure &unsure : std::as_const(m_unsure)) {
        states.insert(unsure.drop.name, unsure.drop.state);
    }
    for (auto each = m_unread.cbegin(); each != m_unread.cend(); ++each) {
        // None has an empty state: it is read, or told to be gone.
        states.insert(each.key(), each->next.hasExpired() ? InboxFolder::State() : each->state);
    }
    for (const Handed &each : m_handed) {
        states.insert(each.drop.name, each.drop.state);
    }
    return states;
}

void ShareInbox::lookLater(bool well) {
    if (!well) {
        m_later.start(m_pace.again);
        return;
    }
    std::optional<std::chrono::milliseconds> soonest;
    if (!m_unsure.isEmpty()) {
        soonest = m_pace.settled;
    }
    for (const Unread &unread : std::as_const(m_unread)) {
        const std::chrono::milliseconds left(unread.next.remainingTime());
        soonest = std::min(soonest.value_or(left), left);
    }
    if (soonest) { // what is due already was passed over for a reason that has to go first
        m_later.start(std::max(*soonest, std::min(m_pace.settled, m_pace.again)));
    }
}

} // namespace vorle
