#pragma once

#include "base/Clock.h"
#include "base/Resources.h"
#include "core/Handover.h"
#include "core/RunReport.h"
#include "core/Topic.h"
#include "core/TopicSalvage.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace vorle {

class TopicWriter;

/// The single owner of all topics and of the topics file. Main thread only: any other thread
/// stops the program.
///
/// The file is one JSON array of topics in the store's order, pretty-printed with sorted keys.
/// Every change is saved at once by a writer thread of the store's own, as a whole and atomically
/// (temporary file, fsync, rename): the file always holds one complete state. While a save runs,
/// at most one more waits, the newest. The main thread never waits for the disk but in `flush()`.
///
/// A save that fails is logged and announced; the topics stay in memory, and the next save or
/// `flush()` tries again. One process may own a file: hold its StoreLock before making a store
/// that will change it.
class TopicStore final : public QObject {
    Q_OBJECT
public:
    enum class Kind {
        Real, ///< the user's own topics
        Demo, ///< topics to sort and a past (see demoPast) in a file of their own, afresh each time
        Preview ///< no file is read or written
    };

    /// The triage side of a topic: what taking a decision changes, and undoing it restores.
    struct TriageState {
        TopicStatus status = TopicStatus::Inbox;
        int postponedCount = 0;
        std::optional<QDateTime> triagedAt;
        std::optional<QDateTime> doneAt;
        std::optional<Worth> worth;

        bool operator==(const TriageState &) const = default;
    };

    /// The topics file of that kind: VORLE_STORE as given when set, but for a demonstration; else
    /// "topics.json" (or "demo-topics.json") in the folder "vorle" of the user's application data.
    /// Makes the folder. Empty for a preview.
    /// @throws std::system_error when the folder cannot be made, with what the system said, or when
    ///         the name is not in UTF-8
    static QString location(Kind kind);

    /// Opens the store of that kind and loads it. `clock` must outlive the store.
    /// @throws std::system_error as location(), and when the file is there and the system does not
    ///         let it be read (no right, a failing disk, no descriptor left): it says nothing of
    ///         what the file holds, so nothing may be saved over it
    TopicStore(Kind kind, Resources resources, const Clock &clock, QObject *parent = nullptr);
    /// Opens the store on exactly that file (none when empty) and loads it. @throws as above, the
    /// folder apart
    TopicStore(QString file, Resources resources, const Clock &clock, QObject *parent = nullptr);
    /// Waits until the last change is on disk.
    ~TopicStore() override;

    /// The topics file as it was asked for; empty for a preview.
    const QString &file() const { return m_file; }
    bool isDemo() const { return m_kind == Kind::Demo; }
    bool isPreview() const { return m_kind == Kind::Preview; }

    /// Set when the file was read whole and is no list of topics: it is untouched, and the first
    /// save keeps it under this path before replacing it.
    const std::optional<QString> &setAside() const { return m_setAside; }
    /// The file was damaged, and nothing stands in its place yet.
    bool isDamaged() const { return m_readable && m_topics.isEmpty(); }
    /// What can be read of that file, until repair(); nothing when it was read whole.
    const std::optional<TopicSalvage> &readable() const { return m_readable; }
    /// Puts the topics that can be read of a damaged file before those that came since, and saves:
    /// the file is kept aside first. Gives how many; 0, and changes nothing, when there are none.
    qsizetype repair();
    /// What the user has to know of how the file was found, as a French sentence: it is empty, or
    /// no list of topics. Nothing when all is well, or once it was repaired.
    std::optional<QString> notice() const;

    /// All topics, in the file's order: the store's own list, shared until either changes.
    QList<TopicPtr> topics() const;
    /// The topics of that status, in the file's order.
    QList<TopicPtr> topics(TopicStatus status) const;
    /// The topic with that identity, or nothing.
    TopicPtr topic(const QUuid &id) const;
    /// A number that grows along the file's order, or -1 for a topic that is not there. A topic
    /// keeps its own until the store is loaded again, whatever comes and goes.
    qsizetype position(const QUuid &id) const;
    /// That of the topic at `index` of all, which is quicker told.
    /// @param index from 0 to count() - 1
    qsizetype positionAt(qsizetype index) const;
    qsizetype count() const;

    /// Adds topics at the end. One without identity gets one; one whose identity is known
    /// already is left out. Gives the identities added.
    QList<QUuid> add(QList<Topic> topics);
    /// Puts the judged version in the place of the captured link of the same identity, ready for
    /// triage; what the user gave (link, note) stays, and the captured link is among its sources.
    /// Does nothing and gives false when the user removed or dismissed the link meanwhile.
    bool completeCaptured(Topic judged);
    /// Has the topic take up what came with its link, handed over once more (see takeUp()). False
    /// when there is no such topic, or when it knew all that already: nothing is saved then.
    bool takeUpCapture(const QUuid &id, const Handover &handed);
    /// Releases these pending topics for triage. Gives how many were.
    qsizetype releasePending(const QList<QUuid> &ids);
    /// Releases every topic a run left pending when it died. Captured links stay: they still
    /// wait for the judge.
    qsizetype releaseAllPending();

