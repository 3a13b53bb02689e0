#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace vorle {

/// A version that an engine found.
struct OfferedUpdate {
    QString version;
    QString notes;        ///< what is new in it, plain text or Markdown; may be empty
    bool fetched = false; ///< it lies on this machine already, checked
};

/// Whom an update engine asks and tells: it decides nothing of the engine's work, only what the
/// person answers. The calls come in the order of an update; each reply and each acknowledgement is
/// to be called once at most, at any later time, on the main thread. An engine that ends a check
/// says so by `dismissed`. Main thread.
class UpdateDriver {
public:
    enum class Choice { Install, Skip, Dismiss };
    using Reply = std::function<void(Choice)>;
    using Acknowledgement = std::function<void()>;
    using Cancellation = std::function<void()>;

    virtual ~UpdateDriver() = default;

    /// May updates be looked for by themselves? Asked once in a program's life.
    virtual void showPermissionRequest(std::function<void(bool)> reply) = 0;
    /// A check that the person asked for has begun. Without this call, a check is nobody's wish.
    virtual void showUserInitiatedCheck(Cancellation cancel) = 0;
    virtual void showFound(const OfferedUpdate &update, Reply reply) = 0;
    virtual void showReleaseNotes(const QString &notes) = 0;
    virtual void showReleaseNotesFailed(const QString &error) = 0;
    virtual void showNotFound(const QString &reason, Acknowledgement acknowledge) = 0;
    virtual void showError(const QString &error, Acknowledgement acknowledge) = 0;
    virtual void showDownloadInitiated(Cancellation cancel) = 0;
    virtual void showExpectedBytes(qint64 bytes) = 0;
    /// That many more came.
    virtual void showReceivedBytes(qint64 bytes) = 0;
    virtual void showExtractionStarted() = 0;
    virtual void showExtractionProgress(double part) = 0; ///< 0 to 1
    /// Install: the program ends, and comes back as the new version. Dismiss: it becomes the new
    /// version when it ends.
    virtual void showReady(Reply reply) = 0;
    virtual void showInstalling(bool programEnded, std::function<void()> endAgain) = 0;
    virtual void showInstalled(bool relaunched, Acknowledgement acknowledge) = 0;
    /// The version that was to take this one's place did not: it did not start, so that this one
    /// came back, or it could not be put there.
    virtual void showTakenBack(const QString &version) = 0;
    /// Another process installs a version of this program: this one leaves it to that.
    virtual void showHeldElsewhere() = 0;
    /// The person asked again for what is under way.
    virtual void showInFocus() = 0;
    /// Nothing is under way any more; what was shown of it may go, but for what the person is yet
    /// to read.
    virtual void dismissed() = 0;
};

/// What looks for new versions of this program, fetches and installs them. Texts that it tells are
/// for the log, in English, but for `obstacle`. Main thread.
class UpdateEngine {
public:
    virtual ~UpdateEngine() = default;

    /// Once, before anything else is asked; the driver outlives the engine. No network is used
    /// before the person allowed it, by a check they ask for or by `setChecksByItself`.
    virtual void start(UpdateDriver &driver) = 0;
    /// Why this program cannot be updated from here, as a French sentence; nothing when it can.
    virtual std::optional<QString> obstacle() const = 0;
    /// The person asks for a check.
    virtual void check() = 0;
    /// Some time passed: a daily check may be due.
    virtual void lookAtClock() = 0;
    virtual bool checksByItself() const = 0;
    virtual void setChecksByItself(bool on) = 0;
    virtual bool installsByItself() const = 0;
    virtual void setInstallsByItself(bool on) = 0;
    /// Ends what is under way, at once or soon; `ended` is called once it has.
    virtual void stop(std::function<void()> ended) = 0;
    /// The program has run long enough to say that it works: the version before it is no longer
    /// needed. Notes that in its own time; `finish` waits for it.
    virtual void confirmStart() = 0;
    /// The last thing before the program ends: what is ready takes its place. `done` is called once
    /// it has, with the program to start in this one's stead, where the person asked for that and
    /// the engine does not do it.
    virtual void finish(std::function<void(std::optional<QString> successor)> done) = 0;
};

} // namespace vorle
