#pragma once

#include "base/Clock.h"
#include "platform/UpdateEngine.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

namespace vorle {

/// Keeps the app current: stands between an engine, which finds, fetches and installs versions, and
/// the screens, which show how far that is and take the person's answers. Knows nothing of how an
/// engine works. What it tells by itself is only what the person has to answer: a check that nobody
/// asked for, and that found nothing or failed, is told in the log alone. Main thread.
class Updater final : public QObject, private UpdateDriver {
    Q_OBJECT
public:
    enum class Stage {
        Idle,
        Checking,
        Found,
        Downloading,
        Preparing, ///< fetched: it is checked and unpacked
        Ready,
        Installing,
        UpToDate,
        CheckFailed,
        InstallFailed
    };

    struct Parts {
        UpdateEngine &engine;
        const Clock &clock;
        QString version; ///< the one that runs
        /// What goes on that an end of the program would break off, the beginning of a French
        /// sentence ("Une fouille est en cours"); "" for nothing. Then it does not relaunch by
        /// itself.
        std::function<QString()> busy = {};
        std::chrono::milliseconds countdown = std::chrono::seconds(3); ///< before it relaunches
    };
    /// Starts the engine. Engine and clock outlive this.
    explicit Updater(Parts parts, QObject *parent = nullptr);

    Stage stage() const { return m_stage; }
    /// What the stage is called, and what there is to say of it; "" where there is nothing.
    QString title() const;
    QString text() const;
    /// The same for who does not look at it: what waits for the person, in a sentence or two; ""
    /// where nothing does.
    QString notice() const;
    /// The version that was found, and what is new in it.
    const OfferedUpdate &found() const { return m_found; }
    qint64 expectedBytes() const { return m_expectedBytes; }
    qint64 receivedBytes() const { return m_receivedBytes; }
    /// How much of the work of this stage is done, 0 to 1; below 0 while that is not known.
    double progress() const;
    /// It relaunches by itself in a moment, unless it is put off.
    bool isCountingDown() const { return m_countdown.isActive(); }
    /// The person has not said yet whether updates may be looked for by themselves, and is asked.
    bool isPermissionWanted() const {
        return m_permissionReply && !checksByItself() && !m_parts.engine.obstacle();
    }
    /// Why this program cannot be updated from here, in French; "" when it can.
    QString obstacle() const { return m_parts.engine.obstacle().value_or(QString()); }

    bool checksByItself() const { return m_parts.engine.checksByItself(); }
    void setChecksByItself(bool on);
    /// To install what comes is to look for it too, for as long as that is on; not to look for it
    /// is not to install it either.
    bool installsByItself() const { return m_parts.engine.installsByItself(); }
    void setInstallsByItself(bool on);

    /// The person asks for a check.
    void check();
    /// Their answers, each nothing where it answers nothing.
    void allow(bool daily);
    void install();
    void skip();
    void cancel();
    /// At "ready": now, or when the program ends. Once it is to end, `relaunch` asks it again.
    void relaunch();
    void putOff();
    /// What was told was read.
    void acknowledge();
    /// The view was put away: what it told was read, and what it asked is asked another day.
    void putAway();
    /// Some time passed. A question that waited for a day is put aside too, seen or not: an engine
    /// looks for nothing newer while one is open.
    void lookAtClock();
    /// Whether the person has the stage before their eyes: what waits for them, or has failed, is
    /// told else, whoever asked for it. The view says that they can go on, and put it away.
    void setWatched(bool watched) { m_isWatched = watched; }
    /// The settings were changed elsewhere; whether updates may be looked for was answered there,
    /// or was not yet.
    void followSettings(bool isAnswered);

Q_SIGNALS:
    void changed();
    void settingsChanged();
    /// Something came up that waits for an answer, or for being read, and nobody looks: a French
    /// sentence.
    void told(const QString &sentence);

private:
    void showPermissionRequest(std::function<void(bool)> reply) override;
    void showUserInitiatedCheck(Cancellation cancel) override;
    void showFound(const OfferedUpdate &update, Reply reply) override;
    void showReleaseNotes(const QString &notes) override;
    void showReleaseNotesFailed(const QString &error) override;
    void showNotFound(const QString &reason, Acknowledgement acknowledge) override;
    void showError(const QString &error, Acknowledgement acknowledge) override;
    void showDownloadInitiated(Cancellation cancel) override;
    void showExpectedBytes(qint64 bytes) override;
    void showReceivedBytes(qint64 bytes) override;
    void showExtractionStarted() override;
    void showExtractionProgress(double part) override;
    void showReady(Reply reply) override;
    void showInstalling(bool programEnded, std::function<void()> endAgain) override;
    void showInstalled(bool relaunched, Acknowledgement acknowledge) override;
    void showTakenBack(const QString &version) override;
    void showHeldElsewhere() override;
    void showInFocus() override;
    void dismissed() override;

    void enter(Stage stage);
    bool isMessageShown() const;
    void endSilently();
    void tellUnseen();
    void answerFound(Choice choice);
    void answerReady(Choice choice);
    bool isHeldUp();

    Parts m_parts;
    Stage m_stage = Stage::Idle;
    OfferedUpdate m_found;
    QDateTime m_foundAt;
    // What the engine waits for; empty once it was answered.
    Reply m_foundReply;
    Reply m_readyReply;
    Acknowledgement m_messageAcknowledged;
    Cancellation m_cancellation;
    std::function<void()> m_endAgain;
    std::function<void(bool)> m_permissionReply;
    bool m_userInitiated = false;
    bool m_installAsked = false;
    bool m_relaunchAsked = false;     // of a version that was put off, by the check under way
    bool m_checksForInstalls = false; // it is looked for new versions for that alone
    bool m_isElsewhere = false;       // what failed did so for being done by another process
    bool m_isWatched = false;
    QString m_heldUp; // what kept it from relaunching; "" for nothing
    qint64 m_expectedBytes = 0;
    qint64 m_receivedBytes = 0;
    double m_extracted = -1;
    QTimer m_countdown;
};

/// The sentences of an update, for window and terminal.
namespace updatetext {
QString upToDate(const QString &version);
QString readyTitle();
QString readyForTheEnd();
/// It is not relaunched now, for what `busy` told.
QString heldUp(const QString &busy);
QString checkFailedTitle();
QString checkFailedText();
QString installFailedTitle();
QString installFailedText();
QString heldElsewhereTitle();
QString heldElsewhereText();
} // namespace updatetext

} // namespace vorle
