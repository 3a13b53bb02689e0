#pragma once

#include "agents/Ask.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "judging/Judge.h"
#include "search/run/Pipeline.h"
#include "search/web/PageReader.h"

#include <functional>

namespace vorle {

class Preferences;
class SourceImage;

/// Reads captured links and has them judged, several in one call to the agent. Main thread; what it
/// is given outlives every call under way.
class CaptureReading {
public:
    struct Parts {
        const Preferences &preferences;
        TopicStore &store;
        ScoreProvenanceLog &provenance;
        Asker &asker;
        PageReader &reader;
        SourceImage &images;
        const Clock &clock;
    };

    /// Who waits for a page that does not answer.
    enum class Patience {
        Waits, ///< it is left for another time: this machine may be offline
        None   ///< it is judged by what is known of it
    };
    struct Link {
        QUuid id;
        Patience patience = Patience::Waits;
    };
    struct Told {
        std::function<void(const QUuid &)> judged;
        std::function<void(const QUuid &)> unreachable;
        /// It alone could not be judged; why, in French.
        std::function<void(const QUuid &, const QString &)> failed;
    };

    explicit CaptureReading(Parts parts) : m_parts(parts) {}

    /// Whether the agent could be asked now, as far as can be told without asking.
    bool isAgentReady() const;

    /// Reads the links at the same time and completes their topics, with their pictures. One that
    /// is no captured link waiting to be read is passed over. Where one call for several fails, or
    /// leaves some without an answer, those are judged alone.
    /// @throws AgentError for what keeps the rest from being judged, Cancelled
    Task<> complete(QList<Link> links, Told told, CancelToken cancel);

private:
    /// A link whose page was read.
    struct Read {
        QUuid id;
        Candidate candidate;
        ReadPage page;
        JudgeCandidate shown;
    };
    struct Work; // what one call of complete() shares

    Task<> readOne(std::shared_ptr<Work> work, Link link);
    Task<> judge(std::shared_ptr<Work> work, QList<Read> batch);
    Task<> judgeAlone(std::shared_ptr<Work> work, QList<Read> batch);
    Task<> keep(std::shared_ptr<Work> work, Read link, Judgment judgment);
    Task<> addPicture(std::shared_ptr<Work> work, QUuid id);

    Parts m_parts;
};

} // namespace vorle