    /// Puts the topic in the place of the pending one of the same identity, which was judged again.
    /// What came to that one meanwhile stays: a link of the same page may have been dropped, with a
    /// note, a project, the page's text. False when there is none, or when it is pending no more:
    /// the user has it now.
    bool replacePending(Topic topic);
    /// Whether a topic of a run still waits for a readable page: one in the inbox, or pending, that
    /// could not be read and that the user did nothing about.
    bool isUnreadStill(const QUuid &id) const;
    /// Puts the topic, judged by a page that was found since, in the place of that one in the
    /// inbox; its pictures and what came to it stay as well. False when there is none (see
    /// isUnreadStill).
    bool completeUnread(Topic topic);
    /// Takes a pending topic of a run away: its page turned out to be another topic's, which has
    /// its links by now. Nothing shows such a topic, so nothing is told. That other one, `heir`,
    /// takes up what came to it. False, and nothing changes, when there is none, when it is pending
    /// no more, or when the user said something of it and there is no heir.
    bool withdrawPending(const QUuid &id, const QUuid &heir);
    /// Adds to a topic's sources those whose address it does not have. False when there is no such
    /// topic.
    bool addSources(const QUuid &id, const QList<TopicSource> &sources);

    /// The last runs, oldest first, with what became of their topics by now. Read at each call.
    QList<RunReport> history() const;
    /// A run ended: its report joins the history. Those of earlier runs that it `changed` take
    /// their places in the same write.
    void addRun(const RunReport &report, const QList<RunReport> &changed = {});
    /// A further part of a run ended: the report takes the place of the one of that date; it joins
    /// the history where there is none.
    void replaceRun(const RunReport &report);

    // Triage. Each stamps `triagedAt` and gives false when there is no such topic, or when it is a
    // link that was never judged (see isUnjudgedCapture), which can only be dismissed. Leaving the
    // library takes `doneAt` and the verdict away.
    bool keep(const QUuid &id);     ///< to the program
    bool postpone(const QUuid &id); ///< "plus tard", "reporter": to the reserve, counted
    bool dismiss(const QUuid &id);  ///< "pas pour moi"
    bool backToInbox(const QUuid &id);
    bool markDone(const QUuid &id, std::optional<Worth> worth = std::nullopt);
    /// The verdict on a topic: in the library the verdict and the date of the decision
    /// alone change; anywhere else the topic
    /// is marked done with it.
    bool judgeWorth(const QUuid &id, Worth worth);
    std::optional<TriageState> triageState(const QUuid &id) const;
    /// Puts back what a decision changed.
    bool restore(const QUuid &id, const TriageState &state);

    // Editing. False when there is no such topic.
    bool setNote(const QUuid &id, const QString &note); ///< an empty note is no note
    bool setCorrection(const QUuid &id, std::optional<Correction> correction);
    bool setBrief(const QUuid &id, std::optional<Brief> brief);
    bool setGallery(const QUuid &id, QList<Picture> gallery);

    /// Whether the present state is on disk, as far as the saves that were announced tell (see
    /// saved()): asks nothing of the disk. False as long as a save runs, waits, or has failed.
    bool isSaved() const;
    /// Asks for a save of the present state. Every operation above that changes something does.
    void save();
    /// Has what was loaded encoded in the background, so that the first save costs no more than
    /// the next ones. For an app that runs on; a command has no use for it.
    void prepareSaves();
    /// Waits until the present state is on disk; tries once more after a failed save. False when
    /// it could not be written: the reason was logged and announced.
    bool flush();
    /// Why the last save failed, as a French sentence for the user; nothing when it did not.
    std::optional<QString> saveError() const;

Q_SIGNALS:
    void topicChanged(const QUuid &id);
    void topicsAdded(const QList<QUuid> &ids);
    void topicsReset();
    void saved();
    void historyChanged();
    /// A save failed; `text` is a French sentence for the user.
    void saveFailed(const QString &text);

private:
    void load();
    bool readFile();
    void seed();
    QList<Topic> sampleTopics() const;
    void replaceAll(QList<Topic> topics);
    void append(Topic topic);
    qsizetype indexOf(const QUuid &id) const;
    bool change(const QUuid &id, const std::function<void(Topic &)> &edit);
    bool decide(const QUuid &id, TopicStatus status, std::optional<Worth> worth = std::nullopt);
    qsizetype release(const std::function<bool(const Topic &)> &chosen);

    Kind m_kind;
    QString m_file;
    Resources m_resources;
    const Clock &m_clock;
    std::optional<QString> m_setAside;
    std::optional<TopicSalvage> m_readable;
    bool m_wasEmpty = false;
    QList<TopicPtr> m_topics;            // StoredTopics all
    QHash<QUuid, qsizetype> m_positions; // see position()
    QList<qsizetype> m_withdrawn;        // the positions nothing has any more, in order
    std::unique_ptr<TopicWriter> m_writer;
    quint64 m_savedUpTo = 0; // the number of the last save that went well
};

} // namespace vorle
